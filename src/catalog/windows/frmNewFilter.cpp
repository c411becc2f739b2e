#include "catalog_windows/frmNewFilter.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "RuleLists.h"
#include "app/Events.h"
#include "base/Text.h"
#include "frmNewRule.h"
#include "store/FilterStore.h"
#include "windows/EntryBox.h"
#include "windows/ScrollingPage.h"

namespace mv {

namespace {

constexpr QMargins kPageMargins(3, 6, 3, 6);  // pixels; the caption of chkGlobal just fits

}  // namespace

frmNewFilter::frmNewFilter()
    : RecordEditor({.caption = "New Filter",
                    .width = 6165,
                    .height = 4335,
                    .windowName = "frmNewFilter",
                    .record = "filter",
                    .manager = "Filter Manager",
                    .sequence = "filter_id"}),
      txtFilterName_(new EntryBox("txtFilterName", EntryBox::Accepts::NoApostropheKey, this)),
      txtDescription_(new QLineEdit(this)),
      chkGlobal_(new QCheckBox("Global Filter. Apply this filter to every link found on every site.", this)),
      rules_(new RuleLists) {
  buildFields();
  startIn(txtFilterName_);
  connect(rules_, &ListPair::moved, this, [this] { run([this] { rowsMoved(); }); });
  connect(rules_, &ListPair::newWanted, this, [this] { run([this] { openNewRule(); }); });
}

void frmNewFilter::buildFields() {
  txtFilterName_->setToolTip("Enter the filter name here");
  txtDescription_->setObjectName("txtDescription");
  txtDescription_->setToolTip("Enter a description of the filter here");
  chkGlobal_->setObjectName("chkGlobal");

  auto* grid = new QGridLayout(makeScrollingPage(this));
  grid->setContentsMargins(kPageMargins);
  grid->addWidget(makeLabel("lblName", "Name", txtFilterName_), 0, 0);
  grid->addWidget(txtFilterName_, 0, 1);
  grid->addWidget(makeLabel("lblDesc", "Desc", txtDescription_), 1, 0);
  grid->addWidget(txtDescription_, 1, 1);
  grid->addWidget(chkGlobal_, 2, 0, 1, 2);
  grid->addWidget(rules_, 3, 0, 1, 2);
  grid->setRowStretch(3, 1);
  grid->addWidget(makeIdLabel("lblId"), 4, 0, Qt::AlignLeft | Qt::AlignVCenter);
  grid->addLayout(makeButtons("cmdOK", "cmdApply", "cmdCancel", "&OK", "&Cancel"), 4, 1);
}

// --- loading

void frmNewFilter::initWindow() {
  RecordEditor::initWindow();
  rebuildLists();
  setButtons("bothoff");
}

void frmNewFilter::loadRecord() {
  const auto filter = findFilter(FilterId);
  if (!filter) return;
  txtFilterName_->setText(toQString(filter->name));
  txtDescription_->setText(toQString(filter->description));
  txtDescription_->setCursorPosition(0);
  global_ = filter->global;
  setButtons("global");
}

void frmNewFilter::activated() {
  RecordEditor::activated();
  rebuildLists();
}

// A filter that is stored shows the rules stored with it, a new one those moved so far.
void frmNewFilter::rebuildLists() {
  buildWorkingLists("rules");
  if (isNew())
    rules_->refreshAssigned();
  else
    buildWorkingLists("filterrules");
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

void frmNewFilter::openNewRule() { (new frmNewRule)->open(); }

// --- saving

RecordEditor::Checks frmNewFilter::checks(Choice choice) const {
  return {{txtFilterName_->text().isEmpty(), choice == Choice::Ok ? "Filter not named" : "Error",
           "Please enter a name for this filter", txtFilterName_}};
}

Filter frmNewFilter::record() const {
  return {FilterId, toUtf8(txtFilterName_->text()), toUtf8(txtDescription_->text()), chkGlobal_->isChecked()};
}

std::vector<Id> frmNewFilter::rules() {
  rules_->refreshAssigned();
  return rules_->assignedIds();
}

void frmNewFilter::insertRecord() { insertFilter(record(), rules()); }

bool frmNewFilter::updateRecord() { return updateFilter(record(), rules()); }

void frmNewFilter::deleteRecord() {
  deleteFilter(FilterId);
  // It may have been dropped on sites meanwhile.
  Q_EMIT events().filterTakenBack(FilterId);
}

void frmNewFilter::recordChanged() {
  RecordEditor::recordChanged();
  FilterName = txtFilterName_->text();
}

}  // namespace mv
