#include "download_windows/frmDownload.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <utility>

#include "app/Events.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "base/ToolTip.h"
#include "desktop/ListColumns.h"
#include "download/DownloadTexts.h"
#include "ui_frmDownload.h"
#include "windows/ListHelpers.h"
#include "windows/WindowRegistry.h"

namespace mv {

frmDownload::frmDownload() : frmDownload(std::make_unique<DownloadProcess>()) {}

frmDownload::frmDownload(std::unique_ptr<DownloadProcess> process)
    : ProcessWindow(*process), ui_(std::make_unique<Ui::frmDownload>()), process_(std::move(process)) {
  ui_->setupUi(this);
  setCaption(frmDownload::positionKey());
  connectControls({ui_->lblSiteId, ui_->pbarSave, ui_->btnDetails, ui_->details, ui_->lvwLinks, ui_->lblState,
                   ui_->lblInfoErrorFile, ui_->lblInfoErrorReason, ui_->lblInfoErrorTime, ui_->lblInfoErrorCount});
  setEmptyText(*ui_->lvwLinks, "No file waits. A right click opens the folder of those that are saved.");
  ui_->Gear1->installEventFilter(this);
  offerCommands(*ui_->Gear1, [this] { return previewCommands(); });
  showStatus();
  connect(process_.get(), &DownloadProcess::fileSaved, this, &frmDownload::fileSaved);
}

frmDownload::~frmDownload() = default;

QString frmDownload::positionKey() const { return frmDownload::settledCaption(); }

QString frmDownload::settledCaption() const { return toQString(downloadTitle(process_->SiteName)); }

Totals frmDownload::totals() const {
  const DownloadStatus& status = process_->status();
  return {.waiting = status.waiting.listed,
          .moreWait = status.waiting.mayBeMore,
          .saved = status.counts.saved,
          .failed = process_->ErrorCount(),
          .bytes = status.counts.bytes};
}

const ChildWindow* frmDownload::standsBelow() const {
  const ChildWindow* scan =
      WindowRegistry::instance().findByKey(kScanTitle + positionKey().mid(QLatin1String(kDownloadTitle).size()));
  return scan && scan->isChildVisible() ? scan : nullptr;
}

std::string frmDownload::stateText() const { return outcomeText(process_->status(), process_->ErrorCount()); }

// --- the way to the files

Command frmDownload::folderCommand(const QString& folder) {
  return {"mnuRowFolder", "Open &Folder", [this, folder] { run([&] { openPath(this, folder); }); }};
}

Commands frmDownload::fileCommands(const QString& path, const QString& folder) {
  return {{"mnuRowOpen", "&Open", [this, path] { run([&] { openPath(this, path); }); }, !path.isEmpty()},
          folderCommand(folder)};
}

Commands frmDownload::commandsOf(int row) {
  const QString path = toQString(process_->lvwLinks.row(row).savedPath);
  Commands all = fileCommands(path, path.isEmpty() ? toQString(process_->folder()) : QFileInfo(path).path());
  for (Command& command : ProcessWindow::commandsOf(row)) all.push_back(std::move(command));
  return all;
}

void frmDownload::openRow(int row) {
  const QString path = toQString(process_->lvwLinks.row(row).savedPath);
  if (!path.isEmpty()) openPath(this, path);
}

Commands frmDownload::commandsOfList() { return {folderCommand(toQString(process_->folder()))}; }

Commands frmDownload::previewCommands() {
  const QString path = toQString(ui_->Gear1->picturePath());
  if (path.isEmpty()) return {};
  return fileCommands(path, QFileInfo(path).path());
}

void frmDownload::initWindow() {
  run([this] {
    prepareFor(process_->SiteId);
    process_->initWindow();
  });
}

void frmDownload::refresh() {
  ProcessWindow::refresh();
  showStatus();
}

void frmDownload::showStatus() {
  const DownloadStatus& status = process_->status();
  ui_->lblFile->setLine(fileText(status));
  ui_->lblFilesInQueue->setLine(queueText(status));
  ui_->lblFilesProcessed->setLine(filesProcessedText(status));
  ui_->lblInfoSize->setText(toQString(sizeText(status)));
  ui_->lblInfoBytesReceived->setLine(receivedText(status));
  ui_->lblInfoBytesLeft->setLine(leftText(status));
  showLine(*ui_->txtInfoSavePath, savePathText(status));
}

bool frmDownload::eventFilter(QObject* watched, QEvent* event) {
  if (watched == ui_->Gear1 && event->type() == QEvent::Show) showPreview();
  if (watched == ui_->Gear1 && opensFile(*event)) {
    if (const QString path = toQString(ui_->Gear1->picturePath()); !path.isEmpty()) openPath(this, path);
    return true;
  }
  return ProcessWindow::eventFilter(watched, event);
}

bool frmDownload::opensFile(const QEvent& event) {
  if (event.type() == QEvent::MouseButtonDblClick) return true;
  if (event.type() != QEvent::KeyPress) return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

void frmDownload::fileSaved(const std::string& path) {
  Q_EMIT events().fileSaved(path);
  lastSaved_ = path;
  previewDue_ = true;
  if (ui_->Gear1->isVisible()) showPreview();
}

void frmDownload::showPreview() {
  if (!previewDue_) return;
  previewDue_ = false;
  run([this] {
    ui_->Gear1->setPicture(lastSaved_);
    ui_->Gear1->setToolTip(plainToolTip(toQString(lastSaved_)));
  });
}

}  // namespace mv
