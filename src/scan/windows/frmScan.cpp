#include "scan_windows/frmScan.h"

#include <utility>

#include "base/Text.h"
#include "scan/ScanTexts.h"
#include "ui_frmScan.h"

namespace mv {

frmScan::frmScan() : frmScan(std::make_unique<ScanProcess>()) {}

frmScan::frmScan(std::unique_ptr<ScanProcess> process)
    : ProcessWindow(*process), ui_(std::make_unique<Ui::frmScan>()), process_(std::move(process)) {
  ui_->setupUi(this);
  connectControls({ui_->lblSiteId, ui_->pbarSave, ui_->btnDetails, ui_->details, ui_->lvwLinks, ui_->lblState,
                   ui_->lblInfoErrorPage, ui_->lblInfoErrorReason, ui_->lblInfoErrorTime, ui_->lblInfoErrorCount});
  showStatus();
}

frmScan::~frmScan() = default;

Totals frmScan::totals() const { return {.sites = 1, .failed = process_->ErrorCount()}; }

std::string frmScan::stateText() const { return scanOutcomeText(process_->status(), process_->ErrorCount()); }

void frmScan::initWindow() {
  run([this] {
    prepareFor(process_->SiteID);
    process_->initWindow();
    refresh();
  });
}

QString frmScan::positionKey() const { return frmScan::settledCaption(); }

QString frmScan::settledCaption() const { return toQString(scanTitle(process_->SiteName)); }

void frmScan::refresh() {
  ProcessWindow::refresh();
  showStatus();
}

void frmScan::showStatus() {
  const ScanStatus& status = process_->status();
  ui_->lblPage->setLine(pageText(status));
  ui_->lblPagesToScan->setLine(toScanText(status));
  ui_->lblPagesProcessed->setLine(pagesProcessedText(status));
  showLine(*ui_->txtInfoPageURL, pageAddressText(status));
  ui_->lblInfoLogin->setLine(loginText(status.login));
  ui_->lblInfoLogin->setVisible(status.login.state != LoginState::NotNeeded);
}

}  // namespace mv
