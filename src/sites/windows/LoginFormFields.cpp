#include "LoginFormFields.h"

#include <QEvent>
#include <algorithm>

#include "base/Text.h"
#include "store/BuiltInForms.h"
#include "ui_LoginFormFields.h"

namespace mv {

LoginFormFields::LoginFormFields(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::LoginFormFields>()) {
  ui_->setupUi(this);
  lblFieldName_ = {ui_->lblFieldName1, ui_->lblFieldName2, ui_->lblFieldName3, ui_->lblFieldName4, ui_->lblFieldName5};
  txtFieldName_ = {ui_->txtFieldName1, ui_->txtFieldName2, ui_->txtFieldName3, ui_->txtFieldName4, ui_->txtFieldName5};
  ui_->cmboAuthenticationService->installEventFilter(this);
  hideRows();
  connect(ui_->cmboAuthenticationService, &QComboBox::activated, this, &LoginFormFields::entryChosen);
}

LoginFormFields::~LoginFormFields() = default;

bool LoginFormFields::eventFilter(QObject* watched, QEvent* event) {
  // Scrolling over the drop-down list must not choose another form and so drop the values typed.
  if (watched == ui_->cmboAuthenticationService && event->type() == QEvent::Wheel) {
    event->ignore();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void LoginFormFields::buildForms() {
  std::vector<NamedId> forms = listLoginForms();
  if (forms.empty()) return;
  QStringList names;
  for (const NamedId& form : forms) names << toQString(form.name);
  forms_ = std::move(forms);
  ui_->cmboAuthenticationService->clear();
  ui_->cmboAuthenticationService->addItems(names);
  ui_->cmboAuthenticationService->setCurrentIndex(-1);
}

void LoginFormFields::loadSite(Id siteId) {
  const Id savedFormId = siteLoginForm(siteId);
  const std::vector<SiteFieldValue> values = loadSiteFieldValues(siteId);
  if (values.empty()) return;
  loadPrompts(savedFormId);
  chosenFormId_ = savedFormId;
  // The first entry is the one for no login.
  for (std::size_t i = 1; i < forms_.size(); ++i) {
    if (forms_[i].id != chosenFormId_) continue;
    ui_->cmboAuthenticationService->setCurrentIndex(static_cast<int>(i));
    choose(static_cast<int>(i));
    break;
  }
  // Values belong to the rows by position, as they were saved.
  for (std::size_t i = 0; i < std::min<std::size_t>(kRows, values.size()); ++i)
    txtFieldName_[i]->setText(toQString(values[i].value));
}

void LoginFormFields::choose(int entry) {
  const Id formId = entry < 0 ? 0 : forms_[static_cast<std::size_t>(entry)].id;
  if (formId == kNoLoginForm)
    hideRows();
  else
    loadPrompts(formId);
  chosenFormId_ = formId;
}

void LoginFormFields::loadPrompts(Id formId) {
  const auto description = findLoginFormDescription(formId);
  std::vector<LoginPrompt> prompts = listLoginPrompts(formId);
  if (description) ui_->txtFieldHelp->setText(toQString(*description));
  fieldInfo_ = std::move(prompts);
  hideRows();
  showRows();
}

void LoginFormFields::hideRows() {
  ui_->frmFieldHelp->hide();
  for (QLabel* label : lblFieldName_) {
    label->clear();
    label->hide();
  }
  for (QLineEdit* box : txtFieldName_) {
    box->clear();
    box->setEchoMode(QLineEdit::Normal);
    box->hide();
  }
}

void LoginFormFields::showRows() {
  for (std::size_t i = 0; i < static_cast<std::size_t>(shownPrompts()); ++i) {
    const QString prompt = toQString(fieldInfo_[i].prompt);
    ui_->frmFieldHelp->show();
    lblFieldName_[i]->setText(prompt);
    txtFieldName_[i]->setText(toQString(fieldInfo_[i].defaultValue));
    txtFieldName_[i]->setAccessibleName(prompt);
    // What stands behind such a prompt is nobody's business who looks over the user's shoulder.
    if (prompt.contains("password", Qt::CaseInsensitive)) txtFieldName_[i]->setEchoMode(QLineEdit::Password);
    lblFieldName_[i]->show();
    txtFieldName_[i]->show();
  }
}

int LoginFormFields::shownPrompts() const { return std::min(kRows, static_cast<int>(fieldInfo_.size())); }

std::vector<SiteFieldValue> LoginFormFields::fieldValues() const {
  std::vector<SiteFieldValue> values;
  for (std::size_t i = 0; i < static_cast<std::size_t>(shownPrompts()); ++i)
    values.push_back({fieldInfo_[i].fieldId, toUtf8(txtFieldName_[i]->text())});
  return values;
}

}  // namespace mv
