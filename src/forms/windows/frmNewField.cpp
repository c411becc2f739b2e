#include "forms_windows/frmNewField.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "forms_windows/frmFormManager.h"
#include "store/Sequence.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 4800;   // twips
constexpr int kHeight = 3600;  // twips
// With these all controls are seen at the window's first size.
constexpr QMargins kTightMargins(9, 6, 9, 6);
constexpr int kTightSpacing = 3;
constexpr int kButtonSpacing = 6;
constexpr const char* kSequence = "field_info_id";

// A whole number in its usual writing; any other text as the user wrote it.
QString numberText(const QString& text) {
  bool isNumber = false;
  const qlonglong number = text.toLongLong(&isNumber);
  return isNumber ? QString::number(number) : text;
}

}  // namespace

frmNewField::frmNewField() : EditorWindow(QString(), kWidth, kHeight) {
  setObjectName("frmNewField");
  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->setContentsMargins(kTightMargins);
  grid->setVerticalSpacing(kTightSpacing);
  txtName_ = addBox(*grid, "lblName", "Name", "txtName");
  txtFieldNumber_ = addBox(*grid, "lblLogicalNumber", "Logical Number", "txtFieldNumber");
  txtSearchString_ = addBox(*grid, "lblSearchString", "Search String", "txtSearchString");
  txtPrompt_ = addBox(*grid, "lblPrompt", "Prompt", "txtPrompt");
  txtFieldName_ = addBox(*grid, "lblFieldName", "Field Name", "txtFieldName");
  txtFieldValue_ = addBox(*grid, "lblValue", "Value", "txtFieldValue");
  chkSuppliedByUser_ = new QCheckBox("Supplied by user", this);
  chkSuppliedByUser_->setObjectName("chkSuppliedByUser");
  connect(chkSuppliedByUser_, &QCheckBox::toggled, this, [this](bool ticked) { SuppliedByUser = yesNo(ticked); });
  grid->addWidget(chkSuppliedByUser_, grid->rowCount(), 1);
  grid->setRowStretch(grid->rowCount(), 1);
  QHBoxLayout* buttons = makeButtons("cmdOK", QString(), "cmdCancel", "&OK", "&Cancel");
  buttons->setSpacing(kButtonSpacing);
  grid->addLayout(buttons, grid->rowCount(), 0, 1, 2);
}

QLineEdit* frmNewField::addBox(QGridLayout& grid, const char* labelName, const QString& caption, const char* boxName) {
  auto* box = new QLineEdit(this);
  box->setObjectName(QString::fromLatin1(boxName));
  const int row = grid.rowCount();
  grid.addWidget(makeLabel(labelName, caption, box), row, 0);
  grid.addWidget(box, row, 1);
  return box;
}

void frmNewField::initWindow() {
  txtName_->setFocus();
  if (Mode == "new") {
    FieldID = nextSequenceValue(kSequence);
    return;
  }
  chkSuppliedByUser_->setChecked(SuppliedByUser != "no");
  txtFieldValue_->setText(FieldValue);
  txtFieldName_->setText(FieldName);
  txtPrompt_->setText(Prompt);
  txtSearchString_->setText(SearchString);
  txtFieldNumber_->setText(numberText(LogicalNumber));
  txtName_->setText(Name);
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->setCursorPosition(0);  // long texts show their start
}

bool frmNewField::accept() {
  if (txtName_->text().isEmpty()) {
    showMessage(this, "Name Not Entered", "Please enter a Name", MessageIcon::Exclamation);
    return false;
  }
  if (!save()) return false;
  WindowRegistry::instance().tell(kFormManager, "init");
  return true;
}

// False, after a message, when there is nothing to save to.
bool frmNewField::save() { return Mode == "edit" ? updateRow() : insertRow(); }

std::vector<frmNewField::Value> frmNewField::values() const {
  return {{"name", quoted(toUtf8(txtName_->text()))},
          {"logical_number", quoted(toUtf8(txtFieldNumber_->text()))},
          {"search_string", quoted(toUtf8(txtSearchString_->text()))},
          {"supplied_by_user", quoted(SuppliedByUser)},
          {"prompt", quoted(toUtf8(txtPrompt_->text()))},
          {"field_name", quoted(toUtf8(txtFieldName_->text()))},
          {"field_value", quoted(toUtf8(txtFieldValue_->text()))}};
}

bool frmNewField::insertRow() {
  const Literal form = number(FormID);
  if (gDatabase.count("select count(*) as outCount from form where id = " + form) == 0)
    return refuse("The form of this field has been deleted meanwhile. The field was not saved.");
  if (FieldID == 0) FieldID = nextSequenceValue(kSequence);
  if (FieldID == 0) return false;
  Statement columns = "id, form_id";
  Statement texts = number(FieldID) + ", " + form;
  for (const auto& [column, text] : values()) {
    columns += ", " + column;
    texts += ", " + text;
  }
  gDatabase.execute("insert into field_info (" + columns + ") values (" + texts + ")");
  return true;
}

bool frmNewField::updateRow() {
  Statement assignments = "update field_info set ";
  SqlText separator = "";
  for (const auto& [column, text] : values()) {
    assignments += separator + column + " = " + text;
    separator = ", ";
  }
  gDatabase.execute(assignments + " where id = " + number(FieldID));
  if (gDatabase.rowsAffected() > 0) return true;
  return refuse("This field has been deleted meanwhile. It was not saved.");
}

bool frmNewField::refuse(const QString& text) {
  showMessage(this, applicationTitle(), text, MessageIcon::Exclamation);
  return false;
}

}  // namespace mv
