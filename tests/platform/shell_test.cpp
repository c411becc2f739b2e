#include "platform/Shell.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

namespace {

TEST(ShellTest, UserSettingsComeBackPerApplicationSectionAndKey) {
  const QTemporaryDir folder;
  mv::setUserSettingsFolder(folder.filePath("new"));
  EXPECT_EQ(mv::readUserSetting("App", "Section", "Key", "none"), "none");
  const QString value = QString::fromUtf8("a, b;c=\"d\" \\e %41 ü ");
  mv::saveUserSetting("App", "Section", "Key", value);
  mv::saveUserSetting("App", "Section", "Other", "2");
  EXPECT_EQ(mv::readUserSetting("App", "Section", "Key"), value);
  EXPECT_EQ(mv::readUserSetting("App", "Elsewhere", "Key"), "");
  EXPECT_EQ(mv::readUserSetting("App2", "Section", "Key"), "");
  EXPECT_TRUE(QFile::exists(folder.filePath("new/App.ini")));
  mv::setUserSettingsFolder({});
}

TEST(ShellTest, FreeSpaceOfAFolderStillToBeMadeIsThatOfItsDrive) {
  const QTemporaryDir folder;
  const auto space = mv::freeDiskSpace(folder.path().toStdString());
  EXPECT_GT(space, 0U);
  EXPECT_GT(mv::freeDiskSpace((folder.path() + "/a/b/c").toStdString()), 0U);
}

TEST(ShellTest, TheClockCanBeSet) {
  const QDateTime moment(QDate(2001, 2, 3), QTime(4, 5, 6));
  mv::setNow(moment);
  EXPECT_EQ(mv::now(), moment);
  const QString text = QString::fromStdString(mv::dateTimeText(mv::now()));
  const QString date = QLocale::system().toString(moment.date(), QLocale::ShortFormat);
  EXPECT_TRUE(text.startsWith(date + ' ')) << text.toStdString();
  EXPECT_GT(text.size(), date.size() + 1);
  mv::setNow({});
  EXPECT_LT(std::abs(mv::now().secsTo(QDateTime::currentDateTime())), 60);
}

}  // namespace
