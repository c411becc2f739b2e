// Closing the main window with editors open and sites running: nothing crashes, nothing unrelated is written.

#include <QFile>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>

#include "app/ErrorLog.h"
#include "app/WindowRegistry.h"
#include "catalog/frmFileTypeChild.h"
#include "platform/Text.h"
#include "scan/frmNewTag.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmPreferences.h"
#include "sites/frmNew.h"
#include "sites/frmWebSites.h"
#include "support/Fixture.h"
#include "support/TestSite.h"

namespace {

using namespace mv;

class ClosingTest : public mvtest::ProgramTest {
 protected:
  // Two editors of the same site, one of a new site, one of a file type and one of a tag, all with unsaved text.
  void openEditors(std::int32_t site) {
    for (const char* mode : {"edit", "edit", "new"}) {
      auto* editor = new frmNew;
      editor->Mode = mode;
      if (editor->Mode == "edit") editor->SiteID = site;
      editor->open();
      editor->findChild<QLineEdit*>("txtURL")->setText("changed.example");
    }
    auto* fileType = new frmFileTypeChild;
    fileType->open();
    fileType->findChild<QLineEdit*>("txtFileTypeExtention")->setText("unsaved");
    auto* tag = new frmNewTag;
    tag->open();
    tag->findChild<QLineEdit*>("txtTagName")->setText("unsaved");
  }
};

TEST_F(ClosingTest, EditorsAndRunningSitesGoWithTheMainWindow) {
  mvtest::TestSite web;
  web.page("/", R"(<a href="a.html"> <img src="p.jpg">)");
  mvtest::Resource slow;
  slow.type = "image/jpeg";
  slow.body = std::string(200'000, 'p');
  slow.fault = mvtest::Fault::HeaderOnly;
  web.add("/p.jpg", slow);
  const int site = mvtest::addSite(web.host(), folder() + "/saved", {"jpg"});
  gDatabase.execute("update site set auto_scan = \"yes\"");

  auto main = std::make_unique<frmDownloadManager>();
  main->show();
  showSingle<frmWebSites>()->autoScan();
  ASSERT_TRUE(mvtest::waitFor([&] { return web.requestCount("/p.jpg") > 0; }));
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
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ClosingTest, TheEndOfTheSessionClosesInGoodOrderEvenWhileTheDatabaseIsCompacted) {
  frmDownloadManager main;
  main.show();
  showSingle<frmWebSites>();
  auto* preferences = showSingle<frmPreferences>();
  preferences->findChild<QPushButton*>("cmdCompactDatabase")->click();
  QPointer<QWidget> waiting = main.findChild<QWidget*>("frmPleaseWait");
  ASSERT_TRUE(mvtest::waitFor([&] {
    const auto* label = waiting ? waiting->findChild<QLabel*>("lblPleaseWait") : nullptr;
    return !label || label->text() != "Waiting...";
  }));
  // Nobody looks at the manager.
  QObject manager;
  Q_EMIT qGuiApp->commitDataRequest(reinterpret_cast<QSessionManager&>(manager));
  main.close();
  EXPECT_FALSE(main.isVisible());
  EXPECT_FALSE(waiting);
  EXPECT_TRUE(WindowRegistry::instance().windows().empty());
  EXPECT_EQ(count("win_pos", "wname in ('Morvane2000', 'Web Sites')"), 2);
  EXPECT_EQ(toQString(mvtest::readFile(errorLogPath())).count("Log closed ="), 1);
  EXPECT_FALSE(QFile::exists(toQString(folder() + gTempDatabaseFileName)));
  EXPECT_TRUE(dialogs.messages.empty());
}

}  // namespace
