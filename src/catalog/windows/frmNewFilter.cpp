#include "catalog_windows/frmNewFilter.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "RuleLists.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmNewRule.h"
#include "desktop/Dialogs.h"
#include "store/Sequence.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kWidth = 6165;                  // twips
constexpr int kHeight = 4335;                 // twips
constexpr QMargins kPageMargins(3, 6, 3, 6);  // pixels; the caption of chkGlobal just fits
constexpr const char* kSequence = "filter_id";
constexpr const char* kManager = "Filter Manager";
constexpr const char* kSiteList = "Web Sites";

}  // namespace

frmNewFilter::frmNewFilter()
    : EditorWindow("New Filter", kWidth, kHeight),
      txtFilterName_(new EntryBox("txtFilterName", EntryBox::Accepts::NoApostropheKey, this)),
      txtDescription_(new QLineEdit(this)),
      chkGlobal_(new QCheckBox("Global Filter. Apply this filter to every link found on every site.", this)),
      rules_(new RuleLists),
      lblId_(new QLabel(this)) {
  setObjectName("frmNewFilter");
  buildFields();
  connect(rules_, &ListPair::moved, this, [this] { run([this] { rowsMoved(); }); });
  connect(rules_, &ListPair::newWanted, this, [this] { run([this] { openNewRule(); }); });
}

void frmNewFilter::buildFields() {
  txtFilterName_->setToolTip("Enter the filter name here");
  txtDescription_->setObjectName("txtDescription");
  txtDescription_->setToolTip("Enter a description of the filter here");
  chkGlobal_->setObjectName("chkGlobal");
  lblId_->setObjectName("lblId");
  lblId_->setAccessibleName("Identifier");

  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->setContentsMargins(kPageMargins);
  grid->addWidget(makeLabel("lblName", "Name", txtFilterName_), 0, 0);
  grid->addWidget(txtFilterName_, 0, 1);
  grid->addWidget(makeLabel("lblDesc", "Desc", txtDescription_), 1, 0);
  grid->addWidget(txtDescription_, 1, 1);
  grid->addWidget(chkGlobal_, 2, 0, 1, 2);
  grid->addWidget(rules_, 3, 0, 1, 2);
  grid->setRowStretch(3, 1);
  grid->addWidget(lblId_, 4, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("cmdOK", "cmdApply", "cmdCancel", "&OK", "&Cancel"), 4, 1);
}

// --- loading

void frmNewFilter::initWindow() {
  txtFilterName_->setFocus();
  if (Mode == "new")
    FilterId = nextSequenceValue(kSequence);
  else
    loadFilter();
  lblId_->setText(QString::number(FilterId));
  rebuildLists();
  setButtons("bothoff");
}

void frmNewFilter::loadFilter() {
  const Recordset rows =
      gDatabase.query("select id, name, description, global from filter where id = " + number(FilterId));
  if (rows.endOfRows()) return;
  txtFilterName_->setText(toQString(rows.text("name")));
  txtDescription_->setText(toQString(rows.text("description")));
  txtDescription_->setCursorPosition(0);
  global_ = rows.text("global") != "no";
  setButtons("global");
}

void frmNewFilter::activated() {
  EditorWindow::activated();
  rebuildLists();
}

// A filter that is stored shows the rules stored with it, a new one those moved so far.
void frmNewFilter::rebuildLists() {
  buildWorkingLists("rules");
  if (Mode == "edit")
    buildWorkingLists("filterrules");
  else
    rules_->refreshAssigned();
  rules_->hideAssigned();
}

void frmNewFilter::buildWorkingLists(const std::string& command, long) {
  if (command == "rules") rules_->buildAvailable();
  if (command == "filterrules") rules_->buildAssigned(FilterId);
}

void frmNewFilter::setButtons(const std::string& command) {
  if (command == "available") rules_->allowMoveToAssigned(rules_->hasAvailable());
  if (command == "assigned") rules_->allowMoveToAvailable(rules_->hasAssigned());
  if (command == "bothoff") rules_->disableMoves();
  if (command == "global") chkGlobal_->setChecked(global_);
}

void frmNewFilter::rowsMoved() {
  if (!rules_->hasAvailable()) setButtons("available");
  if (!rules_->hasAssigned()) setButtons("assigned");
}

void frmNewFilter::openNewRule() {
  auto* editor = new frmNewRule;
  editor->Mode = "new";
  editor->setCaption("New Rule");
  editor->open();
}

// --- OK, Apply, Cancel

bool frmNewFilter::accept() { return nameIsFilled("Filter not named") && save(); }

void frmNewFilter::apply() {
  if (nameIsFilled("Error")) save();
}

bool frmNewFilter::nameIsFilled(const QString& title) {
  if (!txtFilterName_->text().isEmpty()) return true;
  showMessage(this, title, "Please enter a name for this filter", MessageIcon::Exclamation);
  return false;
}

void frmNewFilter::cancel() {
  if (!createdByApply_) return;
  const Literal id = number(FilterId);
  gDatabase.execute("delete from filter where id = " + id);
  gDatabase.execute("delete from filter_rule_xref where filter_id = " + id);
  // It may have been dropped on sites meanwhile.
  gDatabase.execute("delete from site_filter_xref where filter_id = " + id);
  WindowRegistry::instance().tell(kSiteList, "init");
  WindowRegistry::instance().markRefreshPending(kManager);
}

bool frmNewFilter::save() {
  if (FilterId == 0) FilterId = nextSequenceValue(kSequence);
  if (FilterId == 0) return false;
  lblId_->setText(QString::number(FilterId));
  rules_->refreshAssigned();
  if (!writeFilter()) {
    showMessage(this, applicationTitle(), "This filter has been deleted meanwhile. It was not saved.",
                MessageIcon::Exclamation);
    return false;
  }
  if (Mode == "new") {
    Mode = "edit";
    createdByApply_ = true;
  }
  WindowRegistry::instance().markRefreshPending(kManager);
  FilterName = txtFilterName_->text();
  return true;
}

// The filter with its rules or, should a statement fail, neither. False when the filter is gone.
bool frmNewFilter::writeFilter() {
  Transaction rowAndRules(gDatabase);
  writeFilterRow();
  if (gDatabase.rowsAffected() == 0) return false;
  writeRules();
  rowAndRules.commit();
  return true;
}

void frmNewFilter::writeFilterRow() const {
  const Literal id = number(FilterId);
  const Literal name = quoted(toUtf8(txtFilterName_->text()));
  const Literal global = quoted(yesNo(chkGlobal_->isChecked()));
  const Literal description = quoted(toUtf8(txtDescription_->text()));
  if (Mode == "new")
    gDatabase.execute("insert into filter (id, name, global, description) values (" + id + ", " + name + ", " + global +
                      ", " + description + ")");
  else
    gDatabase.execute("update filter set name = " + name + ", global = " + global + ", description = " + description +
                      " where id = " + id);
}

void frmNewFilter::writeRules() const {
  const Literal id = number(FilterId);
  gDatabase.execute("delete from filter_rule_xref where filter_id = " + id);
  for (const std::int64_t rule : rules_->assignedIds())
    gDatabase.execute("insert into filter_rule_xref (filter_id, rule_id) values (" + id + ", " + number(rule) + ")");
}

}  // namespace mv
