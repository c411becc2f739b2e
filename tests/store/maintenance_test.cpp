// Compaction: the rows before and after, changes meanwhile, and a sudden end at every step.

#include "store/Maintenance.h"

#include <sys/wait.h>
#include <unistd.h>

#include <QTimer>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>

#include "store/LinkCleaner.h"
#include "store/ProgramDatabase.h"
#include "testkit/Fixture.h"

namespace {

using namespace mv;
using namespace mvtest;
namespace fs = std::filesystem;
using Step = CompactCopy::Step;

class MaintenanceTest : public ProgramTest {
 protected:
  MaintenanceTest() { addLinks(20'000); }
  ~MaintenanceTest() override { CompactCopy::setStepHook({}); }

  static void addLinks(int rows) {
    mvtest::insertNumbered("link (site_id, url)", 1, rows, "1, 'http://example/' || i");
  }
  std::string temp() const { return folder() + gTempDatabaseFileName; }
  // The whole compaction; the failure's text, "" when it succeeded.
  std::string compact(std::unique_ptr<Compaction> compaction) {
    std::optional<std::string> result;
    QObject::connect(compaction.get(), &Compaction::finished, compaction.get(), [&](const std::exception_ptr& failure) {
      result = "";
      try {
        if (failure) std::rethrow_exception(failure);
      } catch (const std::exception& error) {
        result = error.what();
      }
    });
    EXPECT_TRUE(waitFor([&] { return result.has_value(); }));
    return result.value_or("never ended");
  }
  std::string compact() { return compact(compactDatabase(gDatabasePath, temp())); }

  // Compacts in a process of its own, which is killed the moment it reaches `step`. For `Writing` that is when a part
  // of the copy is on the disk.
  void compactAndKill(Step step) {
    gDatabase.close();
    const pid_t child = fork();
    if (child == 0) {
      CompactCopy::setStepHook([&](Step reached) {
        const bool due = step != Step::Writing || (fs::exists(temp()) && fs::file_size(temp()) > 100'000);
        if (reached == step && due) raise(SIGKILL);
      });
      CompactCopy copy(gDatabasePath, temp());
      copy.write();
      copy.replaceSource();
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  }
  void expectAllRows(long links) {
    EXPECT_EQ(count("link"), links);
    EXPECT_EQ(count("pref"), 1);
    EXPECT_EQ(value("select integrity_check from pragma_integrity_check"), "ok");
    EXPECT_FALSE(fs::exists(temp()));
  }
};

TEST_F(MaintenanceTest, CompactionKeepsEveryRowAndGivesTheSpaceBack) {
  std::ofstream(temp()) << "left over from an earlier run";
  gDatabase.execute("delete from link where id % 10 > 0");
  gDatabase.close();
  const auto before = fs::file_size(gDatabasePath);
  openProgramDatabase(gDatabasePath);
  EXPECT_EQ(compact(), "");
  ASSERT_TRUE(gDatabase.isOpen());
  expectAllRows(2000);
  EXPECT_LT(fs::file_size(gDatabasePath) * 4, before);
  gDatabase.execute("insert into link (site_id) values (1)");
}

TEST_F(MaintenanceTest, WhatIsStoredMeanwhileIsNotLost) {
  int copies = 0;
  CompactCopy::setStepHook([&](Step step) {
    if (step == Step::Checked) ++copies;
  });
  auto once = compactDatabase(gDatabasePath, temp());
  gDatabase.execute("insert into link (site_id, url) values (2, 'late')");
  EXPECT_EQ(compact(std::move(once)), "");
  EXPECT_EQ(count("link", "url = 'late'"), 1);

  QTimer restless;
  QObject::connect(&restless, &QTimer::timeout, &restless,
                   [] { gDatabase.execute("update pref set quit_time = quit_time + 1"); });
  restless.start(0);
  copies = 0;
  const std::string trouble = compact();
  EXPECT_NE(trouble.find("being changed"), std::string::npos) << "it gives up at some time; " << trouble;
  EXPECT_GT(copies, 1);
  restless.stop();
  expectAllRows(20'001);
}

TEST_F(MaintenanceTest, AFailureLeavesTheDatabaseOpenAndAsItWas) {
  fs::create_directories(temp() + "/in the way");
  EXPECT_NE(compact(), "");
  ASSERT_TRUE(gDatabase.isOpen());
  EXPECT_EQ(count("link"), 20'000);
  fs::remove_all(temp());

  Database other;
  other.open(gDatabasePath);
  EXPECT_NE(compact().find("in use by another program"), std::string::npos);
  ASSERT_TRUE(gDatabase.isOpen());
  other.close();
  expectAllRows(20'000);

  compactDatabase(gDatabasePath, temp()).reset();
  expectAllRows(20'000);
}

TEST_F(MaintenanceTest, ADatabaseTakenAwayMeanwhileLeavesItsCopyAndBothReasons) {
  CompactCopy::setStepHook([](Step step) {
    if (step == Step::Checked) fs::remove(gDatabasePath);
  });
  const std::string trouble = compact();
  EXPECT_NE(trouble.find("cannot be replaced by its compacted copy"), std::string::npos) << trouble;
  EXPECT_NE(trouble.find("does not exist"), std::string::npos) << trouble;
  openProgramDatabase(gDatabasePath, temp());
  expectAllRows(20'000);
}

TEST_F(MaintenanceTest, AKillAtAnyStepLeavesOneGoodDatabaseForTheNextStart) {
  for (const Step step : {Step::Writing, Step::Written, Step::Checked, Step::Closed, Step::Synced, Step::Replaced}) {
    SCOPED_TRACE(static_cast<int>(step));
    compactAndKill(step);
    EXPECT_EQ(fs::exists(temp()), step != Step::Replaced);
    openProgramDatabase(gDatabasePath, temp());
    expectAllRows(20'000);
  }
}

TEST_F(MaintenanceTest, AMissingDatabaseIsTakenFromAWholeCopyOnly) {
  gDatabase.close();
  fs::rename(gDatabasePath, temp());
  std::ofstream(gDatabasePath + "-wal") << "a journal without its database";
  openProgramDatabase(gDatabasePath, temp());
  expectAllRows(20'000);

  gDatabase.close();
  fs::rename(gDatabasePath, temp());
  fs::resize_file(temp(), fs::file_size(temp()) / 2);
  EXPECT_THROW(openProgramDatabase(gDatabasePath, temp()), DatabaseError);
  EXPECT_TRUE(fs::exists(temp())) << "nothing else is left of it";
  EXPECT_FALSE(fs::exists(gDatabasePath));
}

TEST_F(MaintenanceTest, ClearingTheCacheEmptiesItAndRoomIsMoreThanTwiceTheSize) {
  gDatabase.execute("insert into link (site_id) values (7)");
  clearLinkCache();
  EXPECT_TRUE(waitFor([] { return LinkCleaner::instance().isIdle(); }));
  EXPECT_EQ(count("link"), 0);
  static_assert(!hasRoomToCompact(100, 60) && hasRoomToCompact(121, 60) && !hasRoomToCompact(120, 60));
}

}  // namespace
