#include "FrameAccessible.h"

#include <QAccessibleWidget>
#include <QMdiArea>
#include <QMdiSubWindow>

namespace mv {

namespace {

class FrameAccessible : public QAccessibleWidget {
 public:
  explicit FrameAccessible(QMdiSubWindow& frame) : QAccessibleWidget(&frame, QAccessible::Window), frame_(frame) {}

  QString text(QAccessible::Text which) const override {
    const bool captioned = which == QAccessible::Name && !frame_.windowTitle().isEmpty();
    return captioned ? frame_.windowTitle() : QAccessibleWidget::text(which);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.movable = state.sizeable = !frame_.isMaximized();
    state.active = frame_.mdiArea() && frame_.mdiArea()->activeSubWindow() == &frame_;
    return state;
  }
  // The area's own children are the frames, not its viewport, in which they stand.
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(frame_.mdiArea()); }
  int childCount() const override { return frame_.widget() ? 1 : 0; }
  QAccessibleInterface* child(int index) const override {
    return index == 0 ? QAccessible::queryAccessibleInterface(frame_.widget()) : nullptr;
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child && child->object() == frame_.widget() ? 0 : -1;
  }

 private:
  QMdiSubWindow& frame_;
};

QAccessibleInterface* describe(const QString& className, QObject* object) {
  auto* frame = className == "QMdiSubWindow" ? qobject_cast<QMdiSubWindow*>(object) : nullptr;
  return frame ? new FrameAccessible(*frame) : nullptr;
}

}  // namespace

void describeFrames() { [[maybe_unused]] static const bool once = (QAccessible::installFactory(describe), true); }

}  // namespace mv
