// The start of the program: what is written, what is shown, what is left alone.

#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <filesystem>
#include <fstream>

#include "app/ErrorLog.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "program/StartUp.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"
#include "windows/WindowRegistry.h"

namespace {

using namespace mv;
using namespace mvtest;
namespace fs = std::filesystem;

class StartUpTest : public ProgramTest {
 protected:
  bool start() {
    gDatabase.close();
    startUp_ = std::make_unique<StartUp>();
    return startUp_->run(folder());
  }
  void end() {
    startUp_->mainWindow()->close();
    startUp_.reset();
  }
  frmWebSites* webSites() { return WindowRegistry::instance().find<frmWebSites>(); }

  std::unique_ptr<StartUp> startUp_;
};

TEST_F(StartUpTest, ShowsTheWindowsAndStampsTheLogAtBothEnds) {
  ASSERT_TRUE(start());
  EXPECT_TRUE(startUp_->mainWindow()->isVisible());
  ASSERT_NE(webSites(), nullptr);
  EXPECT_TRUE(webSites()->isChildVisible());
  EXPECT_TRUE(startUp_->mainWindow()->splash().isVisible());
  EXPECT_FALSE(webSites()->tmrQuit.isActive());
  end();
  const QStringList log = toQString(readFile(errorLogPath())).split("\r\n", Qt::SkipEmptyParts);
  ASSERT_EQ(log.size(), 4);
  EXPECT_EQ(log[0], "Log opened " + QString(56, '='));
  EXPECT_EQ(log[2], "Log closed " + QString(56, '='));
  EXPECT_TRUE(dialogs.messages().empty());
  EXPECT_FALSE(QFile::exists(toQString(gDatabasePath) + "-wal"));
}

TEST_F(StartUpTest, AutomaticScanningStartsMarkedSitesAndSetsTheQuitMoment) {
  TestSite site;
  site.page("/", "<html></html>");
  addSite(site.host(), folder());
  gDatabase.execute("update site set auto_scan = \"yes\"");
  gDatabase.execute("update pref set auto_scan = \"yes\", quit_time = 3");
  const QDateTime moment(QDate(2026, 3, 4), QTime(5, 6, 7));
  setNow(moment);
  ASSERT_TRUE(start());
  EXPECT_EQ(gQuitAt, moment.addSecs(3 * 3600));
  EXPECT_TRUE(webSites()->tmrQuit.isActive());
  EXPECT_NE(WindowRegistry::instance().findByCaption("Scan: " + toQString(site.host())), nullptr);
  end();
}

TEST_F(StartUpTest, EmptyPreferencesAreReportedAndEverythingCountsAsNo) {
  gDatabase.execute("delete from pref");
  ASSERT_TRUE(start());
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(dialogs.messages()[0].text.startsWith("An error has occured"));
  EXPECT_EQ(gQuitTime, 0);
  end();
}

TEST_F(StartUpTest, RefusesADatabaseThatIsNotItsOwnAndLeavesItAsItWas) {
  const QString path = toQString(gDatabasePath);
  gDatabase.execute("drop table field_info");
  gDatabase.close();
  const std::string other = readFile(gDatabasePath);
  const std::tuple<const char*, std::string, bool> cases[] = {{"another program's", other, true},
                                                              {"cut off", other.substr(0, other.size() / 2), true},
                                                              {"text", std::string(5000, 'x'), true},
                                                              {"empty", "", true},
                                                              {"missing", "", false}};
  for (const auto& [what, content, exists] : cases) {
    SCOPED_TRACE(what);
    QFile::remove(path);
    if (exists) std::ofstream(gDatabasePath, std::ios::binary) << content;
    lastMessage();
    EXPECT_FALSE(start());
    ASSERT_EQ(dialogs.messages().size(), 1u);
    EXPECT_TRUE(dialogs.messages()[0].text.contains(path)) << dialogs.messages()[0].text.toStdString();
    EXPECT_EQ(QFile::exists(path), exists);
    EXPECT_TRUE(readFile(gDatabasePath) == content);
    EXPECT_EQ(QDir(toQString(folder())).entryList({"*-wal", "*-shm"}), QStringList());
    startUp_.reset();
  }
}

TEST_F(StartUpTest, ADatabaseTakenAwayIsSaidAndEveryProcessStops) {
  TestSite site;
  site.page("/", "<html></html>");
  addSite(site.host(), folder());
  addSite(site.host() + "/other", folder());
  gDatabase.execute("update site set auto_scan = \"yes\"");
  gDatabase.execute("update pref set auto_scan = \"yes\"");
  ASSERT_TRUE(start());
  // A rebuild shows running sites off; they stop all the same.
  webSites()->buildWorkingLists("init");
  ASSERT_EQ(processWindows().size(), 4u);
  const QString away = toQString(folder() + "/away.mdb");
  ASSERT_TRUE(QFile::rename(toQString(gDatabasePath), away));
  ASSERT_TRUE(waitFor([this] { return !dialogs.messages().empty(); }, 10'000));
  EXPECT_TRUE(dialogs.messages()[0].text.contains("has been moved, deleted or replaced"));
  EXPECT_TRUE(processWindows().empty());
  EXPECT_EQ(QDir(toQString(folder())).entryList({"*-wal", "*-shm"}), QStringList());
  end();
  EXPECT_EQ(dialogs.messages().size(), 1u) << "nothing can be stored, and nobody is told so at every window";
  gDatabase.open(toUtf8(away));
  EXPECT_EQ(count("win_pos", "wname like 'Scan: %'"), 2);
}

TEST_F(StartUpTest, ARequestToEndDuringAMessageOfTheStartEndsInOrder) {
  gDatabase.execute("delete from pref");
  dialogs.duringMessage = [this] { startUp_->end(); };
  EXPECT_FALSE(start());
  EXPECT_TRUE(startUp_->isEnded());
  EXPECT_EQ(dialogs.messages().size(), 1u);
  EXPECT_EQ(webSites(), nullptr);
  const QString log = toQString(readFile(errorLogPath()));
  EXPECT_EQ(log.count("Log opened ") + log.count("Log closed "), 2);
  startUp_.reset();
  EXPECT_FALSE(gDatabase.isOpen());
}

TEST_F(StartUpTest, ASecondStartRaisesTheFirst) {
  ASSERT_TRUE(start());
  startUp_->mainWindow()->showMinimized();
  StartUp second;
  EXPECT_FALSE(second.run(folder()));
  EXPECT_TRUE(second.isEnded());
  EXPECT_TRUE(waitFor([this] { return !startUp_->mainWindow()->isMinimized(); }));
  QTest::keyClick(startUp_->mainWindow(), Qt::Key_N, Qt::ControlModifier);
  EXPECT_NE(WindowRegistry::instance().findByCaption("New Web Site"), nullptr);
  end();
}

TEST_F(StartUpTest, AProgramFolderThatCannotBeUsedIsNamed) {
  StartUp startUp;
  gDatabase.close();
  EXPECT_FALSE(startUp.run(folder() + "/caf\xE9", folder() + "/user"));
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(dialogs.messages()[0].text.contains(toQString(folder() + "/caf"))) << lastMessage();

  // Whoever may write everywhere has to become somebody else to see it.
  fs::permissions(folder(), fs::perms(0555));
  const pid_t child = fork();
  if (child == 0) {
    [[maybe_unused]] const int changed = setuid(65'534);
    _exit(findProgramFolder(folder(), "/nowhere/else") == folder() ? 0 : 1);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0) << "the folder with the only database is the one to be told of";
  fs::permissions(folder(), fs::perms(0700));
}

TEST_F(StartUpTest, FindsTheDatabaseThatAnInterruptedMaintenanceLeft) {
  const QString path = toQString(gDatabasePath);
  const QString copy = toQString(folder() + gTempDatabaseFileName);
  gDatabase.execute("update pref set quit_time = 17");
  gDatabase.close();
  ASSERT_TRUE(QFile::rename(path, copy));
  ASSERT_TRUE(start());
  EXPECT_EQ(gQuitTime, 17);
  EXPECT_FALSE(QFile::exists(copy));
  end();
  ASSERT_TRUE(QFile::copy(path, copy));
  ASSERT_TRUE(start());
  EXPECT_FALSE(QFile::exists(copy)) << "superfluous";
  end();

  const QDir base(toQString(folder()));
  base.mkpath("share/morvane2000");
  base.mkpath("bin");
  copyShippedDatabase(folder() + "/share/morvane2000/morvane2000.mdb");
  ASSERT_TRUE(QFile::rename(path, copy));
  EXPECT_EQ(findProgramFolder(folder() + "/bin", folder()), folder());
  EXPECT_FALSE(QFile::exists(path)) << "the shipped database must not stand in for the user's";
}

TEST_F(StartUpTest, AnInstalledProgramKeepsItsDataInTheUsersFolder) {
  QDir base(toQString(folder()));
  base.mkpath("prefix/bin");
  base.mkpath("prefix/share/morvane2000");
  const std::string bin = folder() + "/prefix/bin";
  const std::string user = folder() + "/user/data";
  EXPECT_EQ(findProgramFolder(bin, user), bin) << "no database anywhere: beside the program, where it is missed";

  copyShippedDatabase(folder() + "/prefix/share/morvane2000/morvane2000.mdb");
  EXPECT_EQ(findProgramFolder(bin, user), user);
  const QString copy = toQString(user) + "/morvane2000.mdb";
  EXPECT_EQ(fs::status(user + "/morvane2000.mdb").permissions(), fs::perms(0600)) << "passwords will be in it";

  QFile own(copy);
  ASSERT_TRUE(own.open(QIODevice::Append));
  own.write("mine");
  own.close();
  EXPECT_EQ(findProgramFolder(bin, user), user);
  EXPECT_TRUE(readFile(user + "/morvane2000.mdb").ends_with("mine")) << "a later start must not replace it";

  copyShippedDatabase(bin + "/morvane2000.mdb");
  EXPECT_EQ(findProgramFolder(bin, user), bin);
}

}  // namespace
