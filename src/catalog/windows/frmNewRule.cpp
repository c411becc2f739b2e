#include "frmNewRule.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/ToolTip.h"
#include "desktop/Dialogs.h"
#include "store/RuleOperators.h"
#include "store/RuleStore.h"
#include "windows/ChoiceBox.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"

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
    : RecordEditor({.caption = "New Rule",
                    .width = 4800,
                    .height = 3120,
                    .windowName = "frmNewRule",
                    .record = "rule",
                    .manager = "Rule Manager",
                    .sequence = "rule_id"}),
      cmboFields_(new ChoiceBox("cmboFields", this)),
      cmboOperator_(new ChoiceBox("cmboOperator", this)),
      txtValue_(new EntryBox("txtValue", EntryBox::Accepts::NoApostropheKey, this)),
      cmboRuleTypes_(new ChoiceBox("cmboRuleTypes", this)),
      txtPath_(new QLineEdit(this)),
      cmdBrowse_(new QPushButton("Browse...", this)),
      txtRuleName_(new EntryBox("txtRuleName", EntryBox::Accepts::NoApostropheKey, this)) {
  buildFields();
  startIn(cmboFields_);
  connect(cmboRuleTypes_, &QComboBox::currentIndexChanged, this, [this] { ruleTypeChosen(); });
  connect(txtPath_, &QLineEdit::textChanged, txtPath_,
          [this](const QString& text) { txtPath_->setToolTip(plainToolTip(text)); });
  connect(cmdBrowse_, &QPushButton::clicked, this, [this] { run([this] { browse(); }); });
}

void frmNewRule::buildFields() {
  for (const std::string_view op : kRuleOperators) cmboOperator_->addItem(toQString(op));
  cmboOperator_->setCurrentIndex(-1);
  cmboOperator_->setAccessibleName("Operator");

  auto* condition = new QHBoxLayout;
  condition->addWidget(cmboFields_, 2);
  condition->addWidget(cmboOperator_, 3);

  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->addWidget(makeLabel("lblIf", "If", cmboFields_), 0, 0);
  grid->addLayout(condition, 0, 1);
  grid->addWidget(makeLabel("lblThis", "This", txtValue_), 1, 0);
  grid->addWidget(txtValue_, 1, 1);
  grid->addWidget(makeLabel("lblThen", "Then", cmboRuleTypes_), 2, 0);
  grid->addWidget(cmboRuleTypes_, 2, 1);
  grid->addLayout(makePathRow(), 3, 1);
  grid->addWidget(makeLabel("lblName", "Name", txtRuleName_), 4, 0);
  grid->addWidget(txtRuleName_, 4, 1);
  grid->setRowStretch(5, 1);
  grid->addWidget(makeIdLabel("lblId", "ID"), 6, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("cmdOK", QString(), "cmdCancel", "&Save", "&Cancel"), 6, 1);
}

// Shown once a rule type that may have a folder is chosen; its place is kept, so that nothing jumps.
QHBoxLayout* frmNewRule::makePathRow() {
  txtPath_->setObjectName("txtPath");
  txtPath_->setAccessibleName("Folder");
  txtPath_->setReadOnly(true);
  cmdBrowse_->setObjectName("cmdBrowse");
  auto* row = new QHBoxLayout;
  for (QWidget* part : {static_cast<QWidget*>(txtPath_), static_cast<QWidget*>(cmdBrowse_)}) {
    QSizePolicy policy = part->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    part->setSizePolicy(policy);
    part->hide();
    row->addWidget(part);
  }
  return row;
}

// --- loading

void frmNewRule::initWindow() {
  buildWorkingLists("fields");
  buildWorkingLists("ruletypes");
  RecordEditor::initWindow();
}

void frmNewRule::buildWorkingLists(const std::string& command, long) {
  if (command == "fields") fill(*cmboFields_, listRuleFields());
  if (command == "ruletypes") fill(*cmboRuleTypes_, listRuleTypes());
}

void frmNewRule::loadRecord() {
  const auto rule = findRule(RuleId);
  if (!rule) return;
  txtValue_->setText(toQString(rule->searchValue));
  txtRuleName_->setText(toQString(rule->name));
  choose(*cmboFields_, ruleFieldName(rule->fieldId));
  choose(*cmboOperator_, rule->ruleOperator);
  choose(*cmboRuleTypes_, ruleTypeName(rule->typeId));
  // Behind the choice, which sets the default folder.
  txtPath_->setText(toQString(rule->path));
  for (QLineEdit* box : {static_cast<QLineEdit*>(txtValue_), static_cast<QLineEdit*>(txtRuleName_), txtPath_})
    box->setCursorPosition(0);
}

void frmNewRule::ruleTypeChosen() {
  const bool hasFolder = cmboRuleTypes_->currentIndex() >= 0 && cmboRuleTypes_->currentText() != kIgnore;
  txtPath_->setVisible(hasFolder);
  cmdBrowse_->setVisible(hasFolder);
  if (hasFolder) txtPath_->setText(toQString(gDownloadFolder));
}

void frmNewRule::browse() {
  FolderRequest request;
  request.title = "Save To";
  request.prompt = "Select the folder that is kept with this rule.";
  request.initialFolder = txtPath_->text().isEmpty() ? toQString(gDownloadFolder) : txtPath_->text();
  request.owner = this;
  const auto folder = browseForFolder(request);
  if (folder && !isUnloaded()) txtPath_->setText(*folder);
}

// --- saving

RecordEditor::Checks frmNewRule::checks(Choice) const {
  const bool savesTo = cmboRuleTypes_->currentText() == kSaveTo;
  return {
      {txtRuleName_->text().isEmpty(), "Rule not named", "Please enter a name for this rule", txtRuleName_},
      {cmboRuleTypes_->currentIndex() < 0, "Rule type not defined", "Please select an item from the 'Then' list",
       cmboRuleTypes_},
      {txtValue_->text().isEmpty(), "No value defined", "Please enter a value in the 'This' field", txtValue_},
      {cmboOperator_->currentIndex() < 0, "No operator defined", "Please select a logical operator", cmboOperator_},
      {cmboFields_->currentIndex() < 0, "No field defined", "Please select an item from the 'If' list", cmboFields_},
      {savesTo && txtPath_->text().isEmpty(), "No path defined", "Please define a save to directory", txtPath_},
  };
}

Rule frmNewRule::record() const {
  Rule rule;
  rule.id = RuleId;
  rule.name = toUtf8(txtRuleName_->text());
  rule.fieldId = ruleFieldNamed(toUtf8(cmboFields_->currentText()));
  rule.ruleOperator = toUtf8(cmboOperator_->currentText());
  rule.searchValue = toUtf8(txtValue_->text());
  rule.typeId = ruleTypeNamed(toUtf8(cmboRuleTypes_->currentText()));
  rule.path = toUtf8(txtPath_->text());
  return rule;
}

void frmNewRule::insertRecord() { insertRule(record()); }

bool frmNewRule::updateRecord() { return updateRule(record()); }

}  // namespace mv
