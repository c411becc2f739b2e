#include "scan_windows/frmTagManager.h"

#include "base/Text.h"
#include "frmNewTag.h"
#include "store/TagStore.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

QStringList textsOf(const Tag& tag) { return {toQString(tag.text), QString::number(tag.id)}; }

}  // namespace

frmTagManager::frmTagManager()
    : RecordWindow({.kind = "Tag",
                    .width = 6200,
                    .height = 3600,
                    .windowName = "frmTagManager",
                    .listName = "lvwTags",
                    .columns = {{"Tag", 36}, {"Id", 8}},
                    .opensInFreeSpace = true,
                    .editCaption = "Edit Tag: ",
                    .toolTips = false,
                    .sorted = false,
                    .keepsChosen = true,
                    .readRows = [] { return rowsOf(listTags(), textsOf); },
                    .remove = deleteTag}) {
  load();
}

void frmTagManager::buildWorkingLists(const std::string& command, long id) {
  if (command == "reset") {
    list().clearRows();
    forgetChosen();
  }
  RecordWindow::buildWorkingLists(command, id);
}

RecordEditor* frmTagManager::makeEditor(int) { return new frmNewTag; }

}  // namespace mv
