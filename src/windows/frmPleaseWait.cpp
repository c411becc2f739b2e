#include "windows/frmPleaseWait.h"

#include "desktop/Dialogs.h"
#include "ui_frmPleaseWait.h"

namespace mv {

frmPleaseWait::frmPleaseWait(QWidget* owner)
    : QDialog(owner, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint),
      ui_(std::make_unique<Ui::frmPleaseWait>()) {
  ui_->setupUi(this);
  setWindowTitle(applicationTitle());
  ui_->cmdStop->hide();
  connect(ui_->cmdStop, &QPushButton::clicked, this, &frmPleaseWait::stopWanted);
  setPercent(-1);
}

frmPleaseWait::~frmPleaseWait() = default;

void frmPleaseWait::offerStop() { ui_->cmdStop->show(); }

void frmPleaseWait::setText(const QString& text) { ui_->lblPleaseWait->setText(text); }

void frmPleaseWait::setPercent(int percent) {
  ui_->pbarPleaseWait->setRange(0, percent < 0 ? 0 : 100);
  ui_->pbarPleaseWait->setValue(percent);
}

}  // namespace mv
