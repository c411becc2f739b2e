#include "scan_windows/frmTagManager.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "scan_windows/frmNewTag.h"

namespace mv {

namespace {

constexpr int kWidth = 6200;   // twips
constexpr int kHeight = 3600;  // twips

enum Column { kTag, kId };

}  // namespace

frmTagManager::frmTagManager() : ListWindow("Tag Manager", kWidth, kHeight) {
  setObjectName("frmTagManager");
  list().setObjectName("lvwTags");
  list().setColumns({{"Tag", 260}, {"Id", 80}});
  setIdColumn(kId);
  setKeepSorted(false);
  addRecordButtons();
  load();
}

void frmTagManager::buildWorkingLists(const std::string& command, long id) {
  if (command == "reset") {
    list().clearRows();
    forgetChosen();
  }
  ListWindow::buildWorkingLists(command, id);
}

void frmTagManager::fillList() {
  Recordset rows = gDatabase.query("select id, tag from valid_tag order by id");
  for (; !rows.endOfRows(); rows.moveNext()) list().addRow({toQString(rows.text("tag")), toQString(rows.text("id"))});
}

void frmTagManager::openNew() {
  auto* editor = new frmNewTag;
  editor->Mode = "new";
  editor->setCaption("New Tag");
  editor->open();
}

void frmTagManager::editChosen() {
  if (chosenRow() < 0) return;
  auto* editor = new frmNewTag;
  editor->Mode = "edit";
  editor->TagId = chosenId();
  editor->setCaption("Edit Tag: " + chosenText());
  editor->open();
}

void frmTagManager::deleteChosen() {
  if (chosenRow() < 0) {
    showMessage(this, "No Tag Selected", "Please select a tag to delete. ", MessageIcon::Information);
    return;
  }
  gDatabase.execute("delete from valid_tag where id = " + number(chosenId()));
  forgetChosen();
  buildWorkingLists("init");
}

}  // namespace mv
