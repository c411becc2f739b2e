#include "download/frmDownload.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "platform/PictureDisplay.h"
#include "platform/Text.h"

namespace mv {

namespace {

constexpr QMargins kTightMargins(4, 2, 4, 2);
constexpr int kTightSpacing = 2;

QLabel* makeLabel(const QString& name, const std::string& text) {
  auto* label = new QLabel(toQString(text));
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

frmDownload::frmDownload() : frmDownload(std::make_unique<DownloadProcess>()) {}

frmDownload::frmDownload(std::unique_ptr<DownloadProcess> process)
    : ProcessWindow(*process), process_(std::move(process)) {
  setCaption(frmDownload::positionKey());
  buildSummary();
  buildDetails();
  connect(process_.get(), &DownloadProcess::fileSaved, this, &frmDownload::fileSaved);
}

QString frmDownload::positionKey() const { return "Download: " + toQString(process_->SiteName); }

void frmDownload::initWindow() {
  lblSiteId_->setText(QString::number(process_->SiteId));
  lblSiteId_->hide();
  process_->initWindow();
  if (process_->StopRequested()) return;
  run([this] { restoreProcessPosition(); });
}

void frmDownload::buildSummary() {
  lblFile_ = new ElidedLabel("lblFile", process_->fileLabel());
  lblFilesInQueue_ = makeLabel("lblFilesInQueue", process_->queueText());
  lblFilesProcessed_ = makeLabel("lblFilesProcessed", process_->processedText());
  lblSiteId_ = makeLabel("lblSiteId", "Please Wait...");
  lblSiteId_->setParent(this);
  lblSiteId_->hide();

  auto* counters = new QHBoxLayout;
  counters->addWidget(lblFilesInQueue_, 1);
  counters->addWidget(lblFilesProcessed_, 1);
  summary().addWidget(lblFile_);
  summary().addLayout(counters);
}

void frmDownload::buildDetails() {
  auto* tabs = new QTabWidget;
  tabs->setObjectName("SSTab1");
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
  auto* page = new QWidget;
  auto* layout = new QVBoxLayout(page);
  layout->setContentsMargins(kTightMargins);
  layout->addWidget(makeDownloadPanel());
  layout->addWidget(makeErrorPanel("frmErrorInfo", "lblInfoErrorFile", "lblInfoErrorReason", "lblInfoErrorTime",
                                   "lblInfoErrorCount"));
  layout->addStretch();
  auto* scroll = new QScrollArea;
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setWidgetResizable(true);
  scroll->setWidget(page);
  return scroll;
}

QWidget* frmDownload::makeDownloadPanel() {
  auto* panel = new QGroupBox("Download Information");
  panel->setObjectName("frmDownloading");
  lblInfoSize_ = makeLabel("lblInfoSize", process_->sizeText());
  lblInfoSize_->setWordWrap(true);
  lblInfoBytesReceived_ = makeLabel("lblInfoBytesReceived", process_->receivedText());
  lblInfoBytesLeft_ = makeLabel("lblInfoBytesLeft", process_->leftText());
  txtInfoSavePath_ = new QLineEdit(toQString(process_->savePathText()));
  txtInfoSavePath_->setObjectName("txtInfoSavePath");
  txtInfoSavePath_->setAccessibleName("Saving to");
  txtInfoSavePath_->setReadOnly(true);
  auto* layout = new QVBoxLayout(panel);
  layout->setContentsMargins(kTightMargins);
  layout->setSpacing(kTightSpacing);
  for (QWidget* line : {static_cast<QWidget*>(lblInfoSize_), static_cast<QWidget*>(lblInfoBytesReceived_),
                        static_cast<QWidget*>(lblInfoBytesLeft_), static_cast<QWidget*>(txtInfoSavePath_)})
    layout->addWidget(line);
  return panel;
}

void frmDownload::refresh() {
  ProcessWindow::refresh();
  lblFile_->setLine(process_->fileLabel());
  lblFilesInQueue_->setText(toQString(process_->queueText()));
  lblFilesProcessed_->setText(toQString(process_->processedText()));
  lblInfoSize_->setText(toQString(process_->sizeText()));
  lblInfoBytesReceived_->setText(toQString(process_->receivedText()));
  lblInfoBytesLeft_->setText(toQString(process_->leftText()));
  const QString folder = toQString(process_->savePathText());
  if (txtInfoSavePath_->text() == folder) return;
  txtInfoSavePath_->setText(folder);
  txtInfoSavePath_->setCursorPosition(0);
}

bool frmDownload::eventFilter(QObject* watched, QEvent* event) {
  if (watched == Gear1_ && event->type() == QEvent::Show) showPreview();
  return ProcessWindow::eventFilter(watched, event);
}

void frmDownload::fileSaved(const std::string& path) {
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
