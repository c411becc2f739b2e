// Settings, error log, error report, window places in the table, small helpers.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>

#include "app/ErrorLog.h"
#include "app/ReportError.h"
#include "base/Clock.h"
#include "files/AtomicFile.h"
#include "testkit/Fixture.h"
#include "windows/ListHelpers.h"

namespace {

using namespace mvtest;

class ServicesTest : public ProgramTest {};

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
}

TEST_F(ServicesTest, ALogThatCannotBeWrittenStopsOnlyThoseWhoMind) {
  QDir(QString::fromStdString(folder())).mkdir("MV2Errors.txt");
  EXPECT_THROW(mv::logOpened(), mv::FileError);
  mv::tryAppendToErrorLog({"lost"});
}

TEST_F(ServicesTest, APipeInTheLogsPlaceHoldsNobody) {
  const std::string log = folder() + "/MV2Errors.txt";
  ASSERT_EQ(mkfifo(log.c_str(), 0600), 0);
  for (const bool isRead : {false, true}) {
    const int reader = isRead ? open(log.c_str(), O_RDONLY | O_NONBLOCK) : -1;
    try {
      mv::logOpened();
      ADD_FAILURE() << "written";
    } catch (const mv::FileError& error) {
      EXPECT_EQ(error.what(), log + " is not a file.");
    }
    close(reader);
  }
}

TEST_F(ServicesTest, ExceptionsAreShownOnFiveLinesAndHideTheStatusIndicators) {
  TestFrame frame;
  EXPECT_FALSE(mv::guarded("frmTest", [] { mv::gDatabase.execute("update nowhere set a = 1"); }));
  EXPECT_FALSE(mv::guarded("frmTest", [] { throw mv::FileError(28, "disk full"); }));
  mv::reportError(35600, "Index out of bounds", "ListSubItems", "");  // only the list's complaint
  EXPECT_EQ(frame.indicatorsHidden, 2);
  ASSERT_EQ(dialogs.messages().size(), 2U);
  EXPECT_TRUE(dialogs.messages()[0].text.startsWith("An error has occured\r\n3078\r\n"));
  EXPECT_EQ(dialogs.messages()[1].text, "An error has occured\r\n28\r\ndisk full\r\nfrmTest\r\n");
}

TEST_F(ServicesTest, TheSameErrorDoesNotPileUp) {
  dialogs.duringMessage = [this] {
    if (dialogs.messages().size() > 5) return;
    mv::reportError(1, "same", "timer", "");
    if (dialogs.messages().size() == 1) mv::reportError(2, "other", "timer", "");
  };
  mv::reportError(1, "same", "timer", "");
  EXPECT_EQ(dialogs.messages().size(), 2U);
  dialogs.duringMessage = {};
  mv::reportError(1, "same", "timer", "");
  EXPECT_EQ(dialogs.messages().size(), 3U) << "it is shown again once the first box is gone";
}

TEST(TakeFirstLineTest, CutsAtTheFirstLineEnd) {
  std::string text = "one\r\n\r\nx\ny";
  std::string line;
  const std::pair<const char*, const char*> steps[] = {{"one", "\r\nx\ny"}, {"", "x\ny"}, {"x\ny", ""}, {"", ""}};
  for (const auto& [first, rest] : steps) {
    mv::takeFirstLine(text, line);
    EXPECT_EQ(line, first);
    EXPECT_EQ(text, rest);
  }
}

}  // namespace
