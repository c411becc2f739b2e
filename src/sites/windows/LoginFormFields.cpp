#include "LoginFormFields.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>
#include <algorithm>

#include "base/Text.h"
#include "store/BuiltInForms.h"
#include "windows/ScrollingPage.h"

namespace mv {

LoginFormFields::LoginFormFields() {
  cmboAuthenticationService_ = new QComboBox(this);
  cmboAuthenticationService_->setObjectName("cmboAuthenticationService");
  cmboAuthenticationService_->setAccessibleName("Method");
  cmboAuthenticationService_->installEventFilter(this);
  auto* label = new QLabel("Method", this);
  label->setBuddy(cmboAuthenticationService_);

  auto* method = new QHBoxLayout;
  method->addWidget(label);
  method->addWidget(cmboAuthenticationService_, 1);

  auto* layout = new QVBoxLayout(makeScrollingPage(this));
  layout->addLayout(method);
  layout->addWidget(makeRows());
  layout->addWidget(makeHelp());
  layout->addStretch();
  hideRows();

  connect(cmboAuthenticationService_, &QComboBox::activated, this, &LoginFormFields::entryChosen);
}

QWidget* LoginFormFields::makeRows() {
  auto* rows = new QWidget(this);
  auto* grid = new QGridLayout(rows);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(1, 2);
  for (int i = 0; i < kRows; ++i) {
    auto* label = new QLabel(rows);
    auto* box = new QLineEdit(rows);
    label->setObjectName(QString("lblFieldName%1").arg(i + 1));
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    box->setObjectName(QString("txtFieldName%1").arg(i + 1));
    grid->addWidget(label, i, 0);
    grid->addWidget(box, i, 1);
    lblFieldName_[static_cast<std::size_t>(i)] = label;
    txtFieldName_[static_cast<std::size_t>(i)] = box;
  }
  return rows;
}

QWidget* LoginFormFields::makeHelp() {
  frmFieldHelp_ = new QGroupBox("Cryptic Information That Won't Help You", this);
  frmFieldHelp_->setObjectName("frmFieldHelp");
  txtFieldHelp_ = new QLabel(frmFieldHelp_);
  txtFieldHelp_->setObjectName("txtFieldHelp");
  txtFieldHelp_->setWordWrap(true);
  txtFieldHelp_->setTextFormat(Qt::PlainText);
  txtFieldHelp_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* layout = new QVBoxLayout(frmFieldHelp_);
  layout->addWidget(txtFieldHelp_);
  return frmFieldHelp_;
}

bool LoginFormFields::eventFilter(QObject* watched, QEvent* event) {
  // Scrolling over the drop-down list must not choose another form and so drop the values typed.
  if (watched == cmboAuthenticationService_ && event->type() == QEvent::Wheel) {
    event->ignore();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

void LoginFormFields::buildForms() {
  const std::vector<NamedId> forms = listLoginForms();
  if (forms.empty()) return;
  cmboAuthenticationService_->clear();
  for (const NamedId& form : forms)
    cmboAuthenticationService_->addItem(toQString(form.name), QVariant::fromValue(form.id));
  cmboAuthenticationService_->setCurrentIndex(-1);
}

void LoginFormFields::loadSite(Id siteId) {
  const Id savedFormId = siteLoginForm(siteId);
  const std::vector<SiteFieldValue> values = loadSiteFieldValues(siteId);
  if (values.empty()) return;
  loadPrompts(savedFormId);
  chosenFormId_ = savedFormId;
  // The first entry is the one for no login.
  for (int entry = 1; entry < cmboAuthenticationService_->count(); ++entry) {
    if (cmboAuthenticationService_->itemData(entry).toLongLong() != chosenFormId_) continue;
    cmboAuthenticationService_->setCurrentIndex(entry);
    choose(entry);
    break;
  }
  // Values belong to the rows by position, as they were saved.
  for (std::size_t i = 0; i < std::min<std::size_t>(kRows, values.size()); ++i)
    txtFieldName_[i]->setText(toQString(values[i].value));
}

void LoginFormFields::choose(int entry) {
  const Id formId = cmboAuthenticationService_->itemData(entry).toLongLong();
  if (formId == kNoLoginForm)
    hideRows();
  else
    loadPrompts(formId);
  chosenFormId_ = formId;
}

void LoginFormFields::loadPrompts(Id formId) {
  const auto description = findLoginFormDescription(formId);
  std::vector<LoginPrompt> prompts = listLoginPrompts(formId);
  if (description) txtFieldHelp_->setText(toQString(*description));
  fieldInfo_ = std::move(prompts);
  hideRows();
  showRows();
}

void LoginFormFields::hideRows() {
  frmFieldHelp_->hide();
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
    frmFieldHelp_->show();
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
