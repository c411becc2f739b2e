// Many files on their way to the disk at once.

#include <QTemporaryDir>
#include <cerrno>
#include <filesystem>
#include <fstream>

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
  void add(int number) {
    auto file = std::make_unique<AtomicFile>(in(number));
    file->write(std::to_string(number));
    commits.add({.key = number, .file = std::move(file)});
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
  GroupCommit commits{[this](GroupCommit::Files files) {
    groups.push_back(files.size());
    for (const GroupCommit::File& file : files) {
      auto& kind = file.error ? failed : file.committed ? committed : taken;
      kind.push_back(file.key);
      EXPECT_EQ(file.file == nullptr, &kind != &taken) << "only a file without a name comes back";
    }
  }};
};

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
