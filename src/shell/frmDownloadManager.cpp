#include "shell/frmDownloadManager.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "Arrange.h"
#include "Clipboard.h"
#include "app/ErrorLog.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmRuleManager.h"
#include "desktop/Dialogs.h"
#include "desktop/ListView.h"
#include "desktop/Twips.h"
#include "forms_windows/frmFormManager.h"
#include "help/VendorServers.h"
#include "help_windows/FormUpdates.h"
#include "help_windows/HelpUpdates.h"
#include "help_windows/MessageCheck.h"
#include "help_windows/UpdatePanel.h"
#include "help_windows/frmHelp.h"
#include "scan_windows/frmTagManager.h"
#include "shell/frmPictureViewer.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmWebSites.h"
#include "store/LinkCleaner.h"
#include "store/WindowPlaces.h"
#include "windows/ChildWindow.h"
#include "windows/ListHelpers.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 6200;   // twips
constexpr int kHeight = 3600;  // twips
constexpr int kTimerQuitInterval = 8000;
constexpr int kGrip = 80;  // pixels of a window that must be in view for the mouse to take hold of it

// Where a window stored at `place` is to stand: there, unless its upper edge is on no screen any more.
QPoint withinView(const QRect& place) {
  const QRect grip(place.topLeft(), QSize(qMax(kGrip, place.width()), kGrip / 4));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry() & grip;
    if (seen.width() >= kGrip && seen.top() == grip.top()) return place.topLeft();
  }
  const QScreen* primary = QGuiApplication::primaryScreen();
  return primary ? primary->availableGeometry().topLeft() : QPoint();
}

}  // namespace

frmDownloadManager::frmDownloadManager() : area_(new QMdiArea(this)) {
  setObjectName("frmDownloadManager");
  setWindowTitle(applicationTitle());
  area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  area_->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  buildFileMenu();
  buildEditMenu();
  buildToolsMenu();
  buildWindowsMenu();
  buildHelpMenu();
  buildStatusIndicators();
  buildOnlineChecks();
  timerQuit.setInterval(kTimerQuitInterval);
  connect(&timerQuit, &QTimer::timeout, this, [] { clearAndEndProgram(); });
  // When the desktop session ends there may be no time left afterwards.
  connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { close(); });
  move(0, 0);
  resize(twipsToPixels(kWidth), twipsToPixels(kHeight));
}

frmDownloadManager::~frmDownloadManager() = default;

void frmDownloadManager::initWindow() {
  long top = 0, left = 0, height = 0, width = 0;
  readWindowPosition(toUtf8(windowTitle()), top, left, height, width);
  if (height == 0) return;
  const auto pixels = [](long twips) { return twipsToPixels(static_cast<int>(twips)); };
  resize(pixels(width), pixels(height));
  move(withinView(QRect(pixels(left), pixels(top), pixels(width), pixels(height))));
}

void frmDownloadManager::setClipboardItemsEnabled(bool enabled) {
  mnuEditCut_->setEnabled(enabled);
  mnuEditCopy_->setEnabled(enabled);
  mnuEditPaste_->setEnabled(enabled);
}

void frmDownloadManager::setDeleteWebSiteEnabled(bool enabled) { mnuEditDeleteWebSite_->setEnabled(enabled); }

void frmDownloadManager::hideStatusIndicators() {
  for (UpdatePanel* panel : {pictUpdates_, pictHelpUpdates_}) panel->hide();
}

void frmDownloadManager::getFormUpdates() { formUpdates_->getFormUpdates(); }
void frmDownloadManager::fetchNextFormUpdate() { formUpdates_->fetchNextFormUpdate(); }
void frmDownloadManager::getHelp() { helpUpdates_->getHelp(); }
void frmDownloadManager::fetchNextHelpTopic() { helpUpdates_->fetchNextHelpTopic(); }
void frmDownloadManager::getMessage() { messageCheck_->getMessage(); }

frmSplash& frmDownloadManager::splash() {
  if (!splash_) splash_ = new frmSplash(this);
  return *splash_;
}

void frmDownloadManager::closeEvent(QCloseEvent* event) {
  event->accept();
  if (std::exchange(closed_, true)) return;
  gAppClosing = true;
  unloadChildWindows();
  guarded("frmDownloadManager", [this] { saveOwnPosition(); });
  finishClearing();
  try {
    logClosed();
  } catch (const std::exception&) {
    // The program ends either way; a log that cannot be written must not hold it.
  }
  QApplication::quit();
}

void frmDownloadManager::unloadChildWindows() {
  auto& registry = WindowRegistry::instance();
  for (ChildWindow* window : registry.windows())
    if (registry.isLoaded(window)) window->unload();
}

void frmDownloadManager::saveOwnPosition() {
  if (isMinimized() || !gDatabase.isOpen()) return;
  // The normal geometry is the one inside the title bar and borders; a place is where the window's own frame stands.
  const QPoint frame = geometry().topLeft() - pos();
  const QRect place = (isMaximized() ? normalGeometry() : geometry()).translated(-frame);
  saveWindowPosition(toUtf8(windowTitle()), pixelsToTwips(place.top()), pixelsToTwips(place.left()),
                     pixelsToTwips(place.height()), pixelsToTwips(place.width()));
}

QAction* frmDownloadManager::addItem(QMenu* menu, const char* name, const QString& caption,
                                     const std::function<void()>& open) {
  QAction* item = menu->addAction(caption);
  item->setObjectName(QString::fromLatin1(name));
  item->setEnabled(static_cast<bool>(open));
  if (open) connect(item, &QAction::triggered, this, [open, name] { guarded(name, open); });
  return item;
}

