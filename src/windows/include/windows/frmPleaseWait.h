// The small window that stands before all others while something takes long: one line and a bar. It cannot be
// closed; whoever shows it deletes it.
#pragma once

#include <QDialog>
#include <memory>

namespace mv {

namespace Ui {
class frmPleaseWait;
}

class frmPleaseWait : public QDialog {
  Q_OBJECT
 public:
  // Modal to the whole program. Shows "Waiting...".
  explicit frmPleaseWait(QWidget* owner);
  ~frmPleaseWait() override;

  void setText(const QString& text);
  // 0 to 100; -1 for a bar that only moves.
  void setPercent(int percent);
  // A button that asks to stop, for work that can.
  void offerStop();
  // Escape and the desktop's closing are turned away.
  void reject() override {}

 Q_SIGNALS:
  void stopWanted();

 private:
  std::unique_ptr<Ui::frmPleaseWait> ui_;
};

}  // namespace mv
