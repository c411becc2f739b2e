#include "shell/frmPictureViewer.h"

#include <QFile>
#include <QFileInfo>
#include <QShortcut>
#include <utility>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "ui_frmPictureViewer.h"
#include "windows/MainFrame.h"

namespace mv {

namespace {

constexpr int kWidth = 7200;   // twips
constexpr int kHeight = 6000;  // twips
constexpr const char* kPictureViewer = "Picture Viewer";

}  // namespace

frmPictureViewer::frmPictureViewer(const QString& lastSaved)
    : ChildWindow(kWidth, kHeight), ui_(std::make_unique<Ui::frmPictureViewer>()), lastSaved_(lastSaved) {
  ui_->setupUi(this);
  setFocusProxy(ui_->pictPicture);
  wire();
  setOpens(Opens::Cascaded);
  run([this] { restorePosition(); });
  updateControls();
  followLastSaved();
}

frmPictureViewer::~frmPictureViewer() = default;

void frmPictureViewer::wire() {
  const auto onClick = [this](QPushButton* button, auto work) {
    connect(button, &QPushButton::clicked, this, [this, work] { run(work); });
  };
  onClick(ui_->cmdOpen, [this] { chooseFile(); });
  onClick(ui_->cmdPrevious, [this] { step(-1); });
  onClick(ui_->cmdNext, [this] { step(1); });
  onClick(ui_->cmdDelete, [this] { deleteShown(); });
  // Shortcuts, because buttons keep the arrow keys for themselves.
  const auto onKey = [this](Qt::Key key, auto work) {
    auto* shortcut = new QShortcut(key, this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, [this, work] { run(work); });
  };
  onKey(Qt::Key_Left, [this] { step(-1); });
  onKey(Qt::Key_Right, [this] { step(1); });
  onKey(Qt::Key_Delete, [this] { deleteShown(); });
  onKey(Qt::Key_Escape, [this] { unload(); });
  connect(ui_->chkFollow, &QCheckBox::clicked, this, [this] { run([this] { followLastSaved(); }); });
  connect(&pictures_, &PictureFolder::listed, this, [this] { run([this] { folderListed(); }); });
  connect(ui_->pictPicture, &PictureDisplay::loaded, this, [this] { updateControls(); });
  listenTo(&Events::fileSaved, [this](const std::string& path) {
    lastSaved_ = toQString(path);
    followLastSaved();
  });
}

void frmPictureViewer::activated() {
  if (MainFrame* frame = MainFrame::current()) frame->setClipboardItemsEnabled(true);
}

void frmPictureViewer::unloading() { savePosition(); }

void frmPictureViewer::followLastSaved() {
  if (ui_->chkFollow->isChecked() && PictureFolder::isPicture(lastSaved_)) showPicture(lastSaved_);
}

QString frmPictureViewer::folder() const { return QFileInfo(path_).path(); }

QString frmPictureViewer::name() const { return QFileInfo(path_).fileName(); }

void frmPictureViewer::showPicture(const QString& path) {
  path_ = path;
  stepWanted_ = 0;
  replace_ = false;
  ui_->txtPicture->setText(path);
  ui_->pictPicture->setPicture(toUtf8(path));
  updateControls();
}

void frmPictureViewer::updateControls() {
  const bool any = !path_.isEmpty();
  const bool known = any && !stepWanted_ && pictures_.isCurrent(folder());
  ui_->cmdPrevious->setEnabled(any && (!known || !pictures_.neighbour(name(), -1).isEmpty()));
  ui_->cmdNext->setEnabled(any && (!known || !pictures_.neighbour(name(), 1).isEmpty()));
  ui_->cmdDelete->setEnabled(any);
  ui_->lblPosition->setText(positionText());
}

QString frmPictureViewer::positionText() const {
  if (path_.isEmpty()) return "No picture.";
  if (!QFile::exists(path_)) return "The file is not there any more.";
  if (pictures_.isReading()) return "Reading the folder...";
  const int index = pictures_.isCurrent(folder()) ? pictures_.indexOf(name()) : -1;
  return index < 0 ? QString() : QString("%1 of %2").arg(index + 1).arg(pictures_.count());
}

void frmPictureViewer::chooseFile() {
  const QString start = path_.isEmpty() ? toQString(gDownloadFolder) : folder();
  const auto chosen = browseForFile(
      {"Open Picture", start, "Pictures (*." + PictureFolder::suffixes().join(" *.") + ");;All files (*)", this});
  if (!chosen || isUnloaded()) return;
  ui_->chkFollow->setChecked(false);
  showPicture(*chosen);
  pictures_.list(folder());
  updateControls();
}

void frmPictureViewer::step(int direction) {
  if (path_.isEmpty()) return;
  ui_->chkFollow->setChecked(false);
  stepWanted_ = direction;
  if (pictures_.isCurrent(folder()))
    takeStep();
  else if (!pictures_.isReading() || pictures_.folder() != folder())
    pictures_.list(folder());
  updateControls();
}

void frmPictureViewer::takeStep() {
  const int direction = std::exchange(stepWanted_, 0);
  const bool replace = std::exchange(replace_, false);
  QString next = pictures_.neighbour(name(), direction);
  if (next.isEmpty() && replace) next = pictures_.neighbour(name(), -direction);
  if (!next.isEmpty())
    showPicture(folder() + '/' + next);
  else if (replace)
    showPicture({});
}

void frmPictureViewer::folderListed() {
  if (stepWanted_ && !path_.isEmpty()) takeStep();
  updateControls();
}

void frmPictureViewer::deleteShown() {
  if (path_.isEmpty()) return;
  const QString path = path_;
  const bool yes =
      askConfirmation(this, kPictureViewer, "Delete this file?\n\n" + path + "\n\nIt cannot be brought back.");
  if (!yes || isUnloaded()) return;
  if (!QFile::remove(path) && QFile::exists(path)) {
    showMessage(this, kPictureViewer, "The file cannot be deleted:\r\n\r\n" + path, MessageIcon::Exclamation);
    return;
  }
  // While the question stood, a download may have shown another picture.
  if (path_ != path || isUnloaded()) return;
  ui_->pictPicture->setPicture({});
  ui_->chkFollow->setChecked(false);
  stepWanted_ = 1;
  replace_ = true;
  pictures_.list(folder());
  updateControls();
}

}  // namespace mv
