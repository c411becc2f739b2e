#include "shell/Arrange.h"

#include <QMdiArea>
#include <QMdiSubWindow>

namespace mv {

namespace {

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

void tile(QMdiArea& area, Qt::Orientation stacking) {
  const QList<QMdiSubWindow*> windows = arrangeable(area);
  const QSize room = area.viewport()->size();
  for (qsizetype i = 0; i < windows.size(); ++i) {
    windows[i]->showNormal();
    if (stacking == Qt::Vertical) {
      const int top = stretchStart(room.height(), windows.size(), i);
      const int bottom = stretchStart(room.height(), windows.size(), i + 1);
      windows[i]->setGeometry(0, top, room.width(), bottom - top);
    } else {
      const int left = stretchStart(room.width(), windows.size(), i);
      const int right = stretchStart(room.width(), windows.size(), i + 1);
      windows[i]->setGeometry(left, 0, right - left, room.height());
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
    const QSize size = window->size();
    if (offset + kStep > room.height() || offset + 2 * kStep > room.width()) offset = 0;
    window->setGeometry(QRect(QPoint(offset, offset), size));
    window->raise();
    offset += kStep;
  }
}

void tileHorizontally(QMdiArea& area) { tile(area, Qt::Vertical); }
void tileVertically(QMdiArea& area) { tile(area, Qt::Horizontal); }

}  // namespace mv