QAction* frmDownloadManager::addPageItem(QMenu* menu, const char* name, const QString& caption,
                                         const QString& address) {
  return addItem(menu, name, caption, [this, address] { openInBrowser(this, address); });
}

void frmDownloadManager::buildFileMenu() {
  QMenu* menu = menuBar()->addMenu("&File");
  menu->setObjectName("mnuFile");
  addItem(menu, "mnuFilePrefs", "&Preferences...", [] { showSingle<frmPreferences>(); });
  menu->addSeparator()->setObjectName("mnuSep5");
  addItem(menu, "mnuFileExit", "&Exit", clearAndEndProgram);
}

void frmDownloadManager::buildEditMenu() {
  QMenu* menu = menuBar()->addMenu("&Edit");
  menu->setObjectName("mnuEdit");
  mnuEditCut_ = addItem(menu, "mnuEditCut", "&Cut", cutToClipboard);
  mnuEditCopy_ = addItem(menu, "mnuEditCopy", "C&opy", copyToClipboard);
  mnuEditPaste_ = addItem(menu, "mnuEditPaste", "P&aste", pasteFromClipboard);
  menu->addSeparator()->setObjectName("mnuSep2");
  mnuEditDeleteWebSite_ = addItem(menu, "mnuEditDeleteWebSite", "&Delete Web Site");
}

void frmDownloadManager::buildToolsMenu() {
  QMenu* menu = menuBar()->addMenu("&Tools");
  menu->setObjectName("mnuTools");
  addItem(menu, "mnuToolsPictureViewer", "&Picture Viewer", [] { showSingle<frmPictureViewer>(); });
  addItem(menu, "mnuToolsWebSiteManager", "&Web Site Manager", [] { showSingle<frmWebSites>(); });
  addItem(menu, "mnuToolsProcessManager", "P&rocess Manager", [] { showSingle<frmProcessManager>(); });
  menu->addSeparator()->setObjectName("mnuSeop3");
  addItem(menu, "mnuToolsFormManager", "F&orm Manager", [] { showSingle<frmFormManager>(); });
  addItem(menu, "mnuToolsFilterManager", "&Filter Manager", [] { showSingle<frmFilterManager>(); });
  addItem(menu, "mnuToolsRuleManager", "&Rule Manager", [] { showSingle<frmRuleManager>(); });
  addItem(menu, "mnuToolsFileTypeManager", "FileType &Manager", [] { showSingle<frmFileTypeManager>(); });
  addItem(menu, "mnuToolsTagManager", "Ta&g Manager", [] { showSingle<frmTagManager>(); });
}

void frmDownloadManager::buildWindowsMenu() {
  QMenu* menu = menuBar()->addMenu("&Windows");
  menu->setObjectName("mnuWindows");
  addItem(menu, "mnuWindowsCascade", "&Cascade", [this] { cascadeWindows(*area_); });
  addItem(menu, "mnuWindowsTileHorizontally", "Tile &Horizontally", [this] { tileHorizontally(*area_); });
  addItem(menu, "mnuWindowsTileVertically", "Tile &Vertically", [this] { tileVertically(*area_); });
}

void frmDownloadManager::buildHelpMenu() {
  QMenu* menu = menuBar()->addMenu("&Help");
  menu->setObjectName("mnuHelp");
  addItem(menu, "mnuHelpOpen", "&Open Help", [] {
    auto* help = new frmHelp;
    help->showChild();
    help->initWindow();
  });
  addPageItem(menu, "mnuHelpOnlineManual", "Morvane2000 Online &Manual", supportPage("/morvane2000/manual.html"));
  addPageItem(menu, "mnuHelpMorvaneHelpPage", "Morvane2000 &Help Page", supportPage("/morvane2000/help.html"));
  addPageItem(menu, "mnuHelpMorvane99HomePage", "&Morvane2000 Home Page", supportPage("/morvane2000/index.html"));
  menu->addSeparator()->setObjectName("sep16");
  addPageItem(menu, "mnuHelpQuillonSupportSite", "Quillon &Support Site", supportPage("/"));
  addPageItem(menu, "mnuHelpQuillonHomePage", "&Quillon Home Page", makerPage());
  menu->addSeparator()->setObjectName("sep18");
  addItem(menu, "mnuAbout", "&About Morvane2000", [this] { splash().showUntilClosed(); });
}

// Below the child windows, and there only while a check has something to say.
void frmDownloadManager::buildStatusIndicators() {
  pictUpdates_ = new UpdatePanel("pictUpdates", "lblUpdates", "updates", this);
  pictHelpUpdates_ = new UpdatePanel("pictHelpUpdates", "lblHelpUpdates", "help", this);
  auto* central = new QWidget(this);
  auto* whole = new QVBoxLayout(central);
  auto* panels = new QHBoxLayout;
  for (QBoxLayout* layout : {static_cast<QBoxLayout*>(whole), static_cast<QBoxLayout*>(panels)}) {
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
  }
  panels->addWidget(pictUpdates_, 1);
  panels->addWidget(pictHelpUpdates_, 1);
  whole->addWidget(area_, 1);
  whole->addLayout(panels);
  setCentralWidget(central);
}

void frmDownloadManager::buildOnlineChecks() {
  const auto workingList = [this](const char* name) {
    auto* list = new ListView(this);
    list->setObjectName(QString::fromLatin1(name));
    list->hide();
    return list;
  };
  formUpdates_ = new FormUpdates(*pictUpdates_, *workingList("lvwOverview"), this);
  helpUpdates_ = new HelpUpdates(*pictHelpUpdates_, *workingList("lvwHelpOverview"), this);
  messageCheck_ = new MessageCheck(this);
}

}  // namespace mv
