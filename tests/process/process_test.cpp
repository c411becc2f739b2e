#include "process/Process.h"

#include <QAbstractEventDispatcher>
#include <QSignalSpy>
#include <algorithm>
#include <chrono>
#include <numeric>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "base/TimeBudget.h"
#include "desktop/Dialogs.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

class Probe : public mv::Process {
 public:
  Probe() : Process({"Done", "ID", "URL"}, 1) {}

  using Process::enableWorkTimer;
  using Process::run;
  using Process::yieldThen;

  std::function<void()> onTick = [] {};
  int ticks = 0;

 protected:
  void tick() override {
    ++ticks;
    onTick();
  }
  void transferEvent(int) override {}
  void failed(const std::exception& error) override { ADD_FAILURE() << error.what(); }
};

class ProcessTest : public ProgramTest {
 protected:
  void showBox() { mv::showMessage(nullptr, "t", "box", mv::MessageIcon::None); }
  Probe process;
  QSignalSpy stopped{&process, &mv::Process::stopped};
};

TEST_F(ProcessTest, StoppedAtRestItSaysSoAtOnceAndOnlyOnce) {
  process.enableWorkTimer();
  process.tmrWaitForAWhile.start();
  for (int i = 0; i < 2; ++i) process.requestStop();
  EXPECT_EQ(stopped.count(), 1);
  EXPECT_FALSE(process.tmrOKToDownload.isActive());
  EXPECT_FALSE(process.tmrWaitForAWhile.isActive());
  process.enableWorkTimer();
  EXPECT_FALSE(process.tmrOKToDownload.isActive());
  process.run([] { FAIL() << "a stopped process works no more"; });
}

TEST_F(ProcessTest, StoppedInsideAMessageBoxItSaysSoWhenTheOutermostProcedureHasReturned) {
  std::vector<std::string> order;
  QObject::connect(&process, &mv::Process::stopped, [&order] { order.push_back("stopped"); });
  dialogs.duringMessage = [this, &order] {
    process.run([&] { order.push_back("inner"); });
    process.requestStop();
    order.push_back("asked");
  };
  process.run([this, &order] {
    showBox();
    EXPECT_TRUE(process.isBusy());
    order.push_back("returned");
  });
  EXPECT_EQ(lastMessage(), "t: box");
  EXPECT_EQ(order, (std::vector<std::string>{"inner", "asked", "returned", "stopped"}));
  EXPECT_FALSE(process.isBusy());
}

TEST_F(ProcessTest, NoSecondStepBeginsWhileABoxOfTheFirstStands) {
  int ticksDuringBox = -1;
  dialogs.duringMessage = [this, &ticksDuringBox] {
    waitFor([] { return false; }, 30);
    ticksDuringBox = process.ticks;
    process.requestStop();
  };
  process.onTick = [this] { showBox(); };
  process.enableWorkTimer();
  ASSERT_TRUE(waitFor([this] { return stopped.count() == 1; }));
  EXPECT_EQ(lastMessage(), "t: box");
  EXPECT_EQ(ticksDuringBox, 1);
}

TEST_F(ProcessTest, TicksThatAreDueTogetherComeOneALoopIteration) {
  int ofThisIteration = 0, most = 0;
  QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, &process,
                   [&] { ofThisIteration = 0; });
  Probe others[9];
  const auto work = [&] {
    most = std::max(most, ++ofThisIteration);
    std::this_thread::sleep_for(std::chrono::milliseconds(6));
  };
  for (Probe& other : others) other.onTick = work;
  for (Probe& other : others) other.enableWorkTimer();
  std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_TRUE(waitFor(
      [&] { return std::all_of(std::begin(others), std::end(others), [](auto& one) { return one.ticks > 0; }); }));
  EXPECT_EQ(most, 1);
}

// Ten sites with a page of a million links each: every one goes on, and an eleventh has its ticks in time.
TEST_F(ProcessTest, LongWorkOfManyGoesOnByTurns) {
  struct Worker : Probe {
    int pieces = 0;
    void work() {
      ++pieces;
      const mv::TimeBudget budget;
      while (!budget.spent()) continue;
      yieldThen([this] { work(); });
    }
  };
  Worker workers[10];
  const auto pieces = [&workers] {
    return std::accumulate(std::begin(workers), std::end(workers), 0,
                           [](int sum, const Worker& worker) { return sum + worker.pieces; });
  };
  for (Worker& worker : workers) worker.run([&worker] { worker.work(); });
  int before = pieces(), most = 0;
  process.onTick = [&] { most = std::max(most, pieces() - std::exchange(before, pieces())); };
  process.enableWorkTimer();
  ASSERT_TRUE(waitFor([this] { return process.ticks == 10; }));
  EXPECT_LE(most, 2 * 10) << "milliseconds each";
  const auto [least, largest] = std::minmax_element(std::begin(workers), std::end(workers),
                                                    [](const auto& a, const auto& b) { return a.pieces < b.pieces; });
  EXPECT_LE(largest->pieces - least->pieces, 1);
}

}  // namespace
