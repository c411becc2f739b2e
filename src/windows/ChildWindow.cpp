#include "windows/ChildWindow.h"

#include <QCloseEvent>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QStyle>
#include <algorithm>

#include "ContentsSize.h"
#include "FrameAccessible.h"
#include "FreeSpace.h"
#include "LoadedWindows.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "store/WindowPlaces.h"
#include "windows/MainFrame.h"

namespace mv {
namespace {

// What must stay within the frame's area of a window's title bar, in pixels.
constexpr int kReachable = 80;
// No window is held open by its contents: a small one scrolls.
constexpr QSize kSmallest(120, 60);
// So many windows that one more is opened without a long look for the place where it covers least.
constexpr std::size_t kMostCompared = 30;

// The area leaves nobody active when the active window hides.
void activateTopmost(QMdiArea& area) {
  const QList<QMdiSubWindow*> windows = area.subWindowList(QMdiArea::ActivationHistoryOrder);
  const auto next =
      std::find_if(windows.rbegin(), windows.rend(), [](const auto* window) { return !window->isHidden(); });
  area.setActiveSubWindow(next == windows.rend() ? nullptr : *next);
}

// The child that was told last that it is active.
ChildWindow* lastActive = nullptr;

}  // namespace

class ChildWindow::Frame : public QMdiSubWindow {
 public:
  explicit Frame(ChildWindow& window) : window_(window) {
    setAttribute(Qt::WA_DeleteOnClose, false);
    // Tab goes round the controls without a stop at the frame.
    setFocusPolicy(Qt::ClickFocus);
    setMinimumSize(kSmallest);
  }

  QRect normalGeometry() const { return isAtNormalSize() ? geometry() : normal_; }
  bool isAtNormalSize() const { return !isMinimized() && !isMaximized() && !isShaded(); }

 protected:
  void closeEvent(QCloseEvent* event) override {
    event->ignore();
    window_.closeRequested();
  }
  // A window that hands its focus on to a control is a stop on the way of Tab, which then never comes to the controls
  // between the two.
  bool focusNextPrevChild(bool next) override {
    QWidget* const first = window_.focusProxy();
    window_.setFocusProxy(nullptr);
    const bool moved = QMdiSubWindow::focusNextPrevChild(next);
    window_.setFocusProxy(first);
    return moved;
  }
  void moveEvent(QMoveEvent* event) override {
    QMdiSubWindow::moveEvent(event);
    keepGeometry();
  }
  void resizeEvent(QResizeEvent* event) override {
    QMdiSubWindow::resizeEvent(event);
    keepGeometry();
  }

 private:
  void keepGeometry() {
    if (isAtNormalSize()) normal_ = geometry();
  }

  ChildWindow& window_;
  QRect normal_;
};

ChildWindow::ChildWindow(int width, int height) : frame_(new Frame(*this)), size_({width, height}) {
  describeFrames();
  QMdiArea& area = MainFrame::current()->mdiArea();
  frame_->setWidget(this);
  frame_->hide();
  area.addSubWindow(frame_);
  const QSize size(twipsToPixels(width), twipsToPixels(height));
  size_.keep({width, height}, size);
  frame_->setGeometry(QRect(QPoint(), size));
  connect(&area, &QMdiArea::subWindowActivated, this, [this](QMdiSubWindow* active) {
    if (active == frame_) becomeActive();
  });
  loadedWindows().push_back(this);
}

ChildWindow::~ChildWindow() {
  std::erase(loadedWindows(), this);
  if (lastActive == this) lastActive = nullptr;
}

void ChildWindow::setCaption(const QString& caption) { setWindowTitle(caption); }

void ChildWindow::setSpokenName(const QString& name) { frame_->setAccessibleName(name); }

void ChildWindow::showChild() {
  if (unloaded_) return;
  if (!std::exchange(opened_, true)) openFirst();
  if (isMinimised())
    frame_->showNormal();
  else
    frame_->show();
  frame_->raise();
  if (QMdiArea* area = frame_->mdiArea()) area->setActiveSubWindow(frame_);
  becomeActive();
}

void ChildWindow::hideChild() {
  QMdiArea* area = frame_->mdiArea();
  const bool wasActive = area && area->currentSubWindow() == frame_;
  if (lastActive == this) lastActive = nullptr;
  frame_->hide();
  if (wasActive) activateTopmost(*area);
}

bool ChildWindow::isChildVisible() const { return !frame_->isHidden(); }

bool ChildWindow::isMinimised() const { return frame_->isMinimized(); }

bool ChildWindow::unload() {
  const Busy busy(*this);
  if (unloaded_) return true;
  // The question may show a box, and another unload may have come in while it stood.
  if (!queryUnload() && !unloaded_) return false;
  if (unloaded_) return true;
  unloaded_ = true;
  run([this] { unloading(); });
  std::erase(loadedWindows(), this);
  hideChild();
  return true;
}

void ChildWindow::closeRequested() {
  run([this] { unload(); });
}

void ChildWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
    closeRequested();
  else
    QWidget::keyPressEvent(event);
}

void ChildWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  closeRequested();
}

void ChildWindow::leaveBusy() {
  --busy_;
  if (unloaded_ && canDeleteNow()) deleteWhenIdle();
}

void ChildWindow::readyToDelete() {
  if (unloaded_) deleteWhenIdle();
}

void ChildWindow::deleteWhenIdle() {
  if (busy_ == 0) frame_->deleteLater();
}

void ChildWindow::becomeActive() {
  // Without a main frame the whole program is on its way out.
  if (lastActive == this || unloaded_ || frame_->isHidden() || !MainFrame::current()) return;
  lastActive = this;
  run([this] { activated(); });
}

void ChildWindow::buildWorkingLists(const std::string&, long) {}

std::string ChildWindow::sourceName() const {
  const std::string name = metaObject()->className();
  const std::size_t scope = name.rfind(':');
  return scope == std::string::npos ? name : name.substr(scope + 1);
}

// --- place and size

TwipRect ChildWindow::place() const {
  const QRect pixels = frame_->normalGeometry();
  const QSize size = size_.kept(pixels.size());
  return {pixelsToTwips(pixels.top()), pixelsToTwips(pixels.left()), size.height(), size.width()};
}

QSize ChildWindow::contentsSize(int width) { return neededSize(*this, width); }

QSize ChildWindow::shownSize(const QSize& twips) {
  const QMargins frame = frame_->contentsMargins();
  const QSize around(frame.left() + frame.right(), frame.top() + frame.bottom());
  const QMdiArea* area = frame_->mdiArea();
  const QSize room = area && area->isVisible() ? area->viewport()->size() : QSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  const int width = size_.shown(twips, contentsSize(0) + around, room).width();
  const QSize size = size_.shown(twips, contentsSize(width - around.width()) + around, room).expandedTo(kSmallest);
  size_.keep(twips, size);
  return size;
}

void ChildWindow::setPlace(const TwipRect& place) {
  placed_ = true;
  if (!frame_->isAtNormalSize()) frame_->showNormal();
  QRect pixels(QPoint(twipsToPixels(place.left), twipsToPixels(place.top)), shownSize({place.width, place.height}));
  const QMdiArea* area = frame_->mdiArea();
  if (area && area->isVisible()) {
    const QSize space = area->viewport()->size();
    pixels.moveLeft(std::max(std::min(pixels.left(), space.width() - kReachable), kReachable - pixels.width()));
    pixels.moveTop(std::max(std::min(pixels.top(), space.height() - titleBar()), 0));
  }
  frame_->setGeometry(pixels);
}

void ChildWindow::openFirst() {
  const QSize size = shownSize(size_.given());
  frame_->setGeometry(QRect(placed_ ? frame_->pos() : firstPoint(size), size));
}

