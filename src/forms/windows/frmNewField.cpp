#include "frmNewField.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "app/Settings.h"
#include "base/Text.h"
#include "store/FormStore.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

// With these all controls are seen at the window's first size.
constexpr QMargins kTightMargins(9, 6, 9, 6);
constexpr int kTightSpacing = 3;
constexpr int kButtonSpacing = 6;

// A whole number in its usual writing; any other text as the user wrote it.
QString numberText(const QString& text) {
  bool isNumber = false;
  const qlonglong number = text.toLongLong(&isNumber);
  return isNumber ? QString::number(number) : text;
}

}  // namespace

frmNewField::frmNewField()
    : RecordEditor({.width = 4800,
                    .height = 3600,
                    .windowName = "frmNewField",
                    .record = "field",
                    .manager = "Form Manager",
                    .rebuildsManager = true,
                    .sequence = "field_info_id"}) {
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
  startIn(txtName_);
}

QLineEdit* frmNewField::addBox(QGridLayout& grid, const char* labelName, const QString& caption, const char* boxName) {
  auto* box = new QLineEdit(this);
  box->setObjectName(QString::fromLatin1(boxName));
  const int row = grid.rowCount();
  grid.addWidget(makeLabel(labelName, caption, box), row, 0);
  grid.addWidget(box, row, 1);
  return box;
}

void frmNewField::loadRecord() {
  chkSuppliedByUser_->setChecked(SuppliedByUser != "no");
  txtFieldValue_->setText(FieldValue);
  txtFieldName_->setText(FieldName);
  txtPrompt_->setText(Prompt);
  txtSearchString_->setText(SearchString);
  txtFieldNumber_->setText(numberText(LogicalNumber));
  txtName_->setText(Name);
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->setCursorPosition(0);  // long texts show their start
}

RecordEditor::Checks frmNewField::checks(Choice) const {
  return {{txtName_->text().isEmpty(), "Name Not Entered", "Please enter a Name", txtName_},
          {isNew() && !hasForm(FormID), nullptr,
           "The form of this field has been deleted meanwhile. The field was not saved."}};
}

FormField frmNewField::record() const {
  return {FieldID,
          FormID,
          toUtf8(txtName_->text()),
          toUtf8(txtFieldNumber_->text()),
          toUtf8(txtSearchString_->text()),
          isYes(SuppliedByUser),
          toUtf8(txtPrompt_->text()),
          toUtf8(txtFieldName_->text()),
          toUtf8(txtFieldValue_->text())};
}

void frmNewField::insertRecord() { insertFormField(record()); }

bool frmNewField::updateRecord() { return updateFormField(record()); }

}  // namespace mv
