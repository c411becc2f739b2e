#include "catalog_windows/frmNewRule.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include "app/Settings.h"
#include "base/Text.h"
#include "desktop/Dialogs.h"
#include "store/RuleOperators.h"
#include "store/Sequence.h"
#include "windows/ChoiceBox.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 4800;   // twips
constexpr int kHeight = 3120;  // twips
constexpr const char* kSequence = "rule_id";
constexpr const char* kIgnore = "Ignore";
constexpr const char* kSaveTo = "Save To";

void fill(QComboBox& box, SqlText statement) {
  {
    // Left to itself a box chooses the first entry that it gets, which no user has done.
    const QSignalBlocker silent(box);
    box.clear();
    for (Recordset rows = gDatabase.query(statement); !rows.endOfRows(); rows.moveNext())
      box.addItem(toQString(rows.text("name")));
  }
  box.setCurrentIndex(-1);
}

// Chooses the entry with exactly that text, none when there is none.
void choose(QComboBox& box, const std::string& text) {
  box.setCurrentIndex(box.findText(toQString(text), Qt::MatchExactly | Qt::MatchCaseSensitive));
}

// The name of an entry of a lookup table, "" when there is none.
std::string nameOf(SqlText table, std::int64_t id) {
  const Recordset rows = gDatabase.query("select name from " + table + " where id = " + number(id));
  return rows.endOfRows() ? std::string() : rows.text("name");
}

// The id of the entry chosen. Raises kNoCurrentRecord when the table has no such entry any more.
Literal idOf(SqlText table, const QComboBox& box) {
  return number(
      gDatabase.query("select id from " + table + " where name = " + quoted(toUtf8(box.currentText()))).number("id"));
}

}  // namespace

frmNewRule::frmNewRule()
    : EditorWindow("New Rule", kWidth, kHeight),
      cmboFields_(new ChoiceBox("cmboFields", this)),
      cmboOperator_(new ChoiceBox("cmboOperator", this)),
      txtValue_(new EntryBox("txtValue", EntryBox::Accepts::NoApostropheKey, this)),
      cmboRuleTypes_(new ChoiceBox("cmboRuleTypes", this)),
      txtPath_(new QLineEdit(this)),
      cmdBrowse_(new QPushButton("Browse...", this)),
      txtRuleName_(new EntryBox("txtRuleName", EntryBox::Accepts::NoApostropheKey, this)),
      lblId_(new QLabel("ID", this)) {
  setObjectName("frmNewRule");
  buildFields();
  connect(cmboRuleTypes_, &QComboBox::currentIndexChanged, this, [this] { ruleTypeChosen(); });
  connect(txtPath_, &QLineEdit::textChanged, txtPath_, &QLineEdit::setToolTip);
  connect(cmdBrowse_, &QPushButton::clicked, this, [this] { run([this] { browse(); }); });
}

void frmNewRule::buildFields() {
  for (const std::string_view op : kRuleOperators) cmboOperator_->addItem(toQString(op));
  cmboOperator_->setCurrentIndex(-1);
  cmboOperator_->setAccessibleName("Operator");
  lblId_->setObjectName("lblId");
  lblId_->setAccessibleName("Identifier");

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
  grid->addWidget(lblId_, 6, 0, Qt::AlignLeft | Qt::AlignVCenter);
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
  cmboFields_->setFocus();
  buildWorkingLists("fields");
  buildWorkingLists("ruletypes");
  if (Mode == "new")
    RuleId = nextSequenceValue(kSequence);
  else
    loadRule();
  lblId_->setText(QString::number(RuleId));
}

void frmNewRule::buildWorkingLists(const std::string& command, long) {
  if (command == "fields") fill(*cmboFields_, "select id, name from valid_field order by id");
  if (command == "ruletypes") fill(*cmboRuleTypes_, "select id, name from valid_rule order by id");
}

void frmNewRule::loadRule() {
  const Recordset rows = gDatabase.query(
      "select id, valid_rule_type_id, valid_field_id, search_value, path, name, operator from rule where id = " +
      number(RuleId));
  if (rows.endOfRows()) return;
  txtValue_->setText(toQString(rows.text("search_value")));
  txtRuleName_->setText(toQString(rows.text("name")));
  choose(*cmboFields_, nameOf("valid_field", rows.number("valid_field_id")));
  choose(*cmboOperator_, rows.text("operator"));
  choose(*cmboRuleTypes_, nameOf("valid_rule", rows.number("valid_rule_type_id")));
  // Behind the choice, which sets the default folder.
  txtPath_->setText(toQString(rows.text("path")));
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

bool frmNewRule::accept() {
  if (!isComplete()) return false;
  if (!save()) return false;
  WindowRegistry::instance().markRefreshPending("Rule Manager");
  return true;
}

bool frmNewRule::isComplete() {
  const bool savesTo = cmboRuleTypes_->currentText() == kSaveTo;
  const struct {
    bool missing;
    const char* text;
    const char* title;
  } checks[] = {
      {txtRuleName_->text().isEmpty(), "Please enter a name for this rule", "Rule not named"},
      {cmboRuleTypes_->currentIndex() < 0, "Please select an item from the 'Then' list", "Rule type not defined"},
      {txtValue_->text().isEmpty(), "Please enter a value in the 'This' field", "No value defined"},
      {cmboOperator_->currentIndex() < 0, "Please select a logical operator", "No operator defined"},
      {cmboFields_->currentIndex() < 0, "Please select an item from the 'If' list", "No field defined"},
      {savesTo && txtPath_->text().isEmpty(), "Please define a save to directory", "No path defined"},
  };
  for (const auto& check : checks) {
    if (!check.missing) continue;
    showMessage(this, check.title, check.text, MessageIcon::Exclamation);
    return false;
  }
  return true;
}

// False when the rule is gone, or has no identifier.
bool frmNewRule::save() {
  if (RuleId == 0) RuleId = nextSequenceValue(kSequence);
  if (RuleId == 0) return false;
  const Literal id = number(RuleId);
  const Literal field = idOf("valid_field", *cmboFields_);
  const Literal type = idOf("valid_rule", *cmboRuleTypes_);
  const Literal value = quoted(toUtf8(txtValue_->text()));
  const Literal path = quoted(toUtf8(txtPath_->text()));
  const Literal name = quoted(toUtf8(txtRuleName_->text()));
  const Literal op = quoted(toUtf8(cmboOperator_->currentText()));
  if (Mode == "new") {
    gDatabase.execute(
        "insert into rule (id, valid_rule_type_id, valid_field_id, search_value, path, name, operator) values (" + id +
        ", " + type + ", " + field + ", " + value + ", " + path + ", " + name + ", " + op + ") ");
    return true;
  }
  gDatabase.execute("update rule set name = " + name + ", valid_rule_type_id = " + type +
                    ", valid_field_id = " + field + ", search_value  = " + value + ", path = " + path +
                    ", operator = " + op + " where id = " + id);
  if (gDatabase.rowsAffected() > 0) return true;
  showMessage(this, applicationTitle(), "This rule has been deleted meanwhile. It was not saved.",
              MessageIcon::Exclamation);
  return false;
}

}  // namespace mv
