#include "windows/ScrollingPage.h"

#include <QEvent>
#include <QVBoxLayout>

namespace mv {

ScrollingPage::ScrollingPage(QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
}

// None while the form is being built.
const QLayout* ScrollingPage::contents() const { return widget() ? widget()->layout() : nullptr; }

bool ScrollingPage::hasHeightForWidth() const { return contents() && contents()->hasHeightForWidth(); }

int ScrollingPage::heightForWidth(int width) const {
  return contents() ? contents()->totalHeightForWidth(width) : QScrollArea::heightForWidth(width);
}

QSize ScrollingPage::sizeHint() const {
  if (!contents()) return QScrollArea::sizeHint();
  // Texts that can be wrapped make no page wide.
  const int width = contents()->totalMinimumSize().width();
  return {width, hasHeightForWidth() ? heightForWidth(width) : contents()->totalSizeHint().height()};
}

// Left to itself a scroll area keeps a bar that its contents need only because the bar makes them narrower.
void ScrollingPage::dropNeedlessBar() {
  const QSize room = maximumViewportSize();
  const bool fits = hasHeightForWidth() && contents()->totalMinimumSize().width() <= room.width() &&
                    heightForWidth(room.width()) <= room.height();
  setVerticalScrollBarPolicy(fits ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
}

void ScrollingPage::resizeEvent(QResizeEvent* event) {
  dropNeedlessBar();
  QScrollArea::resizeEvent(event);
}

bool ScrollingPage::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) dropNeedlessBar();
  return QScrollArea::eventFilter(watched, event);
}

QWidget* makeScrollingPage(QWidget* window) {
  auto* page = new QWidget;
  auto* scroller = new ScrollingPage;
  scroller->setWidget(page);
  auto* whole = new QVBoxLayout(window);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroller);
  return page;
}

}  // namespace mv
