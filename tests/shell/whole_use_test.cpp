// A user makes a site from nothing, with the mouse and the keyboard only, through the main window's menu, starts it
// from the list and finds the files in the right folders.

#include <QDir>

#include "WholeUse.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmSitePaths.h"
#include "frmNewTag.h"
#include "scan_windows/frmTagManager.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

class WholeUseTest : public WholeUse {
 protected:
  void createFileType(const QString& extension, const QString& description) {
    chooseFromMenu("mnuTools", "mnuToolsFileTypeManager");
    click(window<frmFileTypeManager>(), "New");
    auto* editor = window<frmFileTypeChild>();
    type(editor, "txtFileTypeExtention", extension);
    type(editor, "txtFiletypeDescription", description);
    click(editor, "btnOK");
  }

  void createTag(const QString& tag) {
    chooseFromMenu("mnuTools", "mnuToolsTagManager");
    click(window<frmTagManager>(), "New");
    auto* editor = window<frmNewTag>();
    type(editor, "txtTagName", tag);
    QTest::keyClick(editor->focusWidget(), Qt::Key_Return);
  }

  void choosePath(const QString& extension, const QString& folder) {
    auto* paths = window<frmSitePaths>();
    choose(control<ListView>(paths, "lvwFiletypesAssigned"), extension);
    dialogs.nextFolders.push_back(folder);
    click(paths, "cmdBrowse");
  }
};

std::string body(char letter, std::size_t size) { return std::string(size, letter); }

TEST_F(WholeUseTest, ASiteFromNothingToItsFiles) {
  TestSite site;
  site.page("/", R"(<picture file="one.xyz"> <img src="two.jpg"> <a href="deep/index.html"> <img src="small.jpg">)");
  site.page("/deep/index.html", R"(<img src="three.png"> <a href="large.png">)");
  site.file("/one.xyz", "application/octet-stream", body('1', 3000));
  site.file("/two.jpg", "image/jpeg", body('2', 4000));
  site.file("/small.jpg", "image/jpeg", body('s', 2047));
  site.file("/deep/three.png", "image/png", body('3', 5000));
  site.file("/deep/large.png", "image/png", body('l', (1 << 20) + 1));
  const QString root = toQString(folder());

  createFileType("xyz", "Invented for this test");
  createTag("<picture file=");

  chooseFromMenu("mnuTools", "mnuToolsWebSiteManager");
  auto* sites = window<frmWebSites>();
  click(sites, "New");
  auto* editor = window<frmNew>();
  type(editor, "txtURL", toQString(site.host()));
  type(editor, "txtUpperLimit", "1");
  type(editor, "txtLowerLimit", "2");
  type(editor, "txtPagesToScan", "20");
  dialogs.nextFolders.push_back(root + "/default");
  click(editor, "cmdBrowse");
  click(editor, "cmdApply");

  choose(control<ListView>(editor, "lvwFiletypesAvailable"), "xyz");
  click(editor, "cmdMoveFileTypeToAssigned");
  click(editor, "cmdApply");
  EXPECT_EQ(value("select download_path from site"), folder() + "/default");
  click(editor, "cmdOpenPathManager");
  choosePath("jpg", root + "/photographs");
  choosePath("xyz", root + "/others/xyz");
  click(window<frmSitePaths>(), "cmdClose");
  click(editor, "cmdOK");
  ASSERT_EQ(count("site"), 1);

  choose(control<ListView>(sites, "lvwSites"), toQString(site.host()));
  click(sites, "Start");
  const std::vector<std::pair<QString, std::string>> expected = {{"/others/xyz/one.xyz", body('1', 3000)},
                                                                 {"/photographs/two.jpg", body('2', 4000)},
                                                                 {"/default/three.png", body('3', 5000)}};
  for (const auto& [path, content] : expected) {
    const QString file = root + path;
    ASSERT_TRUE(waitFor([&] { return QFile::exists(file); }, 60'000)) << file.toStdString();
    EXPECT_EQ(readFile(toUtf8(file)), content);
  }
  ASSERT_TRUE(waitFor([&] { return count("link", "link_type = \"File\" and status = \"Done\"") == 5; }, 60'000));
  EXPECT_EQ(QDir(root + "/photographs").entryList(QDir::Files), QStringList("two.jpg")) << "the small one is left out";
  EXPECT_EQ(QDir(root + "/default").entryList(QDir::Files), QStringList("three.png")) << "the large one is left out";
  click(sites, "Stop");
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Scan: " + toQString(site.host())), nullptr);
}

}  // namespace
