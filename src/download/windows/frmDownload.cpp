#include "download_windows/frmDownload.h"

#include <QEvent>
#include <QGroupBox>
#include <QLineEdit>
#include <QVBoxLayout>
#include <utility>

#include "app/Events.h"
#include "base/Text.h"
#include "desktop/PictureDisplay.h"
#include "download/DownloadTexts.h"
#include "windows/PageTabs.h"
#include "windows/ScrollingPage.h"

namespace mv {

frmDownload::frmDownload() : frmDownload(std::make_unique<DownloadProcess>()) {}

frmDownload::frmDownload(std::unique_ptr<DownloadProcess> process)
    : ProcessWindow(*process), process_(std::move(process)) {
  setCaption(frmDownload::positionKey());
  buildSummary();
  buildDetails();
  connect(process_.get(), &DownloadProcess::fileSaved, this, &frmDownload::fileSaved);
}

QString frmDownload::positionKey() const { return settledCaption(); }

QString frmDownload::settledCaption() const { return toQString(downloadTitle(process_->SiteName)); }

void frmDownload::initWindow() {
  run([this] {
    prepareFor(process_->SiteId);
    process_->initWindow();
  });
}

void frmDownload::buildSummary() {
  lblFile_ = new ElidedLabel("lblFile", fileText(process_->status()));
  lblFilesInQueue_ = new ElidedLabel("lblFilesInQueue", queueText(process_->status()));
  lblFilesProcessed_ = new ElidedLabel("lblFilesProcessed", filesProcessedText(process_->status()));
  addSummary(lblFile_, lblFilesInQueue_, lblFilesProcessed_);
}

void frmDownload::buildDetails() {
  auto* tabs = new PageTabs("SSTab1");
  tabs->addTab(&linkView(), "Links");
  tabs->addTab(makePreviewTab(), "Preview");
  tabs->addTab(makeInfoTab(), "Info");
  details().layout()->addWidget(tabs);
}

QWidget* frmDownload::makePreviewTab() {
  auto* frame = new QFrame;
  frame->setObjectName("RightFrame");
  frame->setFrameShape(QFrame::StyledPanel);
  Gear1_ = new PictureDisplay;
  Gear1_->setObjectName("Gear1");
  Gear1_->setAccessibleName("Preview");
  Gear1_->installEventFilter(this);
  auto* layout = new QVBoxLayout(frame);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(Gear1_);
  return frame;
}

QWidget* frmDownload::makeInfoTab() {
  auto* tab = new QWidget;
  auto* layout = new QVBoxLayout(makeScrollingPage(tab));
  layout->setContentsMargins(kTightMargins);
  layout->addWidget(makeDownloadPanel());
  layout->addWidget(makeErrorPanel("frmErrorInfo", "lblInfoErrorFile", "lblInfoErrorReason", "lblInfoErrorTime",
                                   "lblInfoErrorCount"));
  layout->addStretch();
  return tab;
}

QWidget* frmDownload::makeDownloadPanel() {
  auto* panel = new QGroupBox("Download Information");
  panel->setObjectName("frmDownloading");
  lblInfoSize_ = new QLabel(toQString(sizeText(process_->status())));
  lblInfoSize_->setObjectName("lblInfoSize");
  lblInfoSize_->setTextFormat(Qt::PlainText);
  lblInfoSize_->setWordWrap(true);
  lblInfoBytesReceived_ = new ElidedLabel("lblInfoBytesReceived", receivedText(process_->status()));
  lblInfoBytesLeft_ = new ElidedLabel("lblInfoBytesLeft", leftText(process_->status()));
  txtInfoSavePath_ = makeReadOnlyLine("txtInfoSavePath", "Saving to", savePathText(process_->status()));
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(kTightMargins);
  layout->setSpacing(kTightSpacing);
  layout->addWidget(lblInfoSize_);
  layout->addWidget(lblInfoBytesReceived_);
  layout->addWidget(lblInfoBytesLeft_);
  layout->addWidget(txtInfoSavePath_);
  return panel;
}

void frmDownload::refresh() {
  ProcessWindow::refresh();
  lblFile_->setLine(fileText(process_->status()));
  lblFilesInQueue_->setLine(queueText(process_->status()));
  lblFilesProcessed_->setLine(filesProcessedText(process_->status()));
  lblInfoSize_->setText(toQString(sizeText(process_->status())));
  lblInfoBytesReceived_->setLine(receivedText(process_->status()));
  lblInfoBytesLeft_->setLine(leftText(process_->status()));
  showLine(*txtInfoSavePath_, savePathText(process_->status()));
}

bool frmDownload::eventFilter(QObject* watched, QEvent* event) {
  if (watched == Gear1_ && event->type() == QEvent::Show) showPreview();
  return ProcessWindow::eventFilter(watched, event);
}

void frmDownload::fileSaved(const std::string& path) {
  Q_EMIT events().fileSaved(path);
  lastSaved_ = path;
  previewDue_ = true;
  if (Gear1_->isVisible()) showPreview();
}

void frmDownload::showPreview() {
  if (!previewDue_) return;
  previewDue_ = false;
  run([this] { Gear1_->setPicture(lastSaved_); });
}

}  // namespace mv
