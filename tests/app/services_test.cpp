// Settings, error log, error report, window places in the table, small helpers.
#include <gtest/gtest.h>

#include <QDir>

#include "app/ErrorLog.h"
#include "app/ListHelpers.h"
#include "app/MainFrame.h"
#include "app/ReportError.h"
#include "app/WindowPosition.h"
#include "platform/AtomicFile.h"
#include "platform/ListView.h"
#include "platform/Shell.h"
#include "support/Fixture.h"

namespace {

using namespace mvtest;

class ServicesTest : public ProgramTest {};

TEST_F(ServicesTest, PathsHangOnTheProgramFolder) {
  mv::setProgramFolder("/opt/program/");
  EXPECT_EQ(mv::gDatabasePath, "/opt/program/morvane2000.mdb");
  EXPECT_EQ(mv::gDatabasePath, mv::gProgramFolder + mv::gDatabaseFileName);
  EXPECT_EQ(mv::gTempDatabaseFileName, "/mv2000TempDB.mdb");
  EXPECT_EQ(mv::gDownloadFolder, "/opt/program/mvDownloads");
}

TEST_F(ServicesTest, PreferencesComeFromTheFirstRow) {
  mv::gDatabase.execute("update pref set auto_scan = 'yes', quit_time = 3, auto_update = 'Yes', help_server = 'yes'");
  mv::loadPreferences();
  EXPECT_EQ(mv::gAutoScan, "yes");
  EXPECT_EQ(mv::gQuitTime, 3);
  EXPECT_EQ(mv::gHideProcesses, "no");
  EXPECT_FALSE(mv::isYes(mv::gAutoUpdate)) << "only the text \"yes\" counts";
  EXPECT_EQ(mv::gHelpServer, "yes");

  mv::gDatabase.execute("delete from pref");
  try {
    mv::loadPreferences();
    FAIL() << "an empty table is an error";
  } catch (const mv::DatabaseError& error) {
    EXPECT_EQ(error.number(), mv::DatabaseError::kNoCurrentRecord);
  }
  EXPECT_EQ(mv::gAutoScan, "");
  EXPECT_EQ(mv::gOverwriteExisting, "");
  EXPECT_EQ(mv::gQuitTime, 0);
}

TEST_F(ServicesTest, TheErrorLogGrowsByWholeLines) {
  const QDateTime moment(QDate(2001, 2, 3), QTime(4, 5, 6));
  mv::setNow(moment);
  const std::string stamp = mv::dateTimeText(moment) + "\r\n";
  const std::string rule(56, '=');
  mv::logOpened();
  mv::appendToErrorLog({"17", "http://h/\xC3\xBC", ""});
  mv::logClosed();
  const std::string expected =
      "Log opened " + rule + "\r\n" + stamp + "17\r\nhttp://h/\xC3\xBC\r\n\r\n" + "Log closed " + rule + "\r\n" + stamp;
  EXPECT_EQ(readFile(folder() + "/MV2Errors.txt"), expected);
  EXPECT_EQ(mv::errorLogPath(), folder() + "/MV2Errors.txt");
}

TEST_F(ServicesTest, ALogThatCannotBeWrittenStopsOnlyThoseWhoMind) {
  QDir(QString::fromStdString(folder())).mkdir("MV2Errors.txt");
  EXPECT_THROW(mv::logOpened(), mv::FileError);
  mv::tryAppendToErrorLog({"lost"});
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ServicesTest, AnErrorIsShownOnFiveLinesAndHidesTheStatusIndicators) {
  TestFrame frame;
  mv::reportError(3061, "Too few parameters.", "Database", "");
  EXPECT_EQ(frame.indicatorsHidden, 1);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "An error has occured\r\n3061\r\nToo few parameters.\r\nDatabase\r\n");

  mv::reportError(35600, "Index out of bounds", "ListSubItems", "");
  EXPECT_EQ(dialogs.messages.size(), 1U) << "the list's complaint about a missing sub-item";
  mv::reportError(35600, "Index out of bounds", "ListItems", "");
  EXPECT_EQ(dialogs.messages.size(), 2U);
}

TEST_F(ServicesTest, TheSameErrorDoesNotPileUp) {
  dialogs.duringMessage = [this] {
    if (dialogs.messages.size() > 5) return;
    mv::reportError(1, "same", "timer", "");
    if (dialogs.messages.size() == 1) mv::reportError(2, "other", "timer", "");
  };
  mv::reportError(1, "same", "timer", "");
  EXPECT_EQ(dialogs.messages.size(), 2U);
  dialogs.duringMessage = {};
  mv::reportError(1, "same", "timer", "");
  EXPECT_EQ(dialogs.messages.size(), 3U) << "it is shown again once the first box is gone";
}