QPoint ChildWindow::firstPoint(const QSize& size) const {
  if (opens_ == Opens::AtTopLeft) return {};
  return opens_ == Opens::InFreeSpace ? pointAmongOthers(size) : within(cascadedPoint(), size);
}

std::vector<QRect> ChildWindow::placesOfOthers() const {
  std::vector<QRect> places;
  for (const ChildWindow* other : loadedWindows())
    if (other != this && other->keepsItsPlace()) places.push_back(other->frame_->normalGeometry());
  return places;
}

// Below the window that it belongs to, else where it covers no other one, with room for those that will follow it, else
// where it covers least.
QPoint ChildWindow::pointAmongOthers(const QSize& size) const {
  const QSize room = frame_->mdiArea()->viewport()->size();
  const std::vector<QRect> taken = placesOfOthers();
  const ChildWindow* above = standsBelow();
  const QRect below = above ? QRect(above->frame_->geometry().bottomLeft() + QPoint(0, 1), size) : QRect();
  if (above && isFree(room, below, taken)) return below.topLeft();
  const QSize withFollowers(size.width(), size.height() * (1 + windowsToFollow()));
  for (const QSize& wanted : {withFollowers, size})
    if (const auto place = freePlace(room, wanted, taken)) return *place;
  if (above && QRect(QPoint(), room).contains(below)) return below.topLeft();
  if (taken.size() > kMostCompared) return within(cascadedPoint(), size);
  return leastCoveringPlace(room, withFollowers.height() > room.height() ? size : withFollowers, taken, titleBar());
}

int ChildWindow::titleBar() const { return frame_->style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, frame_); }

QPoint ChildWindow::cascadedPoint() const {
  const int step = titleBar();
  const QSize space = frame_->mdiArea()->viewport()->size() / 2;
  const int steps = std::max(1, std::min(space.width(), space.height()) / step);
  const auto opened = std::count_if(loadedWindows().begin(), loadedWindows().end(), [this](const ChildWindow* other) {
    return other != this && other->isChildVisible() && !other->isMinimised();
  });
  const int offset = static_cast<int>(opened % steps) * step;
  return {offset, offset};
}

void ChildWindow::setOwnHeight(int height) {
  size_.setOwnHeight(height);
  const QSize given(size_.kept(frame_->normalGeometry().size()).width(), height);
  // Where it stood before it had to move to be in view, unless it has been moved since.
  if (movedIntoView_ && frame_->pos() == movedIntoView_->second) frame_->move(movedIntoView_->first);
  movedIntoView_.reset();
  frame_->resize(shownSize(given));
  if (!frame_->mdiArea()->isVisible()) return;
  const QPoint before = frame_->pos();
  frame_->move(within(before, frame_->size()));
  if (frame_->pos() != before) movedIntoView_ = {before, frame_->pos()};
}

// `place`, moved so that a window of `size` is in view as a whole, where it has room.
QPoint ChildWindow::within(const QPoint& place, const QSize& size) const {
  const QSize spare = frame_->mdiArea()->viewport()->size() - size;
  return {std::clamp(place.x(), 0, std::max(0, spare.width())), std::clamp(place.y(), 0, std::max(0, spare.height()))};
}

void ChildWindow::returnToOwnSize() {
  if (!frame_->isAtNormalSize()) frame_->showNormal();
  frame_->resize(shownSize(size_.own()));
}

bool ChildWindow::restorePosition() {
  long top = 0;
  long left = 0;
  long height = 0;
  long width = 0;
  readWindowPosition(toUtf8(positionKey()), top, left, height, width);
  if (height == 0) return false;
  setPlace({static_cast<int>(top), static_cast<int>(left), static_cast<int>(height), static_cast<int>(width)});
  return true;
}

void ChildWindow::savePosition() {
  if (isMinimised() || !gDatabase.isOpen()) return;
  const TwipRect at = place();
  saveWindowPosition(toUtf8(positionKey()), at.top, at.left, at.height, at.width);
}

}  // namespace mv
