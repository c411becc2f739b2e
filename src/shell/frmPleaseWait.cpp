#include "shell/frmPleaseWait.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "desktop/Dialogs.h"

namespace mv {

namespace {

constexpr int kWidth = 340;
constexpr int kMargin = 16;

}  // namespace

frmPleaseWait::frmPleaseWait(QWidget* owner)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      lblPleaseWait_(new QLabel("Waiting...")),
      pbarPleaseWait_(new QProgressBar) {
  setObjectName("frmPleaseWait");
  setWindowTitle(applicationTitle());
  setWindowModality(Qt::ApplicationModal);
  lblPleaseWait_->setObjectName("lblPleaseWait");
  pbarPleaseWait_->setObjectName("pbarPleaseWait");
  pbarPleaseWait_->setAccessibleName("Progress");
  pbarPleaseWait_->setTextVisible(false);
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  lines->addWidget(lblPleaseWait_);
  lines->addWidget(pbarPleaseWait_);
  setMinimumWidth(kWidth);
  setPercent(-1);
}

void frmPleaseWait::setText(const QString& text) { lblPleaseWait_->setText(text); }

void frmPleaseWait::setPercent(int percent) {
  pbarPleaseWait_->setRange(0, percent < 0 ? 0 : 100);
  pbarPleaseWait_->setValue(percent);
}

}  // namespace mv
