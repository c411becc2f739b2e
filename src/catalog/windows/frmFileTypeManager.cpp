#include "catalog_windows/frmFileTypeManager.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "desktop/Dialogs.h"

namespace mv {

namespace {

constexpr int kWidth = 6200;   // twips
constexpr int kHeight = 3600;  // twips

enum Column { kName, kDescription, kCanDelete, kDownloadByDefault, kId };

}  // namespace

frmFileTypeManager::frmFileTypeManager() : ListWindow("FileType Manager", kWidth, kHeight) {
  setObjectName("frmFileTypeManager");
  list().setObjectName("lvwFiletypes");
  list().setColumns(
      {{"FileType", 68}, {"Description", 106}, {"Can Delete", 76}, {"Download by Default", 128}, {"Id", 0, true}});
  setIdColumn(kId);
  setKeepChosen(false);
  addRecordButtons("filetype");
  load();
}

void frmFileTypeManager::fillList() {
  Recordset rows = gDatabase.query(
      "select id, name, description, can_delete, download_by_default from valid_filetypes order by name");
  for (; !rows.endOfRows(); rows.moveNext())
    list().addRow({toQString(rows.text("name")), toQString(rows.text("description")),
                   toQString(rows.text("can_delete")), toQString(rows.text("download_by_default")),
                   toQString(rows.text("id"))});
}

void frmFileTypeManager::openNew() {
  auto* editor = new frmFileTypeChild;
  editor->Mode = "new";
  editor->open();
}

void frmFileTypeManager::editChosen() {
  const int row = chosenRow();
  if (row < 0) return;
  auto* editor = new frmFileTypeChild;
  editor->Mode = "edit";
  editor->FileTypeId = chosenId();
  editor->Extension = list().cell(row, kName);
  editor->Description = list().cell(row, kDescription);
  editor->CanDelete = toUtf8(list().cell(row, kCanDelete));
  editor->DownloadByDefault = toUtf8(list().cell(row, kDownloadByDefault));
  editor->setCaption("Edit: " + editor->Extension);
  editor->open();
}

void frmFileTypeManager::deleteChosen() {
  const int row = chosenRow();
  if (row < 0) {
    showMessage(this, "No FileType Selected", "Please select a filetype to delete. ", MessageIcon::Information);
    return;
  }
  if (list().cell(row, kCanDelete) == QLatin1String("no")) {
    showMessage(this, "Cannot Delete Built-in FileTypes", "You cannot delete this filetype", MessageIcon::Information);
    return;
  }
  const Literal id = number(chosenId());
  gDatabase.execute("delete from valid_filetypes where id = " + id);
  gDatabase.execute("delete from site_filetype_xref where file_type_id = " + id);
  gDatabase.execute("delete from site_paths where filetype_id = " + id);
  buildWorkingLists("init");
}

}  // namespace mv
