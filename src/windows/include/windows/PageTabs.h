// Tabs whose window is told what the largest page needs, hidden or not, and that no tab may be cut.
#pragma once

#include <QTabWidget>

namespace mv {

class PageTabs : public QTabWidget {
  Q_OBJECT
 public:
  explicit PageTabs(QWidget* parent = nullptr);

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 private:
  // What stands around a page.
  QSize surroundings() const;
  QSize withAllTabs(QSize size) const;
};

}  // namespace mv
