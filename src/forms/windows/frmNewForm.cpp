#include "forms_windows/frmNewForm.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QTabWidget>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "desktop/ListView.h"
#include "forms_windows/frmFormManager.h"
#include "forms_windows/frmNewField.h"
#include "store/Sequence.h"
#include "windows/ChoiceBox.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 4800;   // twips
constexpr int kHeight = 4800;  // twips
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

frmNewForm::frmNewForm() : EditorWindow(QString(), kWidth, kHeight) {
  setObjectName("frmNewForm");
  auto* tabs = new QTabWidget;
  tabs->setObjectName("SSTab1");
  tabs->addTab(makeGeneralPage(), "&General Information");
  tabs->addTab(makeFieldsPage(), "Field Information");

  auto* rows = new QVBoxLayout(makeScrollingPage(this));
  rows->addWidget(tabs, 1);
  rows->addLayout(makeButtons("cmdOK", "cmdApply", "cmdCancel", "&OK", "&Cancel"));
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
  lvwFields_->setColumns({{"Name", 100},
                          {"Id", 40},
                          {"Form Id", 60},
                          {"Logical Number", 105},
                          {"Search String", 160},
                          {"Supplied by User", 115},
                          {"Prompt", 110},
                          {"Field Name", 90},
                          {"Field Value", 160}});
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
  txtName_->setFocus();
  txtName_->setText(Name);
  txtDescription_->setText(Description);
  txtDescription_->setCursorPosition(0);  // a long one shows its start
  if (Mode == "new") FormID = nextSequenceValue("form_id");
  buildWorkingLists("fields");
  if (Mode == "edit") buildWorkingLists("formtype");
}

void frmNewForm::activated() {
  EditorWindow::activated();
  buildWorkingLists("fields");
}

void frmNewForm::buildWorkingLists(const std::string& command, long) {
  // Without regard to case, as the database finds it.
  if (command == "formtype") cmboFormType_->setCurrentIndex(cmboFormType_->findText(FormType, Qt::MatchFixedString));
  if (command == "fields") fillFields();
}

void frmNewForm::fillFields() {
  lvwFields_->clearRows();
  Recordset rows = gDatabase.query(
      "select id, form_id, name, logical_number, search_string, supplied_by_user, prompt, field_name, field_value from "
      "field_info where form_id = " +
      number(FormID));
  for (; !rows.endOfRows(); rows.moveNext()) {
    QStringList texts;
    for (const char* column : {"name", "id", "form_id", "logical_number", "search_string", "supplied_by_user", "prompt",
                               "field_name", "field_value"})
      texts << toQString(rows.text(column));
    lvwFields_->addRow(texts);
  }
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
  if (Mode != "new") return true;
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
  gDatabase.execute("delete from field_info where id = " + number(fieldId_) + " and  form_id = " + number(FormID));
  buildWorkingLists("fields");
}

bool frmNewForm::accept() {
  if (txtName_->text().isEmpty()) {
    showMessage(this, "Name Not Entered", "Please click the General Information tab and enter a Name",
                MessageIcon::Exclamation);
    return false;
  }
  if (cmboFormType_->currentIndex() < 0) {
    showMessage(this, "Form Type Not Defined", "Please click the General  Information tab and select a Form Type",
                MessageIcon::Exclamation);
    return false;
  }
  return save();
}

void frmNewForm::apply() {
  if (txtName_->text().isEmpty()) {
    showMessage(this, "Error", "Please enter a name", MessageIcon::Exclamation);
    return;
  }
  if (!save() || Mode != "new") return;
  Mode = "edit";
  savedOnce_ = true;
}

bool frmNewForm::save() {
  if (!writeRow()) return false;
  WindowRegistry::instance().tell(kFormManager, "init");
  return true;
}

bool frmNewForm::writeRow() {
  const Literal name = quoted(toUtf8(txtName_->text()));
  const Literal description = quoted(toUtf8(txtDescription_->text()));
  // Apply asks for no type: one that is not in the list stays.
  const Literal type = quoted(toUtf8(cmboFormType_->currentIndex() < 0 ? FormType : cmboFormType_->currentText()));
  if (Mode == "new") {
    if (FormID == 0) FormID = nextSequenceValue("form_id");
    if (FormID == 0) return false;
    gDatabase.execute("insert into form (id, name, description, form_type) values (" + number(FormID) + ", " + name +
                      ", " + description + ", " + type + ")");
    return true;
  }
  gDatabase.execute("update form set name = " + name + ", description = " + description + ", form_type = " + type +
                    " where id = " + number(FormID));
  if (gDatabase.rowsAffected() > 0) return true;
  showMessage(this, applicationTitle(), "This form has been deleted meanwhile. It was not saved.",
              MessageIcon::Exclamation);
  return false;
}

void frmNewForm::cancel() {
  if (!savedOnce_) return;
  const Literal id = number(FormID);
  gDatabase.execute("delete from form where id = " + id);
  gDatabase.execute("delete from field_info where form_id= " + id);
  gDatabase.execute("delete from site_form_xref where form_id = " + id);
  WindowRegistry::instance().tell(kFormManager, "init");
}

}  // namespace mv
