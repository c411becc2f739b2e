#include "NormalPlace.h"

#include <QEvent>
#include <QWidget>
#include <utility>

namespace mv {

namespace {

constexpr int kSettleMs = 250;

}  // namespace

NormalPlace::NormalPlace(QWidget& window) : window_(window), rect_(window.pos(), window.size()) {
  settled_.setSingleShot(true);
  settled_.setInterval(kSettleMs);
  connect(&settled_, &QTimer::timeout, this, [this] { keep(); });
  window.installEventFilter(this);
}

bool NormalPlace::isNormal() const {
  return !(window_.windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen));
}

void NormalPlace::keep() {
  if (!isNormal()) return;
  if (std::exchange(isMaximisedFromStart_, false)) mendShift();
  rect_ = QRect(window_.pos(), window_.size());
}

// Only what a frame makes: the user may have dragged the window from its maximised place.
void NormalPlace::mendShift() {
  constexpr int kWidestFrame = 64;
  const QPoint shift = window_.pos() - rect_.topLeft();
  if (shift.manhattanLength() <= kWidestFrame) window_.move(rect_.topLeft());
}

QRect NormalPlace::rect() const {
  // Moved or resized a moment ago, and still said to be normal.
  return settled_.isActive() && isNormal() ? QRect(window_.pos(), window_.size()) : rect_;
}

void NormalPlace::set(const QRect& rect, bool maximised) {
  settled_.stop();
  rect_ = rect;
  isMaximisedFromStart_ = maximised;
}

bool NormalPlace::eventFilter(QObject* watched, QEvent* event) {
  const QEvent::Type type = event->type();
  if (type == QEvent::Move || type == QEvent::Resize) settled_.start();
  if (type == QEvent::WindowStateChange && !isNormal()) settled_.stop();
  return QObject::eventFilter(watched, event);
}

}  // namespace mv
