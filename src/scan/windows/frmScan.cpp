#include "scan_windows/frmScan.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "app/Settings.h"
#include "base/Text.h"

namespace mv {

frmScan::frmScan() : frmScan(std::make_unique<ScanProcess>()) {}

frmScan::frmScan(std::unique_ptr<ScanProcess> process) : ProcessWindow(*process), process_(std::move(process)) {
  buildSummary();
  buildDetails();
}

void frmScan::buildSummary() {
  lblPage_ = new ElidedLabel("lblPage", process_->pageLabel());
  lblPagesToScan_ = new ElidedLabel("lblPagesToScan", process_->toScanText());
  lblPagesProcessed_ = new ElidedLabel("lblPagesProcessed", process_->processedText());
  addSummary(lblPage_, lblPagesToScan_, lblPagesProcessed_);
}

void frmScan::buildDetails() {
  txtInfoPageURL_ = makeReadOnlyLine("txtInfoPageURL", "Page URL", process_->pageUrlText());
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

QString frmScan::positionKey() const { return kScanTitle + toQString(process_->SiteName); }

QString frmScan::settledCaption() const { return toQString(process_->title()); }

void frmScan::refresh() {
  ProcessWindow::refresh();
  lblPage_->setLine(process_->pageLabel());
  lblPagesToScan_->setLine(process_->toScanText());
  lblPagesProcessed_->setLine(process_->processedText());
  showLine(*txtInfoPageURL_, process_->pageUrlText());
  lblInfoLogin_->setLine(process_->loginText());
  lblInfoLogin_->setVisible(!process_->loginText().empty());
}

}  // namespace mv
