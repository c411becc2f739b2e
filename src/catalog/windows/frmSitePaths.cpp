#include "catalog_windows/frmSitePaths.h"

#include <QDir>
#include <QFileInfo>
#include <QItemSelectionModel>
#include <stdexcept>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/WebAddress.h"
#include "desktop/Dialogs.h"
#include "desktop/ListColumns.h"
#include "store/SiteStore.h"
#include "ui_frmSitePaths.h"
#include "windows/ListHelpers.h"
#include "windows/MainFrame.h"

namespace mv {

namespace {

constexpr int kWidth = 5500;   // twips
constexpr int kHeight = 3600;  // twips
constexpr int kPathCharacters = 30;
constexpr const char* kNoPath = "none";

enum Column { kExtension, kId };

}  // namespace

frmSitePaths::frmSitePaths() : ChildWindow(kWidth, kHeight), ui_(std::make_unique<Ui::frmSitePaths>()) {
  ui_->setupUi(this);
  ListView& list = *ui_->lvwFiletypesAssigned;
  list.setColumns({{"Extension", 10}, {"Id", 0, true}});
  list.setMinimumWidth(columnsWidth(list));
  ui_->frmPath->setMinimumWidth(kPathCharacters * fontMetrics().averageCharWidth());
  list.setSorting(true);
  connect(&list, &ListView::rowChosen, this, [this](int row) { run([&] { showPathOfRow(row); }); });
  connect(list.selectionModel(), &QItemSelectionModel::selectionChanged, this,
          [this] { run([this] { selectionChanged(); }); });
  connect(ui_->txtPath, &QLineEdit::editingFinished, this, [this] { run([this] { takeTypedFolder(); }); });
  connect(ui_->cmdBrowse, &QPushButton::clicked, this, [this] { run([this] { browse(); }); });
  connect(ui_->cmdClose, &QPushButton::clicked, this, [this] { closeRequested(); });
}

frmSitePaths::~frmSitePaths() = default;

void frmSitePaths::open() {
  setCaption("Path Manager for: " + shownName());
  run([this] {
    restorePosition();
    path_.SiteID = SiteID;
    buildWorkingLists("init");
    buildWorkingLists("filetype");
  });
  showChild();
  ui_->lvwFiletypesAssigned->setFocus();
}

QString frmSitePaths::shownName() const { return toQString(maskPassword(toUtf8(SiteName))); }

void frmSitePaths::buildWorkingLists(const std::string& command, long) {
  if (command != "filetype") return;
  ListView& list = *ui_->lvwFiletypesAssigned;
  list.setRows(rowsOf(loadSiteFileTypes(SiteID)));
  list.setRowSelected(0, true);
}

// The mouse, dragged over the rows, moves the selection without a click.
void frmSitePaths::selectionChanged() {
  const int row = ui_->lvwFiletypesAssigned->currentSelectedRow();
  ui_->cmdBrowse->setEnabled(row >= 0);
  if (row >= 0) showPathOfRow(row);
}

void frmSitePaths::showPathOfRow(int row) {
  fileTypeId_ = ui_->lvwFiletypesAssigned->cell(row, kId).toLongLong();
  path_.SiteID = SiteID;
  const std::string folder = path_.GetPathForFileType(fileTypeId_);
  ui_->txtPath->setText(toQString(folder == kNoPath ? gDownloadFolder : folder));
}

void frmSitePaths::browse() {
  const int row = ui_->lvwFiletypesAssigned->currentSelectedRow();
  if (row < 0) return;
  const QString folder = askFolder(ui_->lvwFiletypesAssigned->cell(row, kExtension));
  // The program may have closed this window, and the database, while the dialog stood open.
  if (!isUnloaded() && !folder.isEmpty()) saveFolder(folder);
}

// The confirmed folder, empty when cancelled. The folder shown so far exists afterwards, so that the dialog can start
// there.
QString frmSitePaths::askFolder(const QString& extension) {
  const QString shown = ui_->txtPath->text();
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
  const int row = ui_->lvwFiletypesAssigned->currentSelectedRow();
  if (row < 0) return;
  const QString typed = ui_->txtPath->text().trimmed();
  // An emptied box is no folder, nor is one that could not be made and was left as it is: the stored one stays.
  if (!ui_->txtPath->isModified() || typed.isEmpty()) return showPathOfRow(row);
  ui_->txtPath->setModified(false);
  const QString folder = QDir::cleanPath(QFileInfo(typed).absoluteFilePath());
  if (makeFolder(folder))
    saveFolder(folder);
  else if (!isUnloaded())
    ui_->txtPath->setFocus();
}

void frmSitePaths::saveFolder(const QString& folder) {
  path_.SiteID = SiteID;
  if (path_.AddSitePath(toUtf8(folder), fileTypeId_))
    ui_->txtPath->setText(folder);
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
