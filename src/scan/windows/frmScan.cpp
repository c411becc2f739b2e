#include "scan_windows/frmScan.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "base/Text.h"
#include "scan/ScanTexts.h"

namespace mv {

frmScan::frmScan() : frmScan(std::make_unique<ScanProcess>()) {}

frmScan::frmScan(std::unique_ptr<ScanProcess> process) : ProcessWindow(*process), process_(std::move(process)) {
  buildSummary();
  buildDetails();
}

void frmScan::buildSummary() {
  lblPage_ = new ElidedLabel("lblPage", pageText(process_->status()));
  lblPagesToScan_ = new ElidedLabel("lblPagesToScan", toScanText(process_->status()));
  lblPagesProcessed_ = new ElidedLabel("lblPagesProcessed", pagesProcessedText(process_->status()));
  addSummary(lblPage_, lblPagesToScan_, lblPagesProcessed_);
}

void frmScan::buildDetails() {
  txtInfoPageURL_ = makeReadOnlyLine("txtInfoPageURL", "Page URL", pageAddressText(process_->status()));
  lblInfoLogin_ = new ElidedLabel("lblInfoLogin");
  lblInfoLogin_->hide();
  QLayout& lines = *details().layout();
  lines.addWidget(&linkView());
  lines.addWidget(txtInfoPageURL_);
  lines.addWidget(lblInfoLogin_);
  lines.addWidget(makeErrorPanel("frmErrorInfo", "lblInfoErrorPage", "lblInfoErrorReason", "lblInfoErrorTime",
                                 "lblInfoErrorCount", "Page:"));
}

void frmScan::initWindow() {
  run([this] {
    prepareFor(process_->SiteID);
    process_->initWindow();
    refresh();
  });
}

QString frmScan::positionKey() const { return settledCaption(); }

QString frmScan::settledCaption() const { return toQString(scanTitle(process_->SiteName)); }

void frmScan::refresh() {
  ProcessWindow::refresh();
  lblPage_->setLine(pageText(process_->status()));
  lblPagesToScan_->setLine(toScanText(process_->status()));
  lblPagesProcessed_->setLine(pagesProcessedText(process_->status()));
  showLine(*txtInfoPageURL_, pageAddressText(process_->status()));
  const LoginStatus& login = process_->status().login;
  lblInfoLogin_->setLine(loginText(login));
  lblInfoLogin_->setVisible(login.state != LoginState::NotNeeded);
}

}  // namespace mv
