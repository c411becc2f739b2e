#include "forms_windows/frmFormManager.h"

#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "frmNewForm.h"
#include "store/BuiltInForms.h"
#include "store/FormStore.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

enum Column { kName, kType, kDescription };

QStringList textsOf(const Form& form) {
  return {toQString(form.name), toQString(form.type), toQString(form.description), QString::number(form.id)};
}

}  // namespace

frmFormManager::frmFormManager()
    : RecordWindow({.kind = "Form",
                    .width = 3050,
                    .height = 3600,
                    .windowName = "frmFormManager",
                    .listName = "lvwForms",
                    .columns = {{"Name", 24}, {"Type", 14}, {"Description", 28}, {"Id", 0, true}},
                    .editCaption = "Edit Form: ",
                    .keepsChosen = true,
                    .readRows = [] { return rowsOf(listForms(), textsOf); },
                    .remove = deleteForm}) {
  connect(&list(), &ListView::rowChosen, this, [this] { run([this] { buildWorkingLists("cannotmodify"); }); });
  load();
}

void frmFormManager::buildWorkingLists(const std::string& command, long id) {
  RecordWindow::buildWorkingLists(command, id);
  // A rebuild may end with no form chosen.
  if (command == "cannotmodify" || command == "init") setChangeEnabled(!isAuthenticationForm(chosenId()));
}

RecordEditor* frmFormManager::makeEditor(int row) {
  auto* editor = new frmNewForm;
  if (row < 0) return editor;
  editor->Name = list().cell(row, kName);
  editor->FormType = list().cell(row, kType);
  editor->Description = list().cell(row, kDescription);
  return editor;
}

void frmFormManager::editChosen() {
  if (list().rowCount() == 0)
    showMessage(this, applicationTitle(), "There are no forms to edit.", MessageIcon::None);
  else if (!isAuthenticationForm(chosenId()))
    RecordWindow::editChosen();
}

bool frmFormManager::mayDelete(int) { return !isAuthenticationForm(chosenId()); }

}  // namespace mv
