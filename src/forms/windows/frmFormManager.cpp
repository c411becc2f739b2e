#include "forms_windows/frmFormManager.h"

#include <QAction>
#include <QToolButton>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "forms_windows/frmNewForm.h"
#include "store/BuiltInForms.h"

namespace mv {

namespace {

constexpr int kWidth = 3050;   // twips
constexpr int kHeight = 3600;  // twips

enum Column { kName, kType, kDescription, kId };

}  // namespace

frmFormManager::frmFormManager() : ListWindow(kFormManager, kWidth, kHeight) {
  setObjectName("frmFormManager");
  list().setObjectName("lvwForms");
  list().setColumns({{"Name", 110}, {"Type", 100}, {"Description", 220}, {"Id", 0, true}});
  setIdColumn(kId);
  const RecordButtons buttons = addRecordButtons("form");
  edit_ = buttons.edit;
  delete_ = buttons.remove;
  connect(&list(), &ListView::rowChosen, this, [this] { run([this] { buildWorkingLists("cannotmodify"); }); });
  load();
}

void frmFormManager::buildWorkingLists(const std::string& command, long id) {
  ListWindow::buildWorkingLists(command, id);
  // A rebuild may end with no form chosen.
  if (command != "cannotmodify" && command != "init") return;
  for (QToolButton* button : {edit_, delete_}) button->defaultAction()->setEnabled(!isAuthenticationForm(chosenId()));
}

void frmFormManager::fillList() {
  Recordset rows = gDatabase.query("select id, name, description, form_type from form where name <> " +
                                   quoted(kNoLoginFormName) + " order by id");
  for (; !rows.endOfRows(); rows.moveNext())
    list().addRow({toQString(rows.text("name")), toQString(rows.text("form_type")), toQString(rows.text("description")),
                   toQString(rows.text("id"))});
}

void frmFormManager::openNew() {
  auto* editor = new frmNewForm;
  editor->Mode = "new";
  editor->setCaption("New Form");
  editor->open();
}

void frmFormManager::editChosen() {
  if (list().rowCount() == 0) {
    showMessage(this, applicationTitle(), "There are no forms to edit.", MessageIcon::None);
    return;
  }
  const int row = chosenRow();
  if (row < 0 || isAuthenticationForm(chosenId())) return;
  auto* editor = new frmNewForm;
  editor->Mode = "edit";
  editor->FormID = static_cast<std::int32_t>(chosenId());
  editor->FormType = list().cell(row, kType);
  editor->Description = list().cell(row, kDescription);
  editor->Name = chosenText();
  editor->setCaption("Edit Form: " + chosenText());
  editor->open();
}

void frmFormManager::deleteChosen() {
  if (chosenRow() < 0) {
    showMessage(this, "No Form Selected", "Please select a form to delete. ", MessageIcon::Information);
    return;
  }
  if (isAuthenticationForm(chosenId())) return;
  const Literal id = number(chosenId());
  gDatabase.execute("delete from form where id = " + id);
  gDatabase.execute("delete from field_info where form_id = " + id);
  gDatabase.execute("delete from site_form_xref where form_id = " + id);
  buildWorkingLists("init");
}

}  // namespace mv
