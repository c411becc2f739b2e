// The splash window: shown at start-up for a few seconds, and from Help, About until the user closes it.
#pragma once

#include <QFrame>
#include <QTimer>
#include <memory>

namespace mv {

namespace Ui {
class frmSplash;
}

class frmSplash : public QFrame {
  Q_OBJECT
 public:
  // A window of its own above `owner`.
  explicit frmSplash(QWidget* owner);
  ~frmSplash() override;

  // Closes itself after a few seconds.
  void showBriefly();
  // Stops the closing timer; stays until a click, Escape, Enter or its button closes it.
  void showUntilClosed();

  QTimer closingTimer;

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void showCentred();

  std::unique_ptr<Ui::frmSplash> ui_;
};

}  // namespace mv
