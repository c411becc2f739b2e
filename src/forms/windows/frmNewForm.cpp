#include "frmNewForm.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "frmNewField.h"
#include "store/BuiltInForms.h"
#include "store/FormStore.h"
#include "ui_frmNewForm.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

enum Column {
  kName,
  kId,
  kFormId,
  kLogicalNumber,
  kSearchString,
  kSuppliedByUser,
  kPrompt,
  kFieldName,
  kFieldValue,
};

QStringList textsOf(const FormField& field) {
  return {toQString(field.name),          QString::number(field.id),     QString::number(field.formId),
          toQString(field.logicalNumber), toQString(field.searchString), toQString(yesNo(field.suppliedByUser)),
          toQString(field.prompt),        toQString(field.fieldName),    toQString(field.fieldValue)};
}

}  // namespace

frmNewForm::frmNewForm()
    : RecordEditor({.width = 4800,
                    .height = 4800,
                    .record = "form",
                    .manager = "Form Manager",
                    .rebuildsManager = true,
                    .sequence = "form_id"}),
      ui_(std::make_unique<Ui::frmNewForm>()) {
  ui_->setupUi(this);
  connectButtons(ui_->cmdOK, ui_->cmdApply, ui_->cmdCancel);
  startIn(ui_->txtName);
  ui_->lvwFields->setColumns({{"Name", 12},
                              {"Id", 4},
                              {"Form Id", 4},
                              {"Logical Number", 4},
                              {"Search String", 14},
                              {"Supplied by User", 4},
                              {"Prompt", 12},
                              {"Field Name", 10},
                              {"Field Value", 12}});
  connectFields();
}

frmNewForm::~frmNewForm() = default;

void frmNewForm::connectFields() {
  connect(ui_->lvwFields, &ListView::rowChosen, this, [this](int row) { run([&] { chooseField(row); }); });
  connect(ui_->lvwFields, &ListView::rowActivated, this, [this](int row) {
    run([&] {
      chooseField(row);
      openEditField();
    });
  });
  connect(ui_->lvwFields, &ListView::deletePressed, this, [this] { run([this] { deleteField(); }); });
  connect(ui_->cmdNewField, &QPushButton::clicked, this, [this] { run([this] { openNewField(); }); });
  connect(ui_->cmdEditField, &QPushButton::clicked, this, [this] { run([this] { openEditField(); }); });
  connect(ui_->cmdDeleteField, &QPushButton::clicked, this, [this] { run([this] { deleteField(); }); });
}

void frmNewForm::initWindow() {
  ui_->txtName->setText(Name);
  ui_->txtDescription->setText(Description);
  ui_->txtDescription->setCursorPosition(0);  // a long one shows its start
  RecordEditor::initWindow();
}

// Opened, too.
void frmNewForm::activated() {
  RecordEditor::activated();
  buildWorkingLists("fields");
}

void frmNewForm::buildWorkingLists(const std::string& command, long) {
  // Without regard to case, as the database finds it.
  if (command == "formtype")
    ui_->cmboFormType->setCurrentIndex(ui_->cmboFormType->findText(FormType, Qt::MatchFixedString));
  if (command == "fields") fillFields();
}

void frmNewForm::fillFields() {
  ui_->lvwFields->setRows(rowsOf(listFormFields(FormID), textsOf));
  const int row = ui_->lvwFields->findRow(kId, QString::number(fieldId_));
  if (row >= 0)
    ui_->lvwFields->setRowSelected(row, true);
  else
    fieldId_ = 0;
  enableFieldButtons();
}

void frmNewForm::chooseField(int row) {
  fieldId_ = ui_->lvwFields->cell(row, kId).toLongLong();
  enableFieldButtons();
}

int frmNewForm::chosenRow() const {
  const int row = ui_->lvwFields->findRow(kId, QString::number(fieldId_));
  return row >= 0 && ui_->lvwFields->isRowSelected(row) ? row : -1;
}

void frmNewForm::enableFieldButtons() {
  for (QPushButton* button : {ui_->cmdEditField, ui_->cmdDeleteField})
    button->setEnabled(fieldId_ != 0 && ui_->lvwFields->rowCount() > 0);
}

bool frmNewForm::isStored() {
  if (!isNew()) return true;
  showMessage(this, "Must save before changing field info",
              "Please click the Apply button before modifying field information.", MessageIcon::Information);
  return false;
}

void frmNewForm::openNewField() {
  if (!isStored()) return;
  auto* editor = new frmNewField;
  editor->Mode = "new";
  editor->FormID = FormID;
  editor->setCaption("New Field for: " + ui_->txtName->text());
  editor->open();
}

void frmNewForm::openEditField() {
  if (!isStored()) return;
  const int row = chosenRow();
  if (row < 0) return;
  const auto cell = [&](Column column) { return ui_->lvwFields->cell(row, column); };
  auto* editor = new frmNewField;
  editor->Mode = "edit";
  editor->FormID = FormID;
  editor->FieldID = fieldId_;
  editor->Name = cell(kName);
  editor->LogicalNumber = cell(kLogicalNumber);
  editor->SearchString = cell(kSearchString);
  editor->SuppliedByUser = toUtf8(cell(kSuppliedByUser));
  editor->Prompt = cell(kPrompt);
  editor->FieldName = cell(kFieldName);
  editor->FieldValue = cell(kFieldValue);
  editor->setCaption("Edit Field: " + editor->Name);
  editor->open();
}

void frmNewForm::deleteField() {
  if (chosenRow() < 0) return;
  deleteFormField(fieldId_, FormID);
  buildWorkingLists("fields");
}

RecordEditor::Checks frmNewForm::checks(Choice choice) const {
  const bool unnamed = ui_->txtName->text().isEmpty();
  const Check reserved = {standsForNoLogin(toUtf8(ui_->txtName->text())), "Error",
                          "This name stands for no login. Please enter another name.", ui_->txtName};
  if (choice == Choice::Apply) return {{unnamed, "Error", "Please enter a name", ui_->txtName}, reserved};
  return {{unnamed, "Name Not Entered", "Please click the General Information tab and enter a Name", ui_->txtName},
          {ui_->cmboFormType->currentIndex() < 0, "Form Type Not Defined",
           "Please click the General  Information tab and select a Form Type", ui_->cmboFormType},
          reserved};
}

Form frmNewForm::record() const {
  // Apply asks for no type: one that is not in the list stays.
  const QString type = ui_->cmboFormType->currentIndex() < 0 ? FormType : ui_->cmboFormType->currentText();
  return {FormID, toUtf8(ui_->txtName->text()), toUtf8(ui_->txtDescription->text()), toUtf8(type)};
}

void frmNewForm::insertRecord() { insertForm(record()); }

bool frmNewForm::updateRecord() { return updateForm(record()); }

void frmNewForm::deleteRecord() { deleteForm(FormID); }

}  // namespace mv
