// The place that a window has when it is neither maximised nor minimised. Window managers resize a window before they
// say that they have maximised it, and the toolkit then takes the maximised size for the normal one; a place counts
// when it has stood for a moment in which no such word came. Some count the frame twice when they give a window its
// normal place back that was maximised from the start: it is put where it was, then.
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
  // A stored one, before the window is shown; `maximised`: and it will open maximised.
  void set(const QRect& rect, bool maximised);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool isNormal() const;
  void keep();
  void mendShift();

  QWidget& window_;
  QRect rect_;
  QTimer settled_;
  bool isMaximisedFromStart_ = false;
};

}  // namespace mv
