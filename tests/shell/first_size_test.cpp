// Every window at the size that it opens with, with the fonts that desktops have: nothing in it is cut, scrolled or
// elided, and what is stored of it stays the laid-down size. Run at several scales.

#include <QApplication>
#include <QFontDatabase>
#include <QScopeGuard>

#include "CutControls.h"
#include "WholeUse.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmRuleManager.h"
#include "catalog_windows/frmSitePaths.h"
#include "download_windows/frmDownload.h"
#include "forms_windows/frmFormManager.h"
#include "help_windows/frmHelp.h"
#include "help_windows/frmMessage.h"
#include "scan_windows/frmScan.h"
#include "scan_windows/frmTagManager.h"
#include "shell/frmPictureViewer.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"

namespace {

using namespace mv;
using namespace mvtest;

struct Letters {
  const char* family;
  int points;
};

// For the test's name.
void PrintTo(const Letters& letters, std::ostream* out) { *out << letters.family << ' ' << letters.points; }

class FirstSizeTest : public ProgramTest, public ::testing::WithParamInterface<Letters> {
 protected:
  FirstSizeTest() : before_(QApplication::font()) {
    EXPECT_TRUE(QFontDatabase::families().contains(GetParam().family)) << "fonts of the test are not installed";
    QApplication::setFont(QFont(GetParam().family, GetParam().points));
    main_ = std::make_unique<frmDownloadManager>(programMenus());
    main_->resize(1400, 1000);
    main_->show();
    site_ = addSite("www.example.org/gallery/summer", folder() + "/mvDownloads", {"jpg", "png", "gif"});
    allowEveryType(site_);
  }
  ~FirstSizeTest() override {
    main_->close();
    main_.reset();
    QApplication::setFont(before_);
  }

  // Of a window as it stands; ended by it.
  void expectWhole(ChildWindow* window, const QSize& laidDown) {
    QCoreApplication::processEvents();
    EXPECT_EQ(QSize(window->place().width, window->place().height), laidDown) << qPrintable(window->caption());
    const QStringList cut = cutControls(*window);
    EXPECT_TRUE(cut.isEmpty()) << qPrintable(window->caption()) << " of " << window->width() << " x "
                               << window->height() << ":\n  " << qPrintable(cut.join("\n  "));
    std::printf("%-18s %2d  %-28s %4d x %4d  %s\n", GetParam().family, GetParam().points,
                qPrintable(window->caption().left(28)), window->parentWidget()->width(),
                window->parentWidget()->height(), cut.isEmpty() ? "whole" : "CUT");
    gClosingProcesses = true;
    const auto closed = qScopeGuard([] { gClosingProcesses = false; });
    window->unload();
  }

  template <class Window>
  void expectListWhole(int width, int height) {
    auto* window = new Window;
    window->showChild();
    expectWhole(window, {width, height});
  }

  // As its manager's New opens it.
  void expectEditorWhole(const char* menuItem, int width, int height) {
    main_->findChild<QAction*>(menuItem)->trigger();
    ChildWindow* manager = WindowRegistry::instance().windows().back();
    click(manager, "New");
    ChildWindow* editor = WindowRegistry::instance().windows().back();
    ASSERT_NE(editor, manager);
    expectWhole(editor, {width, height});
    manager->unload();
  }

  void expectSiteEditorWhole() {
    auto* editor = new frmNew;
    editor->Mode = "edit";
    editor->SiteID = site_;
    editor->open();
    expectWhole(editor, {7050, 4800});
  }

  void expectPathsWhole() {
    auto* paths = new frmSitePaths;
    paths->SiteID = site_;
    paths->SiteName = "www.example.org";
    paths->open();
    expectWhole(paths, {5500, 3600});
  }

  // Collapsed, then with its details; the second stored height is what opens the details again.
  template <class Window>
  void expectProcessWhole() {
    for (const bool details : {false, true}) {
      auto* window = new Window;
      window->showChild();
      if (details) window->toggleDetails();
      expectWhole(window, {kProcessWidth, details ? kExpandedHeight : kCollapsedHeight});
    }
  }

  std::unique_ptr<frmDownloadManager> main_;
  Id site_ = 0;

 private:
  QFont before_;
};

TEST_P(FirstSizeTest, NoWindowCutsWhatItShows) {
  gDatabase.execute("delete from win_pos");
  expectListWhole<frmWebSites>(6500, 3600);
  expectListWhole<frmFileTypeManager>(6200, 3600);
  expectListWhole<frmFilterManager>(5500, 3600);
  expectListWhole<frmRuleManager>(3050, 3600);
  expectListWhole<frmTagManager>(6200, 3600);
  expectListWhole<frmFormManager>(3050, 3600);
  expectListWhole<frmProcessManager>(3050, 3600);
  expectListWhole<frmPreferences>(7800, 7200);
  expectListWhole<frmPictureViewer>(7200, 6000);
  expectListWhole<frmHelp>(6855, 4455);
  expectListWhole<frmMessage>(5430, 2805);
  expectEditorWhole("mnuToolsFileTypeManager", 5200, 2850);
  expectEditorWhole("mnuToolsFilterManager", 6165, 4335);
  expectEditorWhole("mnuToolsRuleManager", 4800, 3120);
  expectEditorWhole("mnuToolsFormManager", 4800, 4800);
  expectEditorWhole("mnuToolsTagManager", 5200, 2100);
  expectSiteEditorWhole();
  expectPathsWhole();
  expectProcessWhole<frmScan>();
  expectProcessWhole<frmDownload>();
}

INSTANTIATE_TEST_SUITE_P(Fonts, FirstSizeTest,
                         ::testing::Values(Letters{"Noto Sans", 9}, Letters{"Noto Sans", 10}, Letters{"Noto Sans", 11},
                                           Letters{"Noto Sans", 12}, Letters{"DejaVu Sans", 10},
                                           Letters{"Cantarell", 11}));

}  // namespace
