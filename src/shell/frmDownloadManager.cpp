#include "shell/frmDownloadManager.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "NormalPlace.h"
#include "WindowList.h"
#include "app/ErrorLog.h"
#include "app/Events.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "desktop/Twips.h"
#include "shell/Clipboard.h"
#include "shell/frmSplash.h"
#include "store/LinkCleaner.h"
#include "store/WindowPlaces.h"
#include "ui_frmDownloadManager.h"
#include "windows/ChildWindow.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 6200;   // twips
constexpr int kHeight = 3600;  // twips
constexpr int kTimerQuitInterval = 8000;
constexpr int kGrip = 80;  // pixels of a window that must be in view for the mouse to take hold of it
// Beside the place that a maximised window comes back to: a row whose height says that it is maximised.
constexpr const char* kMaximisedKey = "Morvane2000 (maximised)";

// The screen that shows the upper edge of `place`; none when that is on no screen any more.
const QScreen* screenOf(const QRect& place) {
  const QRect grip(place.topLeft(), QSize(qMax(kGrip, place.width()), kGrip / 4));
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect seen = screen->availableGeometry() & grip;
    if (seen.width() >= kGrip && seen.top() == grip.top()) return screen;
  }
  return nullptr;
}

// A stored place, no larger than its screen, and on the first one when its own is gone.
QRect withinView(QRect place) {
  const QScreen* screen = screenOf(place);
  const QScreen* shown = screen ? screen : QGuiApplication::primaryScreen();
  if (!shown) return place;
  // A size is that of the contents; the title bar stands above them.
  const int titleBar = QApplication::style()->pixelMetric(QStyle::PM_TitleBarHeight);
  const QRect room = shown->availableGeometry().adjusted(0, 0, 0, -titleBar);
  const QSize cut = place.size().boundedTo(room.size());
  if (cut != place.size()) {
    place.setSize(cut);
    place.moveRight(std::min(place.right(), room.right()));
    place.moveBottom(std::min(place.bottom(), room.bottom()));
  }
  if (!screen) place.moveTopLeft(room.topLeft());
  return place;
}

}  // namespace

frmDownloadManager::frmDownloadManager(const std::vector<Menu>& menus)
    : ui_(std::make_unique<Ui::frmDownloadManager>()) {
  ui_->setupUi(this);
  setWindowTitle(applicationTitle());
  for (const Menu& menu : menus) addMenu(menu);
  wire();
  move(0, 0);
  resize(twipsToPixels(kWidth), twipsToPixels(kHeight));
  normalPlace_ = std::make_unique<NormalPlace>(*this);
}

frmDownloadManager::~frmDownloadManager() = default;

QMdiArea& frmDownloadManager::mdiArea() { return *ui_->area; }

void frmDownloadManager::addMenu(const Menu& menu) {
  QMenu* entries = menuBar()->addMenu(menu.caption);
  entries->setObjectName(toQString(menu.name));
  for (const MenuItem& item : menu.items) addItem(*entries, item);
  if (menu.listsWindows) listOpenWindows(*entries, *ui_->area);
}

void frmDownloadManager::addItem(QMenu& menu, const MenuItem& item) {
  QAction* entry = item.caption.isEmpty() ? menu.addSeparator() : menu.addAction(item.caption);
  entry->setObjectName(toQString(item.name));
  if (entry->isSeparator()) return;
  entry->setEnabled(static_cast<bool>(item.work));
  entry->setShortcut(item.shortcut);
  if (item.work)
    connect(entry, &QAction::triggered, this, [this, item] { guarded(item.name.c_str(), [&] { item.work(*this); }); });
}

void frmDownloadManager::wire() {
  keepSelectionsUnderMenus();
  timerQuit.setInterval(kTimerQuitInterval);
  connect(&timerQuit, &QTimer::timeout, this, [] { clearAndEndProgram(); });
  connect(&events(), &Events::sitesStarting, this, [this] { guarded("frmDownloadManager", [this] { getMessage(); }); });
  // When the desktop session ends there may be no time left afterwards.
  connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { close(); });
}

void frmDownloadManager::initWindow() {
  long top = 0, left = 0, height = 0, width = 0;
  readWindowPosition(toUtf8(windowTitle()), top, left, height, width);
  if (height == 0) return;
  const auto pixels = [](long twips) { return twipsToPixels(static_cast<int>(twips)); };
  const QRect place = withinView(QRect(pixels(left), pixels(top), pixels(width), pixels(height)));
  resize(place.size());
  move(place.topLeft());
  long maximised = 0;
  readWindowPosition(kMaximisedKey, top, left, maximised, width);
  normalPlace_->set(place, maximised != 0);
  if (maximised != 0) setWindowState(windowState() | Qt::WindowMaximized);
}

void frmDownloadManager::setItemEnabled(const char* name, bool enabled) {
  if (auto* item = menuBar()->findChild<QAction*>(name)) item->setEnabled(enabled);
}

void frmDownloadManager::setClipboardItemsEnabled(bool enabled) {
  for (const char* item : {kCutItem, kCopyItem, kPasteItem}) setItemEnabled(item, enabled);
}

void frmDownloadManager::setDeleteWebSiteEnabled(bool enabled) { setItemEnabled(kDeleteWebSiteItem, enabled); }

void frmDownloadManager::hideStatusIndicators() { ui_->online->hidePanels(); }

void frmDownloadManager::say(const QString& line) { ui_->foot->say(line); }

void frmDownloadManager::getFormUpdates() { ui_->online->formUpdates.getFormUpdates(); }
void frmDownloadManager::fetchNextFormUpdate() { ui_->online->formUpdates.fetchNextFormUpdate(); }
void frmDownloadManager::getHelp() { ui_->online->helpUpdates.getHelp(); }
void frmDownloadManager::fetchNextHelpTopic() { ui_->online->helpUpdates.fetchNextHelpTopic(); }
void frmDownloadManager::getMessage() { ui_->online->messageCheck.getMessage(); }

frmSplash& frmDownloadManager::splash() {
  if (!splash_) splash_ = new frmSplash(this);
  return *splash_;
}

void frmDownloadManager::closeEvent(QCloseEvent* event) {
  event->accept();
  if (std::exchange(closed_, true)) return;
  gAppClosing = true;
  unloadChildWindows();
  Q_EMIT events().programEnding();
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
  const QRect place = normalPlace_->rect();
  saveWindowPosition(toUtf8(windowTitle()), pixelsToTwips(place.top()), pixelsToTwips(place.left()),
                     pixelsToTwips(place.height()), pixelsToTwips(place.width()));
  long top = 0, left = 0, maximised = 0, width = 0;
  readWindowPosition(kMaximisedKey, top, left, maximised, width);
  if (isMaximized() != (maximised != 0)) saveWindowPosition(kMaximisedKey, 0, 0, isMaximized() ? 1 : 0, 0);
}

}  // namespace mv
