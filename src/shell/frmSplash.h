// The splash window: shown at start-up for a few seconds, and from Help, About until the user closes it.
#pragma once

#include <QTimer>
#include <QWidget>

namespace mv {

class frmSplash : public QWidget {
  Q_OBJECT
 public:
  explicit frmSplash(QWidget* owner);

  // Closes itself after a few seconds.
  void showBriefly();
  // Stays until a click, Escape or Enter.
  void showUntilClosed();

  QTimer closingTimer;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace mv