TEST_F(ServicesTest, ExceptionsOfEveryKindAreReported) {
  EXPECT_FALSE(mv::guarded("frmTest", [] { mv::gDatabase.execute("update nowhere set a = 1"); }));
  EXPECT_FALSE(mv::guarded("frmTest", [] { throw mv::FileError(28, "disk full"); }));
  EXPECT_FALSE(mv::guarded("frmTest", [] { throw std::runtime_error("odd"); }));
  EXPECT_TRUE(mv::guarded("frmTest", [] {}));
  ASSERT_EQ(dialogs.messages.size(), 3U);
  EXPECT_TRUE(dialogs.messages[0].text.startsWith("An error has occured\r\n3078\r\n"))
      << dialogs.messages[0].text.toStdString();
  EXPECT_EQ(dialogs.messages[1].text, "An error has occured\r\n28\r\ndisk full\r\nfrmTest\r\n");
  EXPECT_EQ(dialogs.messages[2].text, "An error has occured\r\n0\r\nodd\r\nfrmTest\r\n");
}

TEST_F(ServicesTest, PlacesAreKeptByTitle) {
  const std::string title = "Scan: \"odd\" site's";
  long top = 1;
  long left = 2;
  long height = 3;
  long width = 4;
  mv::readWindowPosition(title, top, left, height, width);
  EXPECT_EQ(std::vector<long>({top, left, height, width}), std::vector<long>({1, 2, 3, 4})) << "untouched";

  mv::saveWindowPosition(title, 15, -30, 3600, 6200);
  mv::saveWindowPosition("other", 0, 0, 1, 1);
  mv::saveWindowPosition(title, 45, 60, 1600, 4800);
  mv::readWindowPosition(title, top, left, height, width);
  EXPECT_EQ(std::vector<long>({top, left, height, width}), std::vector<long>({45, 60, 1600, 4800}));
  EXPECT_EQ(count("win_pos", "wname = " + mv::quoted(title)), 1);
}

TEST(TakeFirstLineTest, CutsAtTheFirstLineEnd) {
  const struct {
    std::string text, line, rest;
  } cases[] = {{"one\r\ntwo\r\nthree", "one", "two\r\nthree"},
               {"one", "one", ""},
               {"", "", ""},
               {"\r\ntwo", "", "two"},
               {"one\ntwo\r\n", "one\ntwo", ""}};
  for (const auto& c : cases) {
    std::string text = c.text;
    std::string line = "before";
    mv::takeFirstLine(text, line);
    EXPECT_EQ(line, c.line) << c.text;
    EXPECT_EQ(text, c.rest) << c.text;
  }
}

TEST(ListHelpersTest, RowsMoveBetweenLists) {
  mv::ListView available;
  mv::ListView assigned;
  for (mv::ListView* list : {&available, &assigned}) {
    list->setColumns({{"Name"}, {"Id"}, {"Global"}});
    list->setMultiSelect(true);
  }
  for (const QString name : {"c", "a", "b", "d"}) available.addRow({name, "id-" + name, "no"});
  assigned.setSorting(true);
  assigned.addRow({"bb", "id-bb", "yes"});
  for (const int row : {0, 2, 3}) available.setRowSelected(row, true);
  mv::moveSelectedItems(available, assigned);
  ASSERT_EQ(assigned.rowCount(), 4);
  EXPECT_EQ(assigned.cell(0, 0), "b");
  EXPECT_EQ(assigned.cell(1, 0), "bb");
  EXPECT_EQ(assigned.cell(2, 1), "id-c");
  EXPECT_EQ(assigned.cell(3, 2), "no");
  EXPECT_TRUE(assigned.selectedRows().empty());
  ASSERT_EQ(available.rowCount(), 1);
  EXPECT_EQ(available.cell(0, 0), "a");

  for (const QString name : {"b", "B", "x", "d"}) available.addRow({name});
  mv::removeListedItems(available, assigned);
  EXPECT_EQ(available.findRow(0, "b"), -1);
  EXPECT_EQ(available.findRow(0, "d"), -1);
  EXPECT_NE(available.findRow(0, "B"), -1) << "texts are the same only letter by letter";
  EXPECT_EQ(available.rowCount(), 3);
}

}  // namespace
