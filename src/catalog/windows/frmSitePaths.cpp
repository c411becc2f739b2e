#include "catalog_windows/frmSitePaths.h"

#include <QBoxLayout>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <stdexcept>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/WebAddress.h"
#include "desktop/Dialogs.h"
#include "desktop/ListColumns.h"
#include "store/SiteStore.h"
#include "windows/MainFrame.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr int kWidth = 5500;   // twips
constexpr int kHeight = 3600;  // twips
// What the controls need before the window scrolls, in pixels.
constexpr int kNarrowestList = 110;
constexpr int kLowestList = 45;
constexpr QMargins kPageMargins(8, 4, 8, 6);
constexpr QMargins kFrameMargins(8, 6, 8, 6);
constexpr int kNarrowestPath = 170;
constexpr const char* kNoPath = "none";

enum Column { kExtension, kId };

QLabel* wrappedLabel(const char* name, const QString& text) {
  auto* label = new QLabel(text);
  label->setObjectName(QString::fromLatin1(name));
  label->setWordWrap(true);
  return label;
}

}  // namespace

frmSitePaths::frmSitePaths()
    : ChildWindow(kWidth, kHeight),
      lvwFiletypesAssigned_(new ListView),
      txtPath_(new QLineEdit),
      cmdBrowse_(new QPushButton("Browse...")) {
  setObjectName("frmSitePaths");
  auto* frames = new QHBoxLayout;
  frames->addWidget(buildFileTypesFrame(), 2);
  frames->addWidget(buildPathFrame(), 3);

  auto* rows = new QVBoxLayout(makeScrollingPage(this));
  rows->setContentsMargins(kPageMargins);
  rows->addLayout(frames, 1);
  rows->addWidget(buildCloseRow());
}

QWidget* frmSitePaths::buildFileTypesFrame() {
  auto* frame = new QGroupBox("Filetypes");
  frame->setObjectName("frmFileTypes");
  frame->setMinimumWidth(kNarrowestList);
  auto* label = wrappedLabel("lblFileTypesList", "Filetypes being downloaded from this site");
  label->setBuddy(lvwFiletypesAssigned_);
  lvwFiletypesAssigned_->setObjectName("lvwFiletypesAssigned");
  lvwFiletypesAssigned_->setColumns({{"Extension", 10}, {"Id", 0, true}});
  lvwFiletypesAssigned_->setMinimumSize(columnsWidth(*lvwFiletypesAssigned_), kLowestList);
  lvwFiletypesAssigned_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Ignored);
  connect(lvwFiletypesAssigned_, &ListView::rowChosen, this, [this](int row) { run([&] { showPathOfRow(row); }); });
  connect(lvwFiletypesAssigned_, &QTreeWidget::itemSelectionChanged, this,
          [this] { run([this] { selectionChanged(); }); });

  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(kFrameMargins);
  column->addWidget(label);
  column->addWidget(lvwFiletypesAssigned_, 1);
  return frame;
}

QWidget* frmSitePaths::buildPathFrame() {
  auto* frame = new QGroupBox("Path");
  frame->setObjectName("frmPath");
  frame->setMinimumWidth(kNarrowestPath);
  txtPath_->setObjectName("txtPath");
  txtPath_->setAccessibleName(frame->title());
  connect(txtPath_, &QLineEdit::editingFinished, this, [this] { run([this] { takeTypedFolder(); }); });
  cmdBrowse_->setObjectName("cmdBrowse");
  cmdBrowse_->setEnabled(false);
  connect(cmdBrowse_, &QPushButton::clicked, this, [this] { run([this] { browse(); }); });

  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(kFrameMargins);
  column->addWidget(txtPath_);
  column->addWidget(cmdBrowse_, 0, Qt::AlignRight);
  column->addWidget(wrappedLabel(
      "lblPathLocation", QStringLiteral("This is the location where the selected filetype will be saved. Note: this "
                                        "applies only to files downloaded from this site.")));
  column->addStretch(1);
  return frame;
}

QWidget* frmSitePaths::buildCloseRow() {
  auto* strip = new QWidget;
  auto* cmdClose = new QPushButton("&Close");
  cmdClose->setObjectName("cmdClose");
  connect(cmdClose, &QPushButton::clicked, this, [this] { closeRequested(); });
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  row->addWidget(cmdClose);
  return strip;
}

