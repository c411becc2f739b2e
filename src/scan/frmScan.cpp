#include "scan/frmScan.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "app/ReportError.h"
#include "platform/Text.h"

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
  lblSiteId_ = new QLabel(this);
  lblSiteId_->setObjectName("lblSiteId");
  lblSiteId_->hide();
  auto* counters = new QHBoxLayout;
  counters->addWidget(lblPagesToScan_, 1);
  counters->addWidget(lblPagesProcessed_, 1);
  summary().addWidget(lblPage_);
  summary().addLayout(counters);
}

void frmScan::buildDetails() {
  txtInfoPageURL_ = new QLineEdit(toQString(process_->pageUrlText()));
  txtInfoPageURL_->setObjectName("txtInfoPageURL");
  txtInfoPageURL_->setAccessibleName("Page URL");
  txtInfoPageURL_->setReadOnly(true);
  QLayout& lines = *details().layout();
  lines.addWidget(&linkView());
  lines.addWidget(txtInfoPageURL_);
  lines.addWidget(makeErrorPanel("frmErrorInfo", "lblInfoErrorPage", "lblInfoErrorReason", "lblInfoErrorTime",
                                 "lblInfoErrorCount", "Page:"));
}

void frmScan::initWindow() {
  run([this] {
    lblSiteId_->setText(QString::number(process_->SiteID));
    process_->initWindow([this] { guarded("frmScan.initWindow", [this] { restoreProcessPosition(); }); });
    refresh();
  });
}

QString frmScan::positionKey() const { return "Scan: " + toQString(process_->SiteName); }

void frmScan::refresh() {
  ProcessWindow::refresh();
  lblPage_->setLine(process_->pageLabel());
  lblPagesToScan_->setLine(process_->toScanText());
  lblPagesProcessed_->setLine(process_->processedText());
  const QString address = toQString(process_->pageUrlText());
  if (txtInfoPageURL_->text() == address) return;
  txtInfoPageURL_->setText(address);
  txtInfoPageURL_->setCursorPosition(0);
}

}  // namespace mv
