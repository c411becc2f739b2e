#include "frmNewRule.h"

#include <QSignalBlocker>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/ToolTip.h"
#include "desktop/Dialogs.h"
#include "store/RuleOperators.h"
#include "store/RuleStore.h"
#include "ui_frmNewRule.h"

namespace mv {

namespace {

constexpr const char* kIgnore = "Ignore";
constexpr const char* kSaveTo = "Save To";

void fill(QComboBox& box, const std::vector<NamedId>& entries) {
  {
    // Left to itself a box chooses the first entry that it gets, which no user has done.
    const QSignalBlocker silent(box);
    box.clear();
    for (const NamedId& entry : entries) box.addItem(toQString(entry.name));
  }
  box.setCurrentIndex(-1);
}

// Chooses the entry with exactly that text, none when there is none.
void choose(QComboBox& box, const std::string& text) {
  box.setCurrentIndex(box.findText(toQString(text), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

}  // namespace

frmNewRule::frmNewRule()
    : RecordEditor({.width = 4800, .height = 3120, .record = "rule", .manager = "Rule Manager", .sequence = "rule_id"}),
      ui_(std::make_unique<Ui::frmNewRule>()) {
  ui_->setupUi(this);
  connectButtons(ui_->cmdOK, nullptr, ui_->cmdCancel);
  showNumberIn(ui_->lblId);
  startIn(ui_->cmboFields);
  for (const std::string_view op : kRuleOperators) ui_->cmboOperator->addItem(toQString(op));
  ui_->cmboOperator->setCurrentIndex(-1);
  // Shown once a rule type that may have a folder is chosen; their place is kept, so that nothing jumps.
  for (QWidget* part : {static_cast<QWidget*>(ui_->txtPath), static_cast<QWidget*>(ui_->cmdBrowse)}) {
    QSizePolicy policy = part->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    part->setSizePolicy(policy);
    part->hide();
  }
  connect(ui_->cmboRuleTypes, &QComboBox::currentIndexChanged, this, [this] { ruleTypeChosen(); });
  connect(ui_->txtPath, &QLineEdit::textChanged, ui_->txtPath,
          [this](const QString& text) { ui_->txtPath->setToolTip(plainToolTip(text)); });
  connect(ui_->cmdBrowse, &QPushButton::clicked, this, [this] { run([this] { browse(); }); });
}

frmNewRule::~frmNewRule() = default;

// --- loading

void frmNewRule::initWindow() {
  buildWorkingLists("fields");
  buildWorkingLists("ruletypes");
  RecordEditor::initWindow();
}

void frmNewRule::buildWorkingLists(const std::string& command, long) {
  if (command == "fields") fill(*ui_->cmboFields, listRuleFields());
  if (command == "ruletypes") fill(*ui_->cmboRuleTypes, listRuleTypes());
}

void frmNewRule::loadRecord() {
  const auto rule = findRule(RuleId);
  if (!rule) return;
  ui_->txtValue->setText(toQString(rule->searchValue));
  ui_->txtRuleName->setText(toQString(rule->name));
  choose(*ui_->cmboFields, ruleFieldName(rule->fieldId));
  choose(*ui_->cmboOperator, rule->ruleOperator);
  choose(*ui_->cmboRuleTypes, ruleTypeName(rule->typeId));
  // Behind the choice, which sets the default folder.
  ui_->txtPath->setText(toQString(rule->path));
  for (QLineEdit* box :
       {static_cast<QLineEdit*>(ui_->txtValue), static_cast<QLineEdit*>(ui_->txtRuleName), ui_->txtPath})
    box->setCursorPosition(0);
}

void frmNewRule::ruleTypeChosen() {
  const bool hasFolder = ui_->cmboRuleTypes->currentIndex() >= 0 && ui_->cmboRuleTypes->currentText() != kIgnore;
  ui_->txtPath->setVisible(hasFolder);
  ui_->cmdBrowse->setVisible(hasFolder);
  if (hasFolder) ui_->txtPath->setText(toQString(gDownloadFolder));
}

void frmNewRule::browse() {
  FolderRequest request;
  request.title = "Save To";
  request.prompt = "Select the folder that is kept with this rule.";
  request.initialFolder = ui_->txtPath->text().isEmpty() ? toQString(gDownloadFolder) : ui_->txtPath->text();
  request.owner = this;
  const auto folder = browseForFolder(request);
  if (folder && !isUnloaded()) ui_->txtPath->setText(*folder);
}

// --- saving

RecordEditor::Checks frmNewRule::checks(Choice) const {
  const bool savesTo = ui_->cmboRuleTypes->currentText() == kSaveTo;
  return {
      {ui_->txtRuleName->text().isEmpty(), "Rule not named", "Please enter a name for this rule", ui_->txtRuleName},
      {ui_->cmboRuleTypes->currentIndex() < 0, "Rule type not defined", "Please select an item from the 'Then' list",
       ui_->cmboRuleTypes},
      {ui_->txtValue->text().isEmpty(), "No value defined", "Please enter a value in the 'This' field", ui_->txtValue},
      {ui_->cmboOperator->currentIndex() < 0, "No operator defined", "Please select a logical operator",
       ui_->cmboOperator},
      {ui_->cmboFields->currentIndex() < 0, "No field defined", "Please select an item from the 'If' list",
       ui_->cmboFields},
      {savesTo && ui_->txtPath->text().isEmpty(), "No path defined", "Please define a save to directory", ui_->txtPath},
  };
}

Rule frmNewRule::record() const {
  Rule rule;
  rule.id = RuleId;
  rule.name = toUtf8(ui_->txtRuleName->text());
  rule.fieldId = ruleFieldNamed(toUtf8(ui_->cmboFields->currentText()));
  rule.ruleOperator = toUtf8(ui_->cmboOperator->currentText());
  rule.searchValue = toUtf8(ui_->txtValue->text());
  rule.typeId = ruleTypeNamed(toUtf8(ui_->cmboRuleTypes->currentText()));
  rule.path = toUtf8(ui_->txtPath->text());
  return rule;
}

void frmNewRule::insertRecord() { insertRule(record()); }

bool frmNewRule::updateRecord() { return updateRule(record()); }

}  // namespace mv
