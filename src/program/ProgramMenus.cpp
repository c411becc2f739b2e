#include "program/ProgramMenus.h"

#include <QObject>
#include <memory>

#include "app/Events.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmRuleManager.h"
#include "forms_windows/frmFormManager.h"
#include "help/VendorServers.h"
#include "help_windows/frmHelp.h"
#include "scan_windows/frmTagManager.h"
#include "shell/Arrange.h"
#include "shell/Clipboard.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmPictureViewer.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmWebSites.h"
#include "store/LinkCleaner.h"
#include "windows/ListHelpers.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

// What needs nothing of the main window.
MenuWork plain(void (*work)()) {
  return [work](frmDownloadManager&) { work(); };
}

template <class Window>
MenuWork single() {
  return [](frmDownloadManager&) { showSingle<Window>(); };
}

MenuWork arranged(void (*arrange)(QMdiArea&)) {
  return [arrange](frmDownloadManager& main) { arrange(main.mdiArea()); };
}

MenuWork page(const QString& address) {
  return [address](frmDownloadManager& main) { openInBrowser(&main, address); };
}

// The file saved last, also while no picture viewer is open: the next one begins with it.
class LastSavedFile : public QObject {
 public:
  LastSavedFile() {
    connect(&events(), &Events::fileSaved, this, [this](const std::string& path) { path_ = toQString(path); });
  }
  const QString& path() const { return path_; }

 private:
  QString path_;
};

MenuWork pictureViewer() {
  return
      [last = std::make_shared<LastSavedFile>()](frmDownloadManager&) { showSingle<frmPictureViewer>(last->path()); };
}

void openHelp() {
  auto* help = new frmHelp;
  help->showChild();
  help->initWindow();
}

void showAbout(frmDownloadManager& main) { main.splash().showUntilClosed(); }

Menu fileMenu() {
  return {"mnuFile",
          "&File",
          {{"mnuFilePrefs", "&Preferences...", single<frmPreferences>()},
           {"mnuSep5"},
           {"mnuFileExit", "&Exit", plain(clearAndEndProgram)}}};
}

Menu editMenu() {
  return {"mnuEdit",
          "&Edit",
          {{kCutItem, "&Cut", plain(cutToClipboard)},
           {kCopyItem, "C&opy", plain(copyToClipboard)},
           {kPasteItem, "P&aste", plain(pasteFromClipboard)},
           {"mnuSep2"},
           {kDeleteWebSiteItem, "&Delete Web Site"}}};
}

Menu toolsMenu() {
  return {"mnuTools",
          "&Tools",
          {{"mnuToolsPictureViewer", "&Picture Viewer", pictureViewer()},
           {"mnuToolsWebSiteManager", "&Web Site Manager", single<frmWebSites>()},
           {"mnuToolsProcessManager", "P&rocess Manager", single<frmProcessManager>()},
           {"mnuSeop3"},
           {"mnuToolsFormManager", "F&orm Manager", single<frmFormManager>()},
           {"mnuToolsFilterManager", "&Filter Manager", single<frmFilterManager>()},
           {"mnuToolsRuleManager", "&Rule Manager", single<frmRuleManager>()},
           {"mnuToolsFileTypeManager", "FileType &Manager", single<frmFileTypeManager>()},
           {"mnuToolsTagManager", "Ta&g Manager", single<frmTagManager>()}}};
}

Menu windowsMenu() {
  return {"mnuWindows",
          "&Windows",
          {{"mnuWindowsCascade", "&Cascade", arranged(cascadeWindows)},
           {"mnuWindowsTileHorizontally", "Tile &Horizontally", arranged(tileHorizontally)},
           {"mnuWindowsTileVertically", "Tile &Vertically", arranged(tileVertically)}},
          true};
}

Menu helpMenu() {
  return {"mnuHelp",
          "&Help",
          {{"mnuHelpOpen", "&Open Help", plain(openHelp), QKeySequence::HelpContents},
           {"mnuHelpOnlineManual", "Morvane2000 Online &Manual", page(supportPage("/morvane2000/manual.html"))},
           {"mnuHelpMorvaneHelpPage", "Morvane2000 &Help Page", page(supportPage("/morvane2000/help.html"))},
           {"mnuHelpMorvane99HomePage", "&Morvane2000 Home Page", page(supportPage("/morvane2000/index.html"))},
           {"sep16"},
           {"mnuHelpQuillonSupportSite", "Quillon &Support Site", page(supportPage("/"))},
           {"mnuHelpQuillonHomePage", "&Quillon Home Page", page(makerPage())},
           {"sep18"},
           {"mnuAbout", "&About Morvane2000", showAbout}}};
}

}  // namespace

std::vector<Menu> programMenus() { return {fileMenu(), editMenu(), toolsMenu(), windowsMenu(), helpMenu()}; }

}  // namespace mv
