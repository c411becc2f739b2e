// Opens every window of the program in turn, as a user does.
#pragma once

#include <QAction>
#include <QScopeGuard>
#include <functional>
#include <memory>

#include "WholeUse.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmRuleManager.h"
#include "catalog_windows/frmSitePaths.h"
#include "download_windows/frmDownload.h"
#include "forms_windows/frmFormManager.h"
#include "frmNewField.h"
#include "help_windows/frmHelp.h"
#include "help_windows/frmMessage.h"
#include "scan_windows/frmScan.h"
#include "scan_windows/frmTagManager.h"
#include "shell/frmPictureViewer.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"

namespace mvtest {

// A main window, and a site that fetches some file types.
class EveryWindow : public ProgramTest {
 protected:
  // A window as it has opened, and the size in twips that it is laid down with.
  using LookAt = std::function<void(mv::ChildWindow& window, const QSize& laidDown)>;

  void openMainWindow() {
    main_ = std::make_unique<mv::frmDownloadManager>(mv::programMenus());
    main_->resize(1400, 1000);
    main_->show();
    main_->activateWindow();
    site_ = addSite("www.example.org/gallery/summer", folder() + "/mvDownloads", {"jpg", "png", "gif"});
    allowEveryType(site_);
    mv::gDatabase.execute("delete from win_pos");
  }
  ~EveryWindow() override {
    if (main_) main_->close();
  }

  // One after the other; each is ended before the next one opens.
  void lookAtEach(const LookAt& look) {
    look_ = &look;
    lists();
    editor("mnuToolsFileTypeManager", {5200, 2850});
    editor("mnuToolsFilterManager", {6165, 4335});
    editor("mnuToolsRuleManager", {4800, 3120});
    editor("mnuToolsFormManager", {4800, 4800});
    editor("mnuToolsTagManager", {5200, 2100});
    fieldEditor();
    siteEditor();
    paths();
    process<mv::frmScan>();
    process<mv::frmDownload>();
  }

  mv::frmDownloadManager& mainWindow() { return *main_; }

 private:
  void lists() {
    list<mv::frmWebSites>({6500, 3600});
    list<mv::frmFileTypeManager>({6200, 3600});
    list<mv::frmFilterManager>({5500, 3600});
    list<mv::frmRuleManager>({3050, 3600});
    list<mv::frmTagManager>({6200, 3600});
    list<mv::frmFormManager>({3050, 3600});
    list<mv::frmProcessManager>({3050, 3600});
    list<mv::frmPreferences>({7800, 7200});
    list<mv::frmPictureViewer>({7200, 6000});
    list<mv::frmHelp>({6855, 4455});
    list<mv::frmMessage>({5430, 2805});
  }

  void lookAndEnd(mv::ChildWindow* window, const QSize& laidDown) {
    QCoreApplication::processEvents();
    (*look_)(*window, laidDown);
    mv::gClosingProcesses = true;
    const auto closed = qScopeGuard([] { mv::gClosingProcesses = false; });
    window->unload();
  }

  template <class Window>
  void list(const QSize& laidDown) {
    auto* window = new Window;
    window->showChild();
    lookAndEnd(window, laidDown);
  }

  // As its manager's New opens it.
  void editor(const char* menuItem, const QSize& laidDown) {
    main_->findChild<QAction*>(menuItem)->trigger();
    mv::ChildWindow* manager = mv::WindowRegistry::instance().windows().back();
    click(manager, "New");
    mv::ChildWindow* window = mv::WindowRegistry::instance().windows().back();
    ASSERT_NE(window, manager);
    lookAndEnd(window, laidDown);
    manager->unload();
  }

  void fieldEditor() {
    auto* field = new mv::frmNewField;
    field->FormID = 1;
    field->setCaption("New Field for: a page");
    field->open();
    lookAndEnd(field, {4800, 3600});
  }

  void siteEditor() {
    auto* window = new mv::frmNew;
    window->Mode = "edit";
    window->SiteID = site_;
    window->open();
    lookAndEnd(window, {7050, 4800});
  }

  void paths() {
    auto* window = new mv::frmSitePaths;
    window->SiteID = site_;
    window->SiteName = "www.example.org";
    window->open();
    lookAndEnd(window, {5500, 3600});
  }

  // Collapsed, then with its details; the second stored height is what opens the details again.
  template <class Window>
  void process() {
    for (const bool details : {false, true}) {
      auto* window = new Window;
      if (window->caption().isEmpty()) window->setCaption("Scan: www.example.org/gallery/summer");
      window->showChild();
      if (details) window->toggleDetails();
      // As long as they usually get.
      control<mv::ElidedLabel>(window, "lblState")
          .setText("378 files saved, 12 there already, 9 too small, 2 failed. Nothing waits.");
      control<mv::ElidedLabel>(window, "lblInfoErrorReason")
          .setText("Code: 60  -  Reason: The server's certificate has expired, or is not valid yet");
      lookAndEnd(window, {mv::kProcessWidth, details ? mv::kExpandedHeight : mv::kCollapsedHeight});
    }
  }

  const LookAt* look_ = nullptr;
  std::unique_ptr<mv::frmDownloadManager> main_;
  mv::Id site_ = 0;
};

}  // namespace mvtest
