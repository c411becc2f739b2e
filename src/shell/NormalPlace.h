// The place that a window has when it is neither maximised nor minimised. Window managers resize a window before they
// say that they have maximised it, and the toolkit then takes the maximised size for the normal one; a place counts
// when it has stood for a moment in which no such word came.
#pragma once

#include <QObject>
#include <QRect>
#include <QTimer>

class QWidget;

namespace mv {

class NormalPlace : public QObject {
 public:
  explicit NormalPlace(QWidget& window);

  // Where the window's frame stands, and the size inside it; pixels.
  QRect rect() const;
  void set(const QRect& rect);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isNormal() const;
  void keep();

  QWidget& window_;
  QRect rect_;
  QTimer settled_;
};

}  // namespace mv
