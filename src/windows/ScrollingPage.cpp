#include "windows/ScrollingPage.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace mv {

namespace {

// Asks for what its page needs; left to itself a scroll area asks for a bounded part of that.
class PageScroller : public QScrollArea {
 public:
  using QScrollArea::QScrollArea;

  bool hasHeightForWidth() const override { return contents().hasHeightForWidth(); }
  int heightForWidth(int width) const override { return contents().totalHeightForWidth(width); }
  QSize sizeHint() const override {
    // Texts that can be wrapped make no page wide.
    const int width = contents().totalMinimumSize().width();
    return {width, hasHeightForWidth() ? heightForWidth(width) : contents().totalSizeHint().height()};
  }

 private:
  const QLayout& contents() const { return *widget()->layout(); }
};

}  // namespace

QWidget* makeScrollingPage(QWidget* window) {
  auto* page = new QWidget;
  auto* scroller = new PageScroller;
  scroller->setFrameShape(QFrame::NoFrame);
  scroller->setWidgetResizable(true);
  scroller->setFocusPolicy(Qt::NoFocus);
  scroller->setWidget(page);
  auto* whole = new QVBoxLayout(window);
  whole->setContentsMargins(0, 0, 0, 0);
  whole->addWidget(scroller);
  return page;
}

}  // namespace mv