void frmSitePaths::open() {
  setCaption("Path Manager for: " + shownName());
  run([this] {
    restorePosition();
    path_.SiteID = SiteID;
    buildWorkingLists("init");
    buildWorkingLists("filetype");
  });
  showChild();
  lvwFiletypesAssigned_->setFocus();
}

QString frmSitePaths::shownName() const { return toQString(maskPassword(toUtf8(SiteName))); }

void frmSitePaths::buildWorkingLists(const std::string& command, long) {
  if (command != "filetype") return;
  lvwFiletypesAssigned_->clearRows();
  lvwFiletypesAssigned_->setSorting(false);
  fillList();
  lvwFiletypesAssigned_->setSorting(true);
  lvwFiletypesAssigned_->setCurrentItem(lvwFiletypesAssigned_->topLevelItem(0));
}

void frmSitePaths::fillList() {
  for (const NamedId& type : loadSiteFileTypes(SiteID))
    lvwFiletypesAssigned_->addRow({toQString(type.name), QString::number(type.id)});
}

// The mouse, dragged over the rows, moves the selection without a click.
void frmSitePaths::selectionChanged() {
  const int row = lvwFiletypesAssigned_->currentSelectedRow();
  cmdBrowse_->setEnabled(row >= 0);
  if (row >= 0) showPathOfRow(row);
}

void frmSitePaths::showPathOfRow(int row) {
  fileTypeId_ = lvwFiletypesAssigned_->cell(row, kId).toLongLong();
  path_.SiteID = SiteID;
  const std::string folder = path_.GetPathForFileType(fileTypeId_);
  txtPath_->setText(toQString(folder == kNoPath ? gDownloadFolder : folder));
}

void frmSitePaths::browse() {
  const int row = lvwFiletypesAssigned_->currentSelectedRow();
  if (row < 0) return;
  const QString folder = askFolder(lvwFiletypesAssigned_->cell(row, kExtension));
  // The program may have closed this window, and the database, while the dialog stood open.
  if (!isUnloaded() && !folder.isEmpty()) saveFolder(folder);
}

// The confirmed folder, empty when cancelled. The folder shown so far exists afterwards, so that the dialog can start
// there.
QString frmSitePaths::askFolder(const QString& extension) {
  const QString shown = txtPath_->text();
  if (!shown.isEmpty()) makeFolder(shown);
  FolderRequest request;
  request.title = QStringLiteral("Add New Path for %1 files").arg(extension);
  request.prompt =
      "Select folder where you want " + extension + " files downloaded from " + shownName() + " to be saved.";
  request.initialFolder = shown.isEmpty() ? toQString(gProgramFolder) : shown;
  request.owner = this;
  return browseForFolder(request).value_or(QString());
}

// Why it cannot be made is said; the dialog then begins at the nearest folder that there is.
bool frmSitePaths::makeFolder(const QString& folder) {
  try {
    path_.Path = toUtf8(folder);
    path_.checkPath();
    return true;
  } catch (const std::runtime_error& error) {
    showMessage(this, applicationTitle(), QString::fromUtf8(error.what()), MessageIcon::Exclamation);
    return false;
  }
}

void frmSitePaths::takeTypedFolder() {
  const int row = lvwFiletypesAssigned_->currentSelectedRow();
  if (row < 0 || !txtPath_->isModified()) return;
  txtPath_->setModified(false);
  const QString typed = txtPath_->text().trimmed();
  const QString folder = QDir::cleanPath(QFileInfo(typed).absoluteFilePath());
  // An emptied box is no folder: the one that is stored stays.
  if (typed.isEmpty() || !makeFolder(folder) || isUnloaded())
    showPathOfRow(row);
  else
    saveFolder(folder);
}

void frmSitePaths::saveFolder(const QString& folder) {
  path_.SiteID = SiteID;
  if (path_.AddSitePath(toUtf8(folder), fileTypeId_))
    txtPath_->setText(folder);
  else
    showMessage(this, applicationTitle(),
                "This web site or file type has been deleted meanwhile. The folder was not saved.",
                MessageIcon::Exclamation);
}

void frmSitePaths::activated() {
  if (MainFrame* frame = MainFrame::current()) frame->setClipboardItemsEnabled(true);
}

void frmSitePaths::unloading() { savePosition(); }

}  // namespace mv
