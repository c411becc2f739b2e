#include "download/frmDownload.h"

#include <QEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPainter>
#include <QScrollArea>
#include <QStyle>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "app/ReportError.h"
#include "platform/PictureDisplay.h"
#include "platform/Text.h"

namespace mv {

namespace {

QLabel* makeLabel(const QString& name, const std::string& text) {
  auto* label = new QLabel(toQString(text));
  label->setObjectName(name);
  label->setTextFormat(Qt::PlainText);
  return label;
}

// A line of any length in a narrow window: shortened in the middle where it does not fit, whole as a tool tip.
class ElidedLabel : public QLabel {
 public:
  using QLabel::QLabel;
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    const QString line = fontMetrics().elidedText(text().simplified(), Qt::ElideMiddle, contentsRect().width());
    style()->drawItemText(&painter, contentsRect(), Qt::AlignVCenter | Qt::TextSingleLine, palette(), isEnabled(), line,
                          foregroundRole());
  }
};

void setElided(QLabel& label, const std::string& text) {
  const QString line = toQString(text);
  if (label.text() == line) return;
  label.setText(line);
  label.setToolTip(line.toHtmlEscaped());
}

}  // namespace

frmDownload::frmDownload() : frmDownload(std::make_unique<DownloadProcess>()) {}

frmDownload::frmDownload(std::unique_ptr<DownloadProcess> process)
    : ProcessWindow(*process), process_(std::move(process)) {
  setCaption(positionKey());
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
  guarded("frmDownload.initWindow", [this] { restoreProcessPosition(); });
}

void frmDownload::buildSummary() {
  lblFile_ = new ElidedLabel;
  lblFile_->setObjectName("lblFile");
  lblFile_->setTextFormat(Qt::PlainText);
  setElided(*lblFile_, process_->fileLabel());
  lblFilesInQueue_ = makeLabel("lblFilesInQueue", process_->queueText());
  lblFilesProcessed_ = makeLabel("lblFilesProcessed", process_->processedText());
  lblSiteId_ = makeLabel("lblSiteId", "Please Wait...");
  lblSiteId_->setParent(this);
  lblSiteId_->hide();

  auto* counters = new QHBoxLayout;
  counters->addWidget(lblFilesInQueue_);
  counters->addWidget(lblFilesProcessed_);
  counters->addStretch();
  summary().addWidget(lblFile_);
  summary().addLayout(counters);
}

void frmDownload::buildDetails() {
  auto* tabs = new QTabWidget;
  tabs->setObjectName("SSTab1");
  tabs->addTab(makeLinksTab(), "Links");
  tabs->addTab(makePreviewTab(), "Preview");
  tabs->addTab(makeInfoTab(), "Info");
  details().layout()->addWidget(tabs);
}

QWidget* frmDownload::makeLinksTab() {
  QHeaderView& header = *linkView().header();
  header.setSectionsClickable(true);
  connect(&header, &QHeaderView::sectionClicked, this,
          [this](int column) { guarded("frmDownload.lvwLinks", [&] { sortLinks(column); }); });
  return &linkView();
}

void frmDownload::sortLinks(int column) {
  const Qt::SortOrder order = sortDescending_ ? Qt::DescendingOrder : Qt::AscendingOrder;
  sortDescending_ = !sortDescending_;
  process_->lvwLinks.sort(column, order);
  linkView().header()->setSortIndicator(column, order);
  linkView().header()->setSortIndicatorShown(true);
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
  for (QWidget* line : {static_cast<QWidget*>(lblInfoSize_), static_cast<QWidget*>(lblInfoBytesReceived_),
                        static_cast<QWidget*>(lblInfoBytesLeft_), static_cast<QWidget*>(txtInfoSavePath_)})
    layout->addWidget(line);
  return panel;
}

void frmDownload::refresh() {
  ProcessWindow::refresh();
  setElided(*lblFile_, process_->fileLabel());
  lblFilesInQueue_->setText(toQString(process_->queueText()));
  lblFilesProcessed_->setText(toQString(process_->processedText()));
  lblInfoSize_->setText(toQString(process_->sizeText()));
  lblInfoBytesReceived_->setText(toQString(process_->receivedText()));
  lblInfoBytesLeft_->setText(toQString(process_->leftText()));
  const QString folder = toQString(process_->savePathText());
  if (txtInfoSavePath_->text() != folder) txtInfoSavePath_->setText(folder);
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
  guarded("frmDownload.showPreview", [this] { Gear1_->setPicture(lastSaved_); });
}

}  // namespace mv
