// The folders of sites and file types, on disk and in the database.

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "catalog/clsPath.h"
#include "files/AtomicFile.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

namespace fs = std::filesystem;

class PathTest : public ProgramTest {
 protected:
  PathTest() { path.SiteID = addSite("host/a", folder()); }
  mv::clsPath path;
};

TEST_F(PathTest, MakesFoldersWithTheirParents) {
  for (const char* name : {"/one", "/two/three/four", "/tr\xc3\xa4iling/"}) {
    path.Path = folder() + name;
    path.checkPath();
    path.checkPath();
    EXPECT_TRUE(fs::is_directory(path.Path)) << path.Path;
  }
  path.Path = folder() + "/taken";
  std::ofstream(path.Path) << "x";
  path.checkPath();
  EXPECT_TRUE(fs::is_regular_file(path.Path)) << "a file of that name counts as existing";
}

TEST_F(PathTest, AFolderThatCannotBeMadeIsRaised) {
  std::ofstream(folder() + "/file") << "x";
  for (const std::string& name : {folder() + "/file/below", folder() + "/" + std::string(300, 'n'), std::string()}) {
    path.Path = name;
    EXPECT_THROW(path.checkPath(), mv::FileError) << name;
  }
}

TEST_F(PathTest, AnyOtherFailureOfTheLookUpIsAMessage) {
  fs::create_directory_symlink(folder() + "/loop", folder() + "/loop");
  path.Path = folder() + "/loop/below";
  path.checkPath();
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(dialogs.messages()[0].text.startsWith("createPath\r\n\r\n" + QString::number(ELOOP) + " - "));
}

TEST_F(PathTest, StoresNoFolderForWhatIsGone) {
  EXPECT_TRUE(path.AddSitePath("/kept", 3));
  EXPECT_FALSE(path.AddSitePath("/lost", 987'654));
  mv::gDatabase.execute("delete from site");
  EXPECT_FALSE(path.AddSitePath("/lost", 3));
  EXPECT_EQ(value("select group_concat(path) from site_paths"), "/kept");
}

TEST_F(PathTest, KeepsOneFolderPerFileType) {
  EXPECT_EQ(path.GetPathForFileType(3), "none");
  path.AddSitePath("/first", 3);
  path.AddSitePath("/other", 4);
  path.AddSitePath("/sec\"ond|'x'", 3);
  EXPECT_EQ(path.GetPathForFileType(3), "/sec\"ond|'x'");
  EXPECT_EQ(path.GetPathForFileType(4), "/other");
  EXPECT_EQ(count("site_paths"), 2);

  mv::clsPath stranger;
  stranger.SiteID = path.SiteID + 1;
  EXPECT_EQ(stranger.GetPathForFileType(3), "none");
}

}  // namespace
