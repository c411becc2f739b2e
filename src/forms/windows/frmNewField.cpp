#include "frmNewField.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "store/FormStore.h"
#include "ui_frmNewField.h"

namespace mv {

namespace {

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
                    .record = "field",
                    .manager = "Form Manager",
                    .rebuildsManager = true,
                    .sequence = "field_info_id"}),
      ui_(std::make_unique<Ui::frmNewField>()) {
  ui_->setupUi(this);
  connectButtons(ui_->cmdOK, nullptr, ui_->cmdCancel);
  startIn(ui_->txtName);
  connect(ui_->chkSuppliedByUser, &QCheckBox::toggled, this, [this](bool ticked) { SuppliedByUser = yesNo(ticked); });
}

frmNewField::~frmNewField() = default;

void frmNewField::loadRecord() {
  ui_->chkSuppliedByUser->setChecked(SuppliedByUser != "no");
  ui_->txtFieldValue->setText(FieldValue);
  ui_->txtFieldName->setText(FieldName);
  ui_->txtPrompt->setText(Prompt);
  ui_->txtSearchString->setText(SearchString);
  ui_->txtFieldNumber->setText(numberText(LogicalNumber));
  ui_->txtName->setText(Name);
  for (QLineEdit* box : findChildren<QLineEdit*>()) box->setCursorPosition(0);  // long texts show their start
}

RecordEditor::Checks frmNewField::checks(Choice) const {
  return {{ui_->txtName->text().isEmpty(), "Name Not Entered", "Please enter a Name", ui_->txtName},
          {isNew() && !hasForm(FormID), nullptr,
           "The form of this field has been deleted meanwhile. The field was not saved."}};
}

FormField frmNewField::record() const {
  return {FieldID,
          FormID,
          toUtf8(ui_->txtName->text()),
          toUtf8(ui_->txtFieldNumber->text()),
          toUtf8(ui_->txtSearchString->text()),
          isYes(SuppliedByUser),
          toUtf8(ui_->txtPrompt->text()),
          toUtf8(ui_->txtFieldName->text()),
          toUtf8(ui_->txtFieldValue->text())};
}

void frmNewField::insertRecord() { insertFormField(record()); }

bool frmNewField::updateRecord() { return updateFormField(record()); }

}  // namespace mv
