#include "shell/frmPictureViewer.h"

#include <QCheckBox>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <utility>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "desktop/PictureDisplay.h"
#include "windows/MainFrame.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr int kWidth = 7200;   // twips
constexpr int kHeight = 6000;  // twips
constexpr const char* kPictureViewer = "Picture Viewer";
constexpr QSize kSmallestPicture(120, 80);

QPushButton* makeButton(const char* name, const QString& caption, const QString& toolTip) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QString::fromLatin1(name));
  button->setToolTip(toolTip);
  return button;
}

}  // namespace

frmPictureViewer::frmPictureViewer(const QString& lastSaved) : ChildWindow(kWidth, kHeight), lastSaved_(lastSaved) {
  setObjectName("frmPictureViewer");
  setCaption(kPictureViewer);
  buildControls();
  wire();
  setOpens(Opens::Cascaded);
  run([this] { restorePosition(); });
  updateControls();
  followLastSaved();
}

void frmPictureViewer::buildControls() {
  display_ = new PictureDisplay;
  display_->setObjectName("pictPicture");
  display_->setAccessibleName("Picture");
  display_->setMinimumSize(kSmallestPicture);
  display_->setFocusPolicy(Qt::StrongFocus);
  txtPicture_ = new QLineEdit;
  txtPicture_->setObjectName("txtPicture");
  txtPicture_->setAccessibleName("File");
  txtPicture_->setReadOnly(true);
  txtPicture_->setFocusPolicy(Qt::ClickFocus);
  lblPosition_ = new QLabel;
  lblPosition_->setObjectName("lblPosition");
  auto* lines = new QVBoxLayout(makeScrollingPage(this));
  lines->addLayout(makeButtons());
  lines->addWidget(display_, 1);
  lines->addWidget(txtPicture_);
  lines->addWidget(lblPosition_);
  setFocusProxy(display_);
}

QHBoxLayout* frmPictureViewer::makeButtons() {
  cmdOpen_ = makeButton("cmdOpen", "&Open...", "Choose a picture file");
  cmdPrevious_ = makeButton("cmdPrevious", "&Previous", "The picture before this one in its folder (Left)");
  cmdNext_ = makeButton("cmdNext", "&Next", "The picture after this one in its folder (Right)");
  cmdDelete_ = makeButton("cmdDelete", "&Delete", "Delete this file (Delete)");
  chkFollow_ = new QCheckBox("&Follow");
  chkFollow_->setObjectName("chkFollow");
  chkFollow_->setToolTip("Show every picture as soon as it has been downloaded");
  chkFollow_->setChecked(true);
  auto* line = new QHBoxLayout;
  for (QWidget* control : std::initializer_list<QWidget*>{cmdOpen_, cmdPrevious_, cmdNext_, cmdDelete_, chkFollow_})
    line->addWidget(control);
  line->addStretch();
  return line;
}

void frmPictureViewer::wire() {
  const auto onClick = [this](QPushButton* button, auto work) {
    connect(button, &QPushButton::clicked, this, [this, work] { run(work); });
  };
  onClick(cmdOpen_, [this] { chooseFile(); });
  onClick(cmdPrevious_, [this] { step(-1); });
  onClick(cmdNext_, [this] { step(1); });
  onClick(cmdDelete_, [this] { deleteShown(); });
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
  connect(chkFollow_, &QCheckBox::clicked, this, [this] { run([this] { followLastSaved(); }); });
  connect(&pictures_, &PictureFolder::listed, this, [this] { run([this] { folderListed(); }); });
  connect(display_, &PictureDisplay::loaded, this, [this] { updateControls(); });
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
  if (chkFollow_->isChecked() && PictureFolder::isPicture(lastSaved_)) showPicture(lastSaved_);
}

QString frmPictureViewer::folder() const { return QFileInfo(path_).path(); }

QString frmPictureViewer::name() const { return QFileInfo(path_).fileName(); }

void frmPictureViewer::showPicture(const QString& path) {
  path_ = path;
  stepWanted_ = 0;
  replace_ = false;
  txtPicture_->setText(path);
  display_->setPicture(toUtf8(path));
  updateControls();
}

void frmPictureViewer::updateControls() {
  const bool any = !path_.isEmpty();
  const bool known = any && !stepWanted_ && pictures_.isCurrent(folder());
  cmdPrevious_->setEnabled(any && (!known || !pictures_.neighbour(name(), -1).isEmpty()));
  cmdNext_->setEnabled(any && (!known || !pictures_.neighbour(name(), 1).isEmpty()));
  cmdDelete_->setEnabled(any);
  lblPosition_->setText(positionText());
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
  chkFollow_->setChecked(false);
  showPicture(*chosen);
  pictures_.list(folder());
  updateControls();
}

void frmPictureViewer::step(int direction) {
  if (path_.isEmpty()) return;
  chkFollow_->setChecked(false);
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
  display_->setPicture({});
  chkFollow_->setChecked(false);
  stepWanted_ = 1;
  replace_ = true;
  pictures_.list(folder());
  updateControls();
}

}  // namespace mv
