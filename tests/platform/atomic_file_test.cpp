#include <sys/stat.h>

#include <QTemporaryDir>
#include <cerrno>
#include <filesystem>
#include <fstream>

#include "files/AtomicFile.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using mv::AtomicFile;
using mv::FileError;
namespace fs = std::filesystem;

class AtomicFileTest : public ::testing::Test {
 protected:
  ~AtomicFileTest() override { AtomicFile::failAfterBytes(0); }

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
    file.commit();
    EXPECT_EQ(fs::file_size(path), 20 * chunk.size() + 4);
    EXPECT_EQ(readFile(path).substr(20 * chunk.size()), std::string("\0end", 4));
  }
  EXPECT_EQ(names(), 1U);
}

TEST_F(AtomicFileTest, IsANewFileLikeAnyOtherUnderTheLongestNameToo) {
  const std::string path = in(std::string(255, 'n'));
  const mode_t mask = umask(027);
  AtomicFile(path).commit();
  umask(mask);
  EXPECT_EQ(static_cast<unsigned>(fs::status(path).permissions()), 0640U);
  AtomicFile again(path);
  again.write("x");
  again.commit();
  EXPECT_EQ(readFile(path), "x");
}

TEST_F(AtomicFileTest, AFullDiskLeavesNothing) {
  AtomicFile::failAfterBytes(1000);
  try {
    AtomicFile file(in("full"));
    file.write(std::string(1000, 'x'));
    file.write("y");
    file.commit();
    ADD_FAILURE() << "written";
  } catch (const FileError& error) {
    EXPECT_EQ(error.number(), ENOSPC);
  }
  EXPECT_EQ(names(), 0U);
}

}  // namespace
