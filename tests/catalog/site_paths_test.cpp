// The path manager of a site, worked by clicks and keys.

#include <filesystem>

#include "catalog_windows/frmSitePaths.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

class SitePaths : public WindowTest {
 protected:
  void open(const std::vector<std::string>& extensions, const std::string& jpgFolder = "") {
    siteId = addSite("site.example", "/nowhere", extensions);
    if (!jpgFolder.empty()) insert("site_paths", {{std::to_string(siteId), typeId("jpg"), jpgFolder}});
    window = new mv::frmSitePaths;
    window->SiteID = siteId;
    window->SiteName = "site.example";
    window->open();
  }

  mv::ListView& list() const { return control<mv::ListView>(window, "lvwFiletypesAssigned"); }
  QString shown() const { return textOf(window, "txtPath"); }
  std::string typeId(const std::string& name) const {
    return value("select id from valid_filetypes where name = '" + name + "'");
  }
  std::string stored(const std::string& name) const {
    return value("select path from site_paths where site_id = " + std::to_string(siteId) +
                 " and filetype_id = " + typeId(name));
  }

  mv::Id siteId = 0;
  mv::frmSitePaths* window = nullptr;
};

TEST_F(SitePaths, EachTypeShowsItsOwnFolderOrTheProgramsDefault) {
  open({"jpg", "gif"}, "/own");
  EXPECT_EQ(window->caption(), "Path Manager for: site.example");
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"gif", "jpg"}));
  EXPECT_EQ(list().currentSelectedRow(), 0);
  EXPECT_EQ(shown().toStdString(), mv::gDownloadFolder);
  QTest::keyClick(&list(), Qt::Key_Down);
  EXPECT_EQ(shown(), "/own");
  clickRow(list(), 0);
  EXPECT_EQ(shown().toStdString(), mv::gDownloadFolder);
}

TEST_F(SitePaths, BrowseMakesTheFolderShownAndStoresTheChoiceOnce) {
  open({"gif"});
  dialogs.nextFolders = {"/first \"quoted\"", "/second", std::nullopt};
  click(window, "cmdBrowse");
  ASSERT_EQ(dialogs.folderRequests.size(), 1u);
  const mv::FolderRequest& request = dialogs.folderRequests[0];
  EXPECT_EQ(request.title, "Add New Path for gif files");
  EXPECT_EQ(request.prompt, "Select folder where you want gif files downloaded from site.example to be saved.");
  EXPECT_EQ(request.initialFolder.toStdString(), mv::gDownloadFolder);
  EXPECT_EQ(shown(), "/first \"quoted\"");
  EXPECT_EQ(stored("gif"), "/first \"quoted\"");

  const std::string wanted = folder() + "/made/here";
  for (int i = 0; i < 2; ++i) {
    control<QLineEdit>(window, "txtPath").setText(QString::fromStdString(wanted));
    click(window, "cmdBrowse");
    EXPECT_TRUE(std::filesystem::is_directory(wanted));
    EXPECT_EQ(stored("gif"), "/second") << "the last dialog is cancelled";
  }
  EXPECT_EQ(shown().toStdString(), wanted);
  EXPECT_EQ(count("site_paths"), 1);
}

TEST_F(SitePaths, TheFolderOfADeletedSiteIsNotStored) {
  open({"gif"});
  mv::gDatabase.execute("delete from site");
  dialogs.nextFolders = {"/lost"};
  click(window, "cmdBrowse");
  EXPECT_NE(lastMessage().find("has been deleted meanwhile"), std::string::npos);
  EXPECT_EQ(shown().toStdString(), mv::gDownloadFolder);
  EXPECT_EQ(count("site_paths"), 0);
}

TEST_F(SitePaths, APasswordInTheSitesAddressIsNotShown) {
  siteId = addSite("anna:secret@site.example", "/nowhere", {"gif"});
  window = new mv::frmSitePaths;
  window->SiteID = siteId;
  window->SiteName = "anna:secret@site.example";
  window->open();
  click(window, "cmdBrowse");
  EXPECT_EQ(window->caption(), "Path Manager for: anna:***@site.example");
  EXPECT_TRUE(dialogs.folderRequests[0].prompt.contains("anna:***@site.example"));
  EXPECT_FALSE(dialogs.folderRequests[0].prompt.contains("secret"));
}

TEST_F(SitePaths, AFolderThatCannotBeMadeIsReportedAndDoesNotBlockBrowse) {
  open({"gif"}, "");
  dialogs.nextFolders = {std::nullopt, "/good"};
  control<QLineEdit>(window, "txtPath").setText("/proc/none/of/this");
  for (const int asked : {1, 2}) {
    click(window, "cmdBrowse");
    EXPECT_NE(lastMessage().find("/proc/none/of/this cannot be created"), std::string::npos);
    EXPECT_EQ(dialogs.folderRequests.size(), static_cast<std::size_t>(asked));
  }
  EXPECT_EQ(stored("gif"), "/good");

  control<QLineEdit>(window, "txtPath").clear();
  click(window, "cmdBrowse");
  EXPECT_EQ(dialogs.folderRequests.back().initialFolder.toStdString(), mv::gProgramFolder);
}

TEST_F(SitePaths, ATypedFolderIsStoredOrItIsSaidWhyNot) {
  open({"gif"});
  const QString typed = QString::fromStdString(folder()) + "/typed/../typed here";
  type(window, "txtPath", typed);
  QTest::keyClick(&control<QLineEdit>(window, "txtPath"), Qt::Key_Return);
  EXPECT_EQ(stored("gif"), folder() + "/typed here");
  EXPECT_TRUE(std::filesystem::is_directory(folder() + "/typed here"));
  EXPECT_EQ(shown().toStdString(), folder() + "/typed here");

  type(window, "txtPath", "/proc/none/of/this");
  QTest::keyClick(&control<QLineEdit>(window, "txtPath"), Qt::Key_Return);
  EXPECT_NE(lastMessage().find("cannot be created"), std::string::npos);
  EXPECT_EQ(stored("gif"), folder() + "/typed here");
  EXPECT_EQ(shown(), "/proc/none/of/this") << "to be corrected";
  auto& box = control<QLineEdit>(window, "txtPath");
  EXPECT_EQ(window->focusWidget(), &box);
  dialogs.forgetMessages();
  QTest::keyClick(&box, Qt::Key_Return);
  EXPECT_TRUE(dialogs.messages().empty()) << "said once";
  EXPECT_EQ(shown().toStdString(), folder() + "/typed here");
}

}  // namespace
