// From the program to the files: context menus of sites, rows and the preview, and what the foot of the main window
// says.

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QPointer>
#include <QScopeGuard>

#include "WholeUse.h"
#include "base/Text.h"
#include "desktop/Browser.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

class WayToFilesTest : public WholeUse {
 protected:
  WayToFilesTest() {
    setBrowserOpener([this](const QString& address) {
      opened_ << address;
      return true;
    });
    web_.page("/", R"(<a href="picture.jpg"> <a href="gone.jpg">)");
    web_.file("/picture.jpg", "image/jpeg", std::string(3000, 'p'));
    site_ = addSite(web_.host(), folder() + "/saved", {"jpg"});
    sites_ = showSingle<frmWebSites>();
  }
  ~WayToFilesTest() override { setBrowserOpener({}); }

  // Asks for the menu of a row with the keyboard or the mouse, and chooses; "" only closes it. The captions offered.
  QStringList chooseFrom(QWidget& control, const QPoint& at, const char* entry) {
    Q_EMIT control.customContextMenuRequested(at);
    auto* menu = control.findChild<QMenu*>({}, Qt::FindDirectChildrenOnly);
    if (!menu) return {};
    QStringList captions;
    for (const QAction* action : menu->actions())
      if (!action->isSeparator()) captions << action->text() + (action->isEnabled() ? "" : "!");
    if (auto* action = menu->findChild<QAction*>(entry)) action->trigger();
    delete menu;
    return captions;
  }
  QStringList chooseSite(const char* entry) {
    auto& list = mvtest::control<ListView>(sites_, "lvwSites");
    clickRow(list, 0);
    return chooseFrom(list, list.visualRect(list.model()->index(0, 0)).center(), entry);
  }
  QStringList chooseRow(ChildWindow* window, int row, const char* entry) {
    auto& list = mvtest::control<QTreeView>(window, "lvwLinks");
    return chooseFrom(list, list.visualRect(list.model()->index(row, 0)).center(), entry);
  }

  TestSite web_;
  Id site_ = 0;
  frmWebSites* sites_ = nullptr;
  QStringList opened_;
};

TEST_F(WayToFilesTest, ASiteLeadsToItsFolderAndItsPage) {
  const QStringList entries{"&Start", "S&top!", "&Edit", "Open &Folder", "Open in &Browser", "&Copy Address"};
  EXPECT_EQ(chooseSite("mnuSiteFolder"), entries);
  EXPECT_EQ(opened_, QStringList("file://" + toQString(folder()) + "/saved"));
  chooseSite("mnuSiteBrowser");
  EXPECT_EQ(opened_.last(), "http://" + toQString(web_.host()));
  chooseSite("mnuSiteCopy");
  EXPECT_EQ(QApplication::clipboard()->text(), "http://" + toQString(web_.host()));
  chooseSite("mnuSiteStart");
  EXPECT_NE(find<frmScan>(), nullptr);
  EXPECT_EQ(chooseSite("mnuSiteStop").first(2), QStringList({"&Start!", "S&top"}));
  EXPECT_TRUE(waitFor([] { return !find<frmScan>(); }));
}

TEST_F(WayToFilesTest, ARowLeadsToItsFile) {
  gDatabase.execute("update site set lower_limit = 0");
  chooseSite("mnuSiteStart");
  auto* download = find<frmDownload>();
  find<frmScan>()->process().tmrOKToDownload.setInterval(10);
  auto& list = mvtest::control<QTreeView>(download, "lvwLinks");
  const auto shown = [&](const char* name) {
    for (int row = 0; row < list.model()->rowCount(); ++row)
      if (list.model()->index(row, 5).data().toString() == QLatin1String(name)) return row;
    return -1;
  };
  // Rows stay until the next round.
  download->process().tmrOKToDownload.stop();
  ASSERT_TRUE(waitFor([&] { return count("link", "link_type = \"File\"") == 2; }));
  find<frmScan>()->process().tmrOKToDownload.stop();
  download->process().buildQueue();
  download->process().tmrOKToDownload.start();
  ASSERT_TRUE(waitFor([&] { return download->process().status().counts.saved == 1; }));
  const int row = shown("picture.jpg");
  ASSERT_GE(row, 0);
  const QString file = "file://" + toQString(folder()) + "/saved/picture.jpg";
  EXPECT_EQ(chooseRow(download, row, "mnuRowOpen"),
            QStringList({"&Open", "Open &Folder", "Open in &Browser", "&Copy Address"}));
  chooseRow(download, row, "mnuRowFolder");
  chooseRow(download, row, "mnuRowBrowser");
  EXPECT_EQ(opened_, QStringList({file, "file://" + toQString(folder()) + "/saved",
                                  "http://" + toQString(web_.host()) + "/picture.jpg"}));
  Q_EMIT list.activated(list.model()->index(row, 0));
  EXPECT_EQ(opened_.last(), file);
  EXPECT_TRUE(waitFor([&] { return textOf(download, "lblState").startsWith("1 file saved"); }));
}

TEST_F(WayToFilesTest, TheFootSaysWhatWouldBeSilent) {
  const auto said = [this] { return textOf(&main_, "lblNotice"); };
  click(sites_, "Start");
  EXPECT_EQ(said(), "Select a web site first, then press Start.");
  gDatabase.execute("update pref set max_connections = 1");
  addSite("127.0.0.1:1/second", folder());
  sites_->buildWorkingLists("init");
  mvtest::control<ListView>(sites_, "lvwSites").selectAll();
  click(sites_, "Start");
  EXPECT_EQ(said(), "Max Connections is 1. Not started: 127.0.0.1:1/second");
  EXPECT_TRUE(waitFor([this] { return textOf(&main_, "lblTotals").startsWith("1 site runs"); }));
  doubleClickRow(mvtest::control<ListView>(sites_, "lvwSites"), 0);
  EXPECT_TRUE(said().startsWith("It is running.")) << said().toStdString();
}

}  // namespace
