// Many files on their way to the disk at once.

#include <sys/resource.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include "RefusedMemory.h"
#include "files/GroupCommit.h"
#include "testkit/Fixture.h"
#include "testkit/FlushGate.h"

namespace {

using namespace mvtest;
using mv::AtomicFile;
using mv::GroupCommit;
namespace fs = std::filesystem;

class GroupCommitTest : public ::testing::Test {
 protected:
  std::string in(int number) const { return folder.path().toStdString() + '/' + std::to_string(number); }
  void add(int number, mv::Existing existing = mv::Existing::Keep) {
    auto file = std::make_unique<AtomicFile>(in(number));
    file->write(std::to_string(number));
    commits.add({.key = number, .file = std::move(file), .existing = existing});
  }
  void TearDown() override { gate.open(); }  // a test that failed leaves nobody waiting
  std::size_t names() const {
    const fs::directory_iterator all(folder.path().toStdString());
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
  }

  QTemporaryDir folder;
  FlushGate gate;
  std::vector<std::size_t> groups;
  std::vector<std::int64_t> committed, taken, failed;
  GroupCommit commits{[this](const GroupCommit::Files& files) {
    groups.push_back(files.size());
    for (const GroupCommit::File& file : files) {
      auto& kind = file.error ? failed : file.committed ? committed : taken;
      kind.push_back(file.key);
      EXPECT_EQ(file.file == nullptr, &kind != &taken) << "only a file without a name comes back";
    }
  }};
};

TEST_F(GroupCommitTest, AGroupThatFindsNoMemoryBeginsLater) {
  gate.open();
  add(1);
  bool hasRaised = false, isThrough = true;
  refusedFrom = 1;
  try {
    isThrough = commits.finish(0);
  } catch (...) {
    hasRaised = true;
  }
  refusedFrom = kNothingRefused;
  EXPECT_FALSE(hasRaised || isThrough);
  EXPECT_TRUE(waitFor([this] { return committed.size() == 1; }));
}

TEST_F(GroupCommitTest, WhatComesWhileAGroupIsFlushedMakesTheNextOne) {
  add(0);
  ASSERT_TRUE(waitFor([this] { return gate.waiting() == 1; }));
  for (int number = 1; number < 40; ++number) add(number);
  EXPECT_EQ(names(), 0U);
  EXPECT_FALSE(commits.finish(1)) << "the disk is still at it";
  EXPECT_TRUE(groups.empty());

  gate.open();
  ASSERT_TRUE(waitFor([this] { return committed.size() == 40; }));
  EXPECT_EQ(groups, (std::vector<std::size_t>{1, 39}));
  EXPECT_EQ(names(), 40U);
  for (int number = 0; number < 40; ++number) EXPECT_EQ(readFile(in(number)), std::to_string(number));
}

TEST_F(GroupCommitTest, AnEndWaitsForAllThatWasAdded) {
  add(0);
  ASSERT_TRUE(waitFor([this] { return gate.waiting() == 1; }));
  for (int number = 1; number < 40; ++number) add(number);
  gate.open();
  EXPECT_TRUE(commits.finish(20'000));
  EXPECT_EQ(committed.size(), 40U);
  EXPECT_EQ(names(), 40U);
  QCoreApplication::processEvents();
  EXPECT_EQ(groups.size(), 2U) << "nothing settles twice";
}

TEST_F(GroupCommitTest, EachFileHasItsOwnOutcome) {
  std::ofstream(in(3)) << "the user's";
  gate.failWith(EIO, 1);
  add(0);
  ASSERT_TRUE(waitFor([this] { return gate.waiting() == 1; }));
  for (int number = 1; number < 5; ++number) add(number);
  gate.open();
  EXPECT_TRUE(commits.finish(20'000));
  EXPECT_EQ(committed, (std::vector<std::int64_t>{1, 2, 4}));
  EXPECT_EQ(taken, std::vector<std::int64_t>{3});
  EXPECT_EQ(failed, std::vector<std::int64_t>{0});
  EXPECT_EQ(readFile(in(3)), "the user's");
  EXPECT_EQ(names(), 4U);
}

// A folder may allow to write but not to read; or no handle is left to open it.
TEST_F(GroupCommitTest, AFolderThatCannotBeOpenedLosesNoFile) {
  rlimit most{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &most), 0);
  mv::OpenFile::setBeforeFlush([&most] {
    const int next = ::dup(STDIN_FILENO);
    if (next < 0) return 0;  // there is none any more
    ::close(next);
    const rlimit none{static_cast<rlim_t>(next), most.rlim_max};
    return ::setrlimit(RLIMIT_NOFILE, &none);
  });
  std::ofstream(in(1)) << "the user's";
  add(0);
  add(1, mv::Existing::Replace);
  const bool settled = commits.finish(20'000);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &most), 0);
  EXPECT_TRUE(settled);
  EXPECT_EQ(committed, (std::vector<std::int64_t>{0, 1}));
  EXPECT_EQ(names(), 2U);
  EXPECT_EQ(readFile(in(1)), "1");
}

// What a name was taken over from is gone: to take it back would leave nothing.
TEST_F(GroupCommitTest, ANameThatIsNotCertainIsTakenBackUnlessItHasReplacedAnother) {
  std::atomic<int> flushes = 0;
  mv::OpenFile::setBeforeFlush([&flushes] { return ++flushes > 2 ? EIO : 0; });
  std::ofstream(in(1)) << "the user's";
  add(0);
  add(1, mv::Existing::Replace);
  EXPECT_TRUE(commits.finish(20'000));
  EXPECT_EQ(failed, (std::vector<std::int64_t>{0, 1}));
  EXPECT_EQ(names(), 1U);
  EXPECT_EQ(readFile(in(1)), "1");
}

// They are flushed by their file system together, where it can.
TEST_F(GroupCommitTest, OneOfManyKeepsItsFailureToItself) {
  gate.failWith(ENOSPC, 1);
  for (int number = 0; number < 40; ++number) add(number);
  gate.open();
  EXPECT_TRUE(commits.finish(20'000));
  EXPECT_EQ(groups, std::vector<std::size_t>{40}) << "those that follow each other closely go together";
  EXPECT_EQ(committed.size(), 39U);
  EXPECT_EQ(failed.size(), 1U);
  EXPECT_EQ(names(), 39U);
}

}  // namespace
