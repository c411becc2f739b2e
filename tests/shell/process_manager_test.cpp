// The process manager, driven by mouse and keyboard over real process windows.

#include "base/Text.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "shell/frmProcessManager.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

class ProcessManagerTest : public WindowTest {
 protected:
  // Two sites, started hidden.
  ProcessManagerTest() {
    gHideProcesses = "yes";
    web_.page("/", "<html></html>");
    // Site names differ in case of the path only where it does not matter to the server.
    for (const char* path : {"/?A", "/?B"}) addSite(web_.host() + path, folder());
    gDatabase.execute("update site set auto_scan = 'yes'");
    sites_ = showSingle<frmWebSites>();
    sites_->autoScan();
    manager_ = showSingle<frmProcessManager>();
  }
  ListView& list() { return control<ListView>(manager_, "lvwProcesses"); }
  QString title(const char* kind, const char* site) { return QString(kind) + toQString(web_.host()) + "/?" + site; }
  ChildWindow* process(const QString& caption) { return WindowRegistry::instance().findByCaption(caption); }

  TestSite web_;
  frmWebSites* sites_ = nullptr;
  frmProcessManager* manager_ = nullptr;
};

TEST_F(ProcessManagerTest, ListsExpandsAndEndsProcesses) {
  const std::vector<QString> all = {title(kDownloadTitle, "A"), title(kDownloadTitle, "B"), title(kScanTitle, "A"),
                                    title(kScanTitle, "B")};
  EXPECT_EQ(manager_->place(), (TwipRect{0, 0, 3600, 3050}));
  EXPECT_EQ(columnTexts(list()), all);

  click(manager_, "Delete");
  click(manager_, "Expand");
  EXPECT_EQ(columnTexts(list()), all) << "nothing was chosen";

  clickRow(list(), 1);
  click(manager_, "Expand");
  EXPECT_TRUE(process(all[1])->isChildVisible());
  EXPECT_FALSE(process(all[0])->isChildVisible());
  process(all[1])->closeRequested();
  EXPECT_FALSE(process(all[1])->isChildVisible()) << "hidden, and still at work";

  clickRow(list(), 0);
  click(manager_, "Delete");
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{all[1], all[2], all[3]})) << "the site's scan goes on";
  EXPECT_EQ(process(all[0]), nullptr);
  EXPECT_FALSE(gClosingProcesses);

  clickRow(list(), 2);
  QTest::keyClick(&list(), Qt::Key_Return);
  EXPECT_TRUE(process(all[3])->isChildVisible());
  manager_->showChild();
  QTest::keyClick(&list(), Qt::Key_Delete);
  EXPECT_EQ(process(all[3]), nullptr);
  EXPECT_EQ(list().rowCount(), 2);
}

TEST_F(ProcessManagerTest, IsASnapshotThatEveryActivationRenews) {
  clickHeader(list(), 0);
  clickHeader(list(), 0);
  EXPECT_EQ(list().cell(0, 0), title(kScanTitle, "B")) << "descending";
  clickRow(list(), 0);
  endForGood(process(title(kScanTitle, "B")));
  EXPECT_EQ(list().rowCount(), 4);
  click(manager_, "Expand");
  sites_->showChild();
  manager_->showChild();
  EXPECT_EQ(list().rowCount(), 3);
  EXPECT_EQ(list().cell(0, 0), title(kDownloadTitle, "A")) << "ascending again";

  auto* secret = new frmDownload;
  secret->process().SiteName = "anna:secret@host";
  secret->setCaption("Opening. Please wait...12");
  manager_->buildWorkingLists("init");
  EXPECT_EQ(list().findRow(0, "Download: anna:secret@host"), -1);
  clickRow(list(), list().findRow(0, "Download: anna:***@host"));
  click(manager_, "Delete");
  EXPECT_EQ(list().rowCount(), 3);

  auto* last = new frmScan;
  last->process().SiteName = "C";
  last->setCaption("Scan: C");
  Q_EMIT events().processesChanged();
  EXPECT_EQ(list().rowCount(), 4);
  manager_->setPlace({300, 450, 4500, 6000});
  manager_->closeRequested();
  EXPECT_EQ(value("select wtop || ',' || wleft || ',' || wheight || ',' || wwidth from win_pos where wname = 'Process "
                  "Manager'"),
            "300,450,4500,6000");
  EXPECT_EQ(showSingle<frmProcessManager>()->place(), (TwipRect{300, 450, 4500, 6000}));
}

}  // namespace
