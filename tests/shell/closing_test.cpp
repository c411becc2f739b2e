// Closing the main window with editors open and sites running: nothing crashes, nothing unrelated is written.

#include <QFile>
#include <QGuiApplication>
#include <QPointer>

#include "app/ErrorLog.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "frmNewTag.h"
#include "program/ProgramMenus.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmPreferences.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

class ClosingTest : public ProgramTest {
 protected:
  static void openWith(EditorWindow* editor, const char* box, const char* text) {
    editor->open();
    control<QLineEdit>(editor, box).setText(text);
  }
  // Two editors of the same site, one of a new site, one of a file type and one of a tag, all with unsaved text.
  void openEditors(mv::Id site) {
    for (const char* mode : {"edit", "edit", "new"}) {
      auto* editor = new frmNew;
      editor->Mode = mode;
      editor->SiteID = site;
      openWith(editor, "txtURL", "changed.example");
    }
    openWith(new frmFileTypeChild, "txtFileTypeExtention", "unsaved");
    openWith(new frmNewTag, "txtTagName", "unsaved");
  }
};

TEST_F(ClosingTest, EditorsAndRunningSitesGoWithTheMainWindow) {
  TestSite web;
  web.page("/", R"(<a href="a.html"> <img src="p.jpg">)");
  web.add("/p.jpg", {.type = "image/jpeg", .body = std::string(200'000, 'p'), .fault = Fault::HeaderOnly});
  const mv::Id site = addSite(web.host(), folder() + "/saved", {"jpg"});
  gDatabase.execute("update site set auto_scan = \"yes\"");

  auto main = std::make_unique<frmDownloadManager>(programMenus());
  main->show();
  showSingle<frmWebSites>()->autoScan();
  ASSERT_TRUE(waitFor([&] { return web.requestCount("/p.jpg") > 0; }));
  openEditors(site);
  const long types = count("valid_filetypes");
  const long tags = count("valid_tag");

  main->close();
  main.reset();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  QCoreApplication::processEvents();

  EXPECT_TRUE(WindowRegistry::instance().windows().empty());
  EXPECT_EQ(value("select group_concat(name) from site"), web.host());
  EXPECT_EQ(count("valid_filetypes"), types);
  EXPECT_EQ(count("valid_tag"), tags);
  EXPECT_EQ(count("win_pos", "wname like \"Scan: %\" or wname like \"Download: %\""), 2);
  EXPECT_EQ(count("link", "link_type = \"File\" and status = \"False\""), 1)
      << "the file that was cut off is tried again";
}

TEST_F(ClosingTest, TheEndOfTheSessionClosesInGoodOrderEvenWhileTheDatabaseIsCompacted) {
  frmDownloadManager main(programMenus());
  main.show();
  showSingle<frmWebSites>();
  control<QPushButton>(showSingle<frmPreferences>(), "cmdCompactDatabase").click();
  QPointer<QWidget> waiting = main.findChild<QWidget*>("frmPleaseWait");
  ASSERT_TRUE(waitFor([&] { return !waiting || textOf(waiting, "lblPleaseWait") != "Waiting..."; }));
  // Nobody looks at the manager.
  QObject manager;
  Q_EMIT qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(manager));
  main.close();
  EXPECT_FALSE(main.isVisible());
  EXPECT_FALSE(waiting);
  EXPECT_TRUE(WindowRegistry::instance().windows().empty());
  EXPECT_EQ(count("win_pos", "wname in ('Morvane2000', 'Web Sites')"), 2);
  EXPECT_EQ(toQString(readFile(errorLogPath())).count("Log closed ="), 1);
  EXPECT_FALSE(QFile::exists(toQString(folder() + gTempDatabaseFileName)));
}

}  // namespace
