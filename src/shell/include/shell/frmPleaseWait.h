// The small window that stands before all others while something takes long: one line and a bar. It has no buttons and
// cannot be closed; whoever shows it deletes it.
#pragma once

#include <QDialog>

class QLabel;
class QProgressBar;

namespace mv {

class frmPleaseWait : public QDialog {
  Q_OBJECT
 public:
  // Modal to the whole program. Shows "Waiting...".
  explicit frmPleaseWait(QWidget* owner);

  void setText(const QString& text);
  // 0 to 100; -1 for a bar that only moves.
  void setPercent(int percent);
  // Escape and the desktop's closing are turned away.
  void reject() override {}

 private:
  QLabel* lblPleaseWait_;
  QProgressBar* pbarPleaseWait_;
};

}  // namespace mv
