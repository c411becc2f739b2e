#include "windows/ScrollingPage.h"

#include <QEvent>
#include <QLayout>
#include <algorithm>

namespace mv {

ScrollingPage::ScrollingPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
}

// None while the form is being built.
const QLayout* ScrollingPage::contents() const { return widget() ? widget()->layout() : nullptr; }

bool ScrollingPage::hasHeightForWidth() const { return contents() && contents()->hasHeightForWidth(); }

// What takes any room that is left, a list of rows, counts with its least height only in the second one.
int ScrollingPage::heightForWidth(int width) const {
  if (!contents()) return QScrollArea::heightForWidth(width);
  return std::max(contents()->totalHeightForWidth(width), contents()->totalMinimumHeightForWidth(width));
}

QSize ScrollingPage::sizeHint() const {
  if (!contents()) return QScrollArea::sizeHint();
  // Texts that can be wrapped make no page wide.
  const int width = contents()->totalMinimumSize().width();
  return {width, hasHeightForWidth() ? heightForWidth(width) : contents()->totalSizeHint().height()};
}

bool ScrollingPage::fitsWithoutBars() const {
  if (!hasHeightForWidth()) return false;
  const QSize room = maximumViewportSize();
  return contents()->totalMinimumSize().width() <= room.width() && heightForWidth(room.width()) <= room.height();
}

// A bar takes width, and in what is left wrapped texts are higher: once shown it would stay for good.
bool ScrollingPage::event(QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::LayoutRequest)
    setVerticalScrollBarPolicy(fitsWithoutBars() ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
  return QScrollArea::event(event);
}

}  // namespace mv
