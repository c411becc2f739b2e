#include "windows/ScrollingPage.h"

#include <QScrollArea>
#include <QVBoxLayout>

namespace mv {

QWidget* makeScrollingPage(QWidget* window) {
  auto* page = new QWidget;
  auto* scroller = new QScrollArea;
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
