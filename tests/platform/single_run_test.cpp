#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <csignal>

#include "base/SingleRun.h"
#include "testkit/EventLoop.h"

namespace {

using mv::SingleRun;

TEST(SingleRun, TheSecondInAFolderCallsTheFirst) {
  const QTemporaryDir folder, other;
  int calls = 0;
  {
    SingleRun first(folder.path().toStdString());
    first.onCall([&] { ++calls; });
    const SingleRun second(folder.path().toStdString() + "/../" + folder.path().section('/', -1).toStdString());
    EXPECT_TRUE(first.isFirst());
    EXPECT_FALSE(second.isFirst()) << "by whatever path";
    EXPECT_TRUE(SingleRun(other.path().toStdString()).isFirst());
    second.callFirst();
    EXPECT_TRUE(mvtest::waitFor([&] { return calls == 1; }));
  }
  EXPECT_TRUE(SingleRun(folder.path().toStdString()).isFirst());
}

TEST(SingleRun, NothingIsLeftOfAKilledOne) {
  const QTemporaryDir folder;
  int ready[2];
  ASSERT_EQ(pipe(ready), 0);
  const pid_t child = fork();
  if (child == 0) {
    const SingleRun killed(folder.path().toStdString());
    const char first = killed.isFirst() ? 1 : 0;
    [[maybe_unused]] const auto told = write(ready[1], &first, 1);
    pause();
  }
  char first = 0;
  EXPECT_EQ(read(ready[0], &first, 1), 1);
  EXPECT_EQ(first, 1);
  EXPECT_FALSE(SingleRun(folder.path().toStdString()).isFirst());
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_TRUE(SingleRun(folder.path().toStdString()).isFirst());
  close(ready[0]);
  close(ready[1]);
}

}  // namespace
