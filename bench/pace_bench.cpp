// pace [ROWS [SECONDS]]: the program as users run it, with its pauses: ten sites at once, each with ROWS links of old
// (a million), for SECONDS (30). One site's first page has 10,000 links, another's 20 MB. The one thread must be idle
// nearly always, and no event may wait long.
// pace crowd [SECONDS]: ten sites at once, each with a page of a million links that nobody has seen. What another site
// has to do may not wait long for its turn.

#include <QTemporaryDir>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Figures.h"
#include "Links.h"
#include "Main.h"
#include "Memory.h"
#include "Program.h"
#include "Server.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "base/TimeBudget.h"
#include "base/Turns.h"
#include "store/ProgramDatabase.h"

namespace {

constexpr int kSites = 10;
constexpr double kMB = 1e6;
constexpr double kGoalIdle = 95;          // percent
constexpr double kGoalIteration = 16;     // ms
constexpr double kGoalFirstPicture = 40;  // ms
constexpr double kGoalTick = 130;         // ms

void fillDatabase(const mvbench::ServerProcess& server, std::int64_t rows) {
  for (int site = 1; site <= kSites; ++site) {
    std::string location = server.host(site) + "/";
    if (site == 1) location = server.host(site) + "/links/10000.html";
    if (site == 2) location = server.host(site) + "/bytes/20000000.html";
    mvbench::storeHandledLinks(mvbench::addSite(location), server.host(site), rows);
  }
  mv::ensureIndexes();
}

void measure(std::int64_t rows, int seconds) {
  const mvbench::ServerProcess server({}, kSites);
  const mvbench::Application application;
  const QTemporaryDir folder;
  mvtest::openProgramFolder(mv::toUtf8(folder.filePath("program")));
  fillDatabase(server, rows);

  mvbench::Program program;
  long pages = 0, files = 0;
  for (auto* scan : program.scans())
    QObject::connect(&scan->process(), &mv::ScanProcess::pageProcessed, [&] { ++pages; });
  for (auto* download : program.downloads())
    QObject::connect(&download->process(), &mv::DownloadProcess::fileSaved, [&] { ++files; });
  // Twenty windows and more are drawn for the first time in one iteration, once.
  const mvbench::Timing first = mvbench::timed([] { QCoreApplication::processEvents(); });
  const mvtest::LoopMeter meter;
  const double end = mvbench::secondsOf(CLOCK_MONOTONIC) + seconds;
  const mvbench::Timing timing =
      mvbench::timed([&] { mvtest::runUntil([&] { return mvbench::secondsOf(CLOCK_MONOTONIC) > end; }); });
  const std::string what = "ten sites of " + std::to_string(rows) + " links";
  mvbench::printFigure(what + ", thread idle", 100 * (1 - timing.cpu / timing.wall), "%", mvbench::Goal::AtLeast,
                       kGoalIdle);
  mvbench::printFigure(what + ", first picture", first.cpu * 1000, "ms", mvbench::Goal::AtMost, kGoalFirstPicture);
  mvbench::printFigure(what + ", longest loop iteration behind it", meter.longest, "ms", mvbench::Goal::AtMost,
                       kGoalIteration);
  std::printf("  %ld pages, %ld files, %ld iterations in %.1f s; memory %.1f MB, peak %.1f MB\n", pages, files,
              meter.iterations, timing.wall, mvbench::memory("VmRSS") / kMB, mvbench::memory("VmHWM") / kMB);
}

// How late the ticks of a further site come: it takes its turn as a process does whose timer has fired.
class LateTicks : public QObject {
 public:
  LateTicks() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, [this] { tick(); });
    waitForNext();
  }

  double longest = 0;  // ms
  long ticks = 0;

 private:
  void waitForNext() {
    due_ = mvbench::secondsOf(CLOCK_MONOTONIC) + kInterval / 1000.0;
    timer_.start(kInterval);
  }
  void tick() {
    if (mv::TimeBudget::iterationIsSpent()) {
      mv::takeTurn(this, [this] { tick(); });
      return;
    }
    ++ticks;
    longest = std::max(longest, 1000 * (mvbench::secondsOf(CLOCK_MONOTONIC) - due_));
    waitForNext();
  }

  static constexpr int kInterval = 200;  // ms
  QTimer timer_;
  double due_ = 0;
};

void measureCrowd(int seconds) {
  const mvbench::ServerProcess server({}, kSites);
  const mvbench::Application application;
  const QTemporaryDir folder;
  mvtest::openProgramFolder(mv::toUtf8(folder.filePath("program")));
  for (int site = 1; site <= kSites; ++site) mvbench::addSite(server.host(site) + "/links/1000000.html");

  const mvbench::Program program;
  QCoreApplication::processEvents();
  LateTicks further;
  const mvtest::LoopMeter meter;
  const double end = mvbench::secondsOf(CLOCK_MONOTONIC) + seconds;
  mvtest::runUntil([&] { return mvbench::secondsOf(CLOCK_MONOTONIC) > end; });
  mvbench::printFigure("ten pages of a million links, latest tick of another site", further.longest, "ms",
                       mvbench::Goal::AtMost, kGoalTick);
  mvbench::printFigure("ten pages of a million links, longest loop iteration", meter.longest, "ms",
                       mvbench::Goal::AtMost, kGoalIteration);
  const std::int64_t links = mv::gDatabase.query("select count(*) as outCount from link").number("outCount");
  std::printf("  %ld ticks, %lld links stored in %d s\n", further.ticks, static_cast<long long>(links), seconds);
}

}  // namespace

int main(int argc, char** argv) {
  return mvbench::run([&] {
    if (argc > 1 && argv[1] == std::string_view("crowd"))
      measureCrowd(argc > 2 ? std::atoi(argv[2]) : 30);
    else
      measure(argc > 1 ? std::atoll(argv[1]) : 1'000'000, argc > 2 ? std::atoi(argv[2]) : 30);
  });
}
