#include "catalog_windows/frmNewFilter.h"

#include "app/Events.h"
#include "base/Text.h"
#include "frmNewRule.h"
#include "store/FilterStore.h"
#include "ui_frmNewFilter.h"

namespace mv {

frmNewFilter::frmNewFilter()
    : RecordEditor(
          {.width = 6165, .height = 4335, .record = "filter", .manager = "Filter Manager", .sequence = "filter_id"}),
      ui_(std::make_unique<Ui::frmNewFilter>()) {
  ui_->setupUi(this);
  connectButtons(ui_->cmdOK, ui_->cmdApply, ui_->cmdCancel);
  showNumberIn(ui_->lblId);
  startIn(ui_->txtFilterName);
  connect(ui_->ruleLists, &ListPair::moved, this, [this] { run([this] { rowsMoved(); }); });
  connect(ui_->ruleLists, &ListPair::newWanted, this, [this] { run([this] { openNewRule(); }); });
}

frmNewFilter::~frmNewFilter() = default;

// --- loading

void frmNewFilter::initWindow() {
  RecordEditor::initWindow();
  setButtons("bothoff");
}

void frmNewFilter::loadRecord() {
  const auto filter = findFilter(FilterId);
  if (!filter) return;
  ui_->txtFilterName->setText(toQString(filter->name));
  ui_->txtDescription->setText(toQString(filter->description));
  ui_->txtDescription->setCursorPosition(0);
  global_ = filter->global;
  setButtons("global");
}

// Opened, too.
void frmNewFilter::activated() {
  RecordEditor::activated();
  rebuildLists();
}

// A filter that is stored shows the rules stored with it, a new one those moved so far.
void frmNewFilter::rebuildLists() {
  buildWorkingLists("rules");
  if (isNew())
    ui_->ruleLists->refreshAssigned();
  else
    buildWorkingLists("filterrules");
  ui_->ruleLists->hideAssigned();
}

void frmNewFilter::buildWorkingLists(const std::string& command, long) {
  if (command == "rules") ui_->ruleLists->buildAvailable();
  if (command == "filterrules") ui_->ruleLists->buildAssigned(FilterId);
}

void frmNewFilter::setButtons(const std::string& command) {
  if (command == "available") ui_->ruleLists->allowMoveToAssigned(ui_->ruleLists->hasAvailable());
  if (command == "assigned") ui_->ruleLists->allowMoveToAvailable(ui_->ruleLists->hasAssigned());
  if (command == "bothoff") ui_->ruleLists->disableMoves();
  if (command == "global") ui_->chkGlobal->setChecked(global_);
}

void frmNewFilter::rowsMoved() {
  if (!ui_->ruleLists->hasAvailable()) setButtons("available");
  if (!ui_->ruleLists->hasAssigned()) setButtons("assigned");
}

void frmNewFilter::openNewRule() { (new frmNewRule)->open(); }

// --- saving

RecordEditor::Checks frmNewFilter::checks(Choice choice) const {
  return {{ui_->txtFilterName->text().isEmpty(), choice == Choice::Ok ? "Filter not named" : "Error",
           "Please enter a name for this filter", ui_->txtFilterName}};
}

Filter frmNewFilter::record() const {
  return {FilterId, toUtf8(ui_->txtFilterName->text()), toUtf8(ui_->txtDescription->text()),
          ui_->chkGlobal->isChecked()};
}

std::vector<Id> frmNewFilter::rules() {
  ui_->ruleLists->refreshAssigned();
  return ui_->ruleLists->assignedIds();
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
  FilterName = ui_->txtFilterName->text();
}

}  // namespace mv
