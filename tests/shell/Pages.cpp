#include "Pages.h"

#include <QTabWidget>

namespace mvtest {

namespace {

void lookAt(QList<QTabWidget*> tabs, const std::function<void()>& look) {
  if (tabs.isEmpty()) return look();
  QTabWidget* first = tabs.takeFirst();
  for (int page = 0; page < first->count(); ++page) {
    first->setCurrentIndex(page);
    lookAt(tabs, look);
  }
  first->setCurrentIndex(0);
}

}  // namespace

void lookAtPages(QWidget& window, const std::function<void()>& look) {
  lookAt(window.findChildren<QTabWidget*>(), look);
}

}  // namespace mvtest
