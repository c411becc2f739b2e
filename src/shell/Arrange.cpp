#include "shell/Arrange.h"

#include <QMdiArea>
#include <QMdiSubWindow>
#include <algorithm>
#include <cmath>

#include "windows/ChildWindow.h"

namespace mv {

namespace {

constexpr qsizetype kMostInALine = 3;

QList<QMdiSubWindow*> arrangeable(QMdiArea& area) {
  QList<QMdiSubWindow*> windows;
  for (QMdiSubWindow* window : area.subWindowList(QMdiArea::StackingOrder))
    if (window->isVisible() && !window->isMinimized()) windows.append(window);
  return windows;
}

// Splits `length` into `count` stretches that fill it without a gap; answers where stretch `index` begins.
int stretchStart(int length, qsizetype count, qsizetype index) {
  return static_cast<int>(static_cast<qint64>(length) * index / count);
}

// Stretch `index` of `count` of a rectangle, cut across `direction`.
QRect stretch(const QRect& whole, Qt::Orientation direction, qsizetype count, qsizetype index) {
  const int length = direction == Qt::Vertical ? whole.height() : whole.width();
  const int start = stretchStart(length, count, index);
  const int size = stretchStart(length, count, index + 1) - start;
  if (direction == Qt::Vertical) return {whole.left(), whole.top() + start, whole.width(), size};
  return {whole.left() + start, whole.top(), size, whole.height()};
}

Qt::Orientation across(Qt::Orientation direction) { return direction == Qt::Vertical ? Qt::Horizontal : Qt::Vertical; }

// In one line along `stacking`, or, where that would leave slivers, in several lines of about as many windows.
void tile(QMdiArea& area, Qt::Orientation stacking) {
  const QList<QMdiSubWindow*> windows = arrangeable(area);
  const qsizetype count = windows.size();
  const auto lines =
      count <= kMostInALine ? qsizetype{1} : static_cast<qsizetype>(std::sqrt(static_cast<double>(count)));
  const QRect room(QPoint(), area.viewport()->size());
  for (qsizetype line = 0; line < lines; ++line) {
    const qsizetype first = count * line / lines;
    const qsizetype inLine = count * (line + 1) / lines - first;
    const QRect place = stretch(room, across(stacking), lines, line);
    for (qsizetype i = 0; i < inLine; ++i) {
      windows[first + i]->showNormal();
      windows[first + i]->setGeometry(stretch(place, stacking, inLine, i));
    }
  }
}

}  // namespace

void cascadeWindows(QMdiArea& area) {
  constexpr int kStep = 26;  // about a title bar
  const QSize room = area.viewport()->size();
  int offset = 0;
  for (QMdiSubWindow* window : arrangeable(area)) {
    window->showNormal();
    if (auto* child = qobject_cast<ChildWindow*>(window->widget())) child->returnToOwnSize();
    if (offset + kStep > room.height() || offset + 2 * kStep > room.width()) offset = 0;
    const QSize spare = room - window->size();
    window->move(std::clamp(offset, 0, std::max(0, spare.width())), std::clamp(offset, 0, std::max(0, spare.height())));
    window->raise();
    offset += kStep;
  }
}

void tileHorizontally(QMdiArea& area) { tile(area, Qt::Vertical); }
void tileVertically(QMdiArea& area) { tile(area, Qt::Horizontal); }

}  // namespace mv
