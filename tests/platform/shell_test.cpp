#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "files/DiskSpace.h"

namespace {

TEST(ShellTest, FreeSpaceOfAFolderStillToBeMadeIsThatOfItsDrive) {
  const QTemporaryDir folder;
  EXPECT_GT(mv::freeDiskSpace((folder.path() + "/a/b/c").toStdString()), 0U);
}

}  // namespace
