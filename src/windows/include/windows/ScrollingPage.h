// A page that is as large as its place, but never smaller than its contents need: then it scrolls.
#pragma once

#include <QScrollArea>

class QLayout;

namespace mv {

// In a form it has one widget with a layout, and asks for what that needs; left to itself a scroll area asks for a
// bounded part of that.
class ScrollingPage : public QScrollArea {
  Q_OBJECT
 public:
  explicit ScrollingPage(QWidget* parent = nullptr);

  bool hasHeightForWidth() const override;
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;

 private:
  const QLayout* contents() const;
  bool fitsWithoutBars() const;
};

}  // namespace mv
