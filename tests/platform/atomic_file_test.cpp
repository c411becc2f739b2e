#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "files/AtomicFile.h"
#include "files/FileSignals.h"
#include "files/Leftovers.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using mv::AtomicFile;
using mv::Existing;
using mv::FileError;
using mv::OpenFile;
namespace fs = std::filesystem;

class AtomicFileTest : public ::testing::Test {
 protected:
  ~AtomicFileTest() override {
    AtomicFile::failAfterBytes(0);
    OpenFile::setBeforeFlush({});
    OpenFile::refuseUnnamed(false);
  }

  std::string in(const std::string& name) const { return folder.path().toStdString() + '/' + name; }

  std::size_t names() const {
    const fs::directory_iterator all(folder.path().toStdString());
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
  }

  QTemporaryDir folder;
};

TEST_F(AtomicFileTest, ShowsTheWholeContentOrWhatWasThereBefore) {
  const std::string path = in("picture.jpg");
  const std::string chunk(1024 * 1024, 'x');
  for (const std::string before : {"", "an older file"}) {
    if (!before.empty()) std::ofstream(path, std::ios::trunc) << before;
    AtomicFile(path).write("dropped");
    EXPECT_EQ(fs::exists(path) ? readFile(path) : "", before);
    AtomicFile file(path);
    for (int i = 0; i < 20; ++i) file.write(chunk);
    file.write("");
    file.write(std::string_view("\0end", 4));
    EXPECT_EQ(file.size(), 20 * chunk.size() + 4);
    EXPECT_EQ(fs::exists(path) ? readFile(path) : "", before);
    file.commit(Existing::Replace);
    EXPECT_EQ(fs::file_size(path), 20 * chunk.size() + 4);
    EXPECT_EQ(readFile(path).substr(20 * chunk.size()), std::string("\0end", 4));
  }
  EXPECT_EQ(names(), 1U);
}

TEST_F(AtomicFileTest, IsANewFileLikeAnyOtherUnderTheLongestNameToo) {
  const std::string path = in(std::string(255, 'n'));
  const mode_t mask = umask(027);
  AtomicFile(path).commit(Existing::Replace);
  umask(mask);
  EXPECT_EQ(static_cast<unsigned>(fs::status(path).permissions()), 0640U);
  AtomicFile again(path);
  again.write("x");
  again.commit(Existing::Replace);
  EXPECT_EQ(readFile(path), "x");
}

TEST_F(AtomicFileTest, AFullDiskLeavesNothing) {
  AtomicFile::failAfterBytes(1000);
  try {
    AtomicFile file(in("full"));
    file.write(std::string(1000, 'x'));
    file.write("y");
    file.commit(Existing::Replace);
    ADD_FAILURE() << "written";
  } catch (const FileError& error) {
    EXPECT_EQ(error.number(), ENOSPC);
  }
  EXPECT_EQ(names(), 0U);
}

TEST_F(AtomicFileTest, KeepsOrReplacesAFileThatHasTheNameOnEveryFileSystem) {
  for (const bool unnamed : {true, false}) {
    OpenFile::refuseUnnamed(!unnamed);
    const std::string taken = in(unnamed ? "taken" : "taken, too");
    const std::string free = taken + " but free";
    AtomicFile file(taken);
    file.write("new");
    std::ofstream(taken) << "came meanwhile";
    EXPECT_FALSE(file.commit(Existing::Keep));
    EXPECT_EQ(readFile(taken), "came meanwhile");
    file.setPath(free);
    EXPECT_TRUE(file.commit(Existing::Keep));
    EXPECT_EQ(readFile(free), "new");

    AtomicFile replacing(taken);
    replacing.write("newer");
    EXPECT_TRUE(replacing.commit(Existing::Replace));
    EXPECT_EQ(readFile(taken), "newer");
  }
  EXPECT_EQ(names(), 4U) << "no temporary name is left";
}

TEST_F(AtomicFileTest, HasItsNameOnlyWhenItsBytesAreOnTheDisk) {
  std::vector<std::size_t> namesAtFlush;
  OpenFile::setBeforeFlush([&] {
    namesAtFlush.push_back(names());
    return namesAtFlush.size() > 1 ? EIO : 0;
  });
  AtomicFile good(in("good"));
  good.write("x");
  EXPECT_TRUE(good.commit(Existing::Keep));
  AtomicFile bad(in("bad"));
  bad.write("x");
  EXPECT_THROW(bad.commit(Existing::Replace), FileError);
  EXPECT_EQ(namesAtFlush, (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(names(), 1U);
}

TEST_F(AtomicFileTest, WhatAKilledRunLeftIsRemovedAndNothingElse) {
  const char* leftovers[] = {".mv17-1.part", ".mv4194304-4294967295.part"};
  const char* others[] = {".mv17.part",  ".mv-1.part",       ".mvx-1.part",
                          "mv17-1.part", ".mv17-1.part.jpg", ".mv17-1-2.part"};
  for (const char* name : leftovers) std::ofstream(in(name)) << "half";
  for (const char* name : others) std::ofstream(in(name)) << "the user's";
  OpenFile::refuseUnnamed(true);
  AtomicFile underWay(in("picture.jpg"));
  underWay.write("whole");
  mv::removeLeftovers(in(""));
  mv::removeLeftovers(in("no such folder"));
  EXPECT_EQ(names(), std::size(others) + 1);
  EXPECT_TRUE(underWay.commit(Existing::Keep));
  EXPECT_EQ(readFile(in("picture.jpg")), "whole");
}

// Writes more than the system lets a file hold, and into a pipe that nobody reads; then ends, with 0 when both were
// errors like any other.
[[noreturn]] void writeTooMuch(const std::string& path) {
  mv::makeFileSignalsErrors();
  const rlimit most{4096, 4096};
  ::setrlimit(RLIMIT_FSIZE, &most);
  int number = 0;
  try {
    AtomicFile(path).write(std::string(100'000, 'x'));
  } catch (const FileError& error) {
    number = error.number();
  }
  int ends[2] = {};
  const bool isPipe = ::pipe(ends) == 0 && ::close(ends[0]) == 0;
  const bool isRefused = ::write(ends[1], "x", 1) < 0 && errno == EPIPE;
  std::_Exit(number == EFBIG && isPipe && isRefused ? 0 : 1);
}

TEST_F(AtomicFileTest, SignalsOfTheFileSystemAreErrors) {
  EXPECT_EXIT(writeTooMuch(in("large")), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(names(), 0U);
}

}  // namespace
