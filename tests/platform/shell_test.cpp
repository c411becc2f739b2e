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
  EXPECT_GT(mv::freeDiskSpace((folder.path() + "/a/b/c").toStdString()), 0U);
}

}  // namespace
