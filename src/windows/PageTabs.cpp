#include "windows/PageTabs.h"

#include <QStyle>
#include <QTabBar>
#include <algorithm>

#include "TabsAccessible.h"

namespace mv {

PageTabs::PageTabs(QWidget* parent) : QTabWidget(parent) { describeTabs(); }

QSize PageTabs::surroundings() const {
  const int frame = 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
  return {frame, tabBar()->sizeHint().height() + frame};
}

int PageTabs::heightForWidth(int width) const {
  const QSize around = surroundings();
  int highest = 0;
  for (int i = 0; i < count(); ++i) {
    const QWidget& page = *widget(i);
    const int height =
        page.hasHeightForWidth() ? page.heightForWidth(width - around.width()) : page.sizeHint().height();
    highest = std::max(highest, height);
  }
  return highest + around.height();
}

QSize PageTabs::withAllTabs(QSize size) const {
  const int frame = 2 * style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, this);
  return size.expandedTo({tabBar()->sizeHint().width() + frame, 0});
}

QSize PageTabs::sizeHint() const { return withAllTabs(QTabWidget::sizeHint()); }

QSize PageTabs::minimumSizeHint() const { return withAllTabs(QTabWidget::minimumSizeHint()); }

}  // namespace mv
