#include "catalog_windows/frmFileTypeManager.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeChild.h"
#include "desktop/Dialogs.h"
#include "store/FileTypeStore.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

enum Column { kName, kDescription, kCanDelete, kDownloadByDefault };

QStringList textsOf(const FileType& type) {
  return {toQString(type.extension), toQString(type.description), toQString(yesNo(type.canDelete)),
          toQString(yesNo(type.downloadByDefault)), QString::number(type.id)};
}

}  // namespace

frmFileTypeManager::frmFileTypeManager()
    : RecordWindow(
          {.kind = "FileType",
           .width = 6200,
           .height = 3600,
           .windowName = "frmFileTypeManager",
           .listName = "lvwFiletypes",
           .columns =
               {{"FileType", 10}, {"Description", 20}, {"Can Delete", 4}, {"Download by Default", 4}, {"Id", 0, true}},
           .editCaption = "Edit: ",
           .readRows = [] { return rowsOf(listFileTypesByName(), textsOf); },
           .remove = deleteFileType}) {
  load();
}

RecordEditor* frmFileTypeManager::makeEditor(int row) {
  auto* editor = new frmFileTypeChild;
  if (row < 0) return editor;
  editor->Extension = list().cell(row, kName);
  editor->Description = list().cell(row, kDescription);
  editor->CanDelete = toUtf8(list().cell(row, kCanDelete));
  editor->DownloadByDefault = toUtf8(list().cell(row, kDownloadByDefault));
  return editor;
}

bool frmFileTypeManager::mayDelete(int row) {
  if (list().cell(row, kCanDelete) != QLatin1String("no")) return true;
  showMessage(this, "Cannot Delete Built-in FileTypes", "You cannot delete this filetype", MessageIcon::Information);
  return false;
}

}  // namespace mv
