#include "frmNewForm.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "desktop/ListView.h"
#include "frmNewField.h"
#include "store/BuiltInForms.h"
#include "store/FormStore.h"
#include "windows/ChoiceBox.h"
#include "windows/EntryBox.h"
#include "windows/PageTabs.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr int kLowestList = 80;

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

QPushButton* makeButton(const char* name, const QString& caption) {
  auto* button = new QPushButton(caption);
  button->setObjectName(QString::fromLatin1(name));
  return button;
}

}  // namespace

frmNewForm::frmNewForm()
    : RecordEditor({.caption = "New Form",
                    .width = 4800,
                    .height = 4800,
                    .windowName = "frmNewForm",
                    .record = "form",
                    .manager = "Form Manager",
                    .rebuildsManager = true,
                    .sequence = "form_id"}) {
  auto* tabs = new PageTabs("SSTab1");
  tabs->addTab(makeGeneralPage(), "&General Information");
  tabs->addTab(makeFieldsPage(), "Field Information");

  auto* rows = new QVBoxLayout(makeScrollingPage(this));
  rows->addWidget(tabs, 1);
  rows->addLayout(makeButtons("cmdOK", "cmdApply", "cmdCancel", "&OK", "&Cancel"));
  startIn(txtName_);
}

QWidget* frmNewForm::makeGeneralPage() {
  auto* page = new QWidget;
  txtName_ = new EntryBox("txtName", EntryBox::Accepts::NoQuoteKeys, page);
  txtDescription_ = new EntryBox("txtDescription", EntryBox::Accepts::NoQuoteKeys, page);
  cmboFormType_ = new ChoiceBox("cmboFormType", page);
  cmboFormType_->addItems({"Authentication", "Query"});
  cmboFormType_->setCurrentIndex(-1);

  auto* grid = new QGridLayout(page);
  const auto addRow = [&](int row, const char* name, const QString& caption, QWidget* buddy) {
    grid->addWidget(makeLabel(name, caption, buddy), row, 0);
    grid->addWidget(buddy, row, 1);
  };
  addRow(0, "lblName", "Name", txtName_);
  addRow(1, "lblDescription", "Description", txtDescription_);
  addRow(2, "lblFormType", "Form Type", cmboFormType_);
  grid->setRowStretch(3, 1);
  return page;
}

ListView* frmNewForm::makeFieldList() {
  lvwFields_ = new ListView;
  lvwFields_->setObjectName("lvwFields");
  lvwFields_->setAccessibleName("Fields");
  lvwFields_->setMinimumHeight(kLowestList);
  lvwFields_->setColumns({{"Name", 12},
                          {"Id", 4},
                          {"Form Id", 4},
                          {"Logical Number", 4},
                          {"Search String", 14},
                          {"Supplied by User", 4},
                          {"Prompt", 12},
                          {"Field Name", 10},
                          {"Field Value", 12}});
  connect(lvwFields_, &ListView::rowChosen, this, [this](int row) { run([&] { chooseField(row); }); });
  connect(lvwFields_, &ListView::rowActivated, this, [this](int row) {
    run([&] {
      chooseField(row);
      openEditField();
    });
  });
  connect(lvwFields_, &ListView::deletePressed, this, [this] { run([this] { deleteField(); }); });
  return lvwFields_;
}

QWidget* frmNewForm::makeFieldsPage() {
  auto* page = new QWidget;
  auto* rows = new QVBoxLayout(page);
  rows->addWidget(makeFieldList(), 1);
  auto* cmdNewField = makeButton("cmdNewField", "&New Field");
  cmdEditField_ = makeButton("cmdEditField", "&Edit Field");
  cmdDeleteField_ = makeButton("cmdDeleteField", "&Delete Field");
  connect(cmdNewField, &QPushButton::clicked, this, [this] { run([this] { openNewField(); }); });
  connect(cmdEditField_, &QPushButton::clicked, this, [this] { run([this] { openEditField(); }); });
  connect(cmdDeleteField_, &QPushButton::clicked, this, [this] { run([this] { deleteField(); }); });
  enableFieldButtons();

  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {cmdNewField, cmdEditField_, cmdDeleteField_}) buttons->addWidget(button);
  rows->addLayout(buttons);
  return page;
}

void frmNewForm::initWindow() {
  txtName_->setText(Name);
  txtDescription_->setText(Description);
  txtDescription_->setCursorPosition(0);  // a long one shows its start
  RecordEditor::initWindow();
  buildWorkingLists("fields");
}

void frmNewForm::activated() {
  RecordEditor::activated();
  buildWorkingLists("fields");
}

void frmNewForm::buildWorkingLists(const std::string& command, long) {
  // Without regard to case, as the database finds it.
  if (command == "formtype") cmboFormType_->setCurrentIndex(cmboFormType_->findText(FormType, Qt::MatchFixedString));
  if (command == "fields") fillFields();
}

void frmNewForm::fillFields() {
  lvwFields_->clearRows();
  for (const FormField& field : listFormFields(FormID))
    lvwFields_->addRow({toQString(field.name), QString::number(field.id), QString::number(field.formId),
                        toQString(field.logicalNumber), toQString(field.searchString),
                        toQString(yesNo(field.suppliedByUser)), toQString(field.prompt), toQString(field.fieldName),
                        toQString(field.fieldValue)});
  const int row = lvwFields_->findRow(kId, QString::number(fieldId_));
  if (row >= 0)
    lvwFields_->setRowSelected(row, true);
  else
    fieldId_ = 0;
  enableFieldButtons();
}

void frmNewForm::chooseField(int row) {
  fieldId_ = lvwFields_->cell(row, kId).toLongLong();
  enableFieldButtons();
}

int frmNewForm::chosenRow() const {
  const int row = lvwFields_->findRow(kId, QString::number(fieldId_));
  return row >= 0 && lvwFields_->isRowSelected(row) ? row : -1;
}

void frmNewForm::enableFieldButtons() {
  for (QPushButton* button : {cmdEditField_, cmdDeleteField_})
    button->setEnabled(fieldId_ != 0 && lvwFields_->rowCount() > 0);
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
  editor->setCaption("New Field for: " + txtName_->text());
  editor->open();
}

void frmNewForm::openEditField() {
  if (!isStored()) return;
  const int row = chosenRow();
  if (row < 0) return;
  const auto cell = [&](Column column) { return lvwFields_->cell(row, column); };
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
  const bool unnamed = txtName_->text().isEmpty();
  const Check reserved = {standsForNoLogin(toUtf8(txtName_->text())), "Error",
                          "This name stands for no login. Please enter another name.", txtName_};
  if (choice == Choice::Apply) return {{unnamed, "Error", "Please enter a name", txtName_}, reserved};
  return {{unnamed, "Name Not Entered", "Please click the General Information tab and enter a Name", txtName_},
          {cmboFormType_->currentIndex() < 0, "Form Type Not Defined",
           "Please click the General  Information tab and select a Form Type", cmboFormType_},
          reserved};
}

Form frmNewForm::record() const {
  // Apply asks for no type: one that is not in the list stays.
  const QString type = cmboFormType_->currentIndex() < 0 ? FormType : cmboFormType_->currentText();
  return {FormID, toUtf8(txtName_->text()), toUtf8(txtDescription_->text()), toUtf8(type)};
}

void frmNewForm::insertRecord() { insertForm(record()); }

bool frmNewForm::updateRecord() { return updateForm(record()); }

void frmNewForm::deleteRecord() { deleteForm(FormID); }

}  // namespace mv
