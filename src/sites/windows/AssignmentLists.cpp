#include "AssignmentLists.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "ui_FileTypeLists.h"
#include "ui_FilterLists.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

constexpr int kGlobalColumn = 2;

QStringList textsOf(const SiteFilter& filter) {
  return {toQString(filter.name), QString::number(filter.id), toQString(yesNo(filter.global))};
}

}  // namespace

// --- file types

FileTypeLists::FileTypeLists(QWidget* parent) : ListPair(parent), ui_(std::make_unique<Ui::FileTypeLists>()) {
  ui_->setupUi(this);
  connectControls({ui_->lvwFiletypesAvailable, ui_->lvwFiletypesAssigned, ui_->cmdMoveFileTypeToAssigned,
                   ui_->cmdMoveFileTypeToAvailable, ui_->cmdNewFileType},
                  "Extension");
  for (ListView* list : {&available(), &assigned()}) {
    list->setSorting(true);
    connect(list, &ListView::rowChosen, this,
            [this, list](int row) { Q_EMIT typeChosen(list->cell(row, kIdColumn).toLongLong()); });
  }
}

FileTypeLists::~FileTypeLists() = default;

void FileTypeLists::buildForNewSite() { build(loadDefaultFileTypes()); }
void FileTypeLists::buildForSite(Id siteId) { build(loadSiteFileTypes(siteId)); }

void FileTypeLists::build(const std::vector<NamedId>& assignedTypes) {
  available().setRows(rowsOf(listFileTypes()));
  assigned().setRows(rowsOf(assignedTypes));
  removeListedItems(available(), assigned());
}

void FileTypeLists::showDescription(Id fileTypeId) {
  const auto description = findFileTypeDescription(fileTypeId);
  if (!description) return;
  ui_->txtFiletypeDescription->setText(toQString(*description));
  ui_->txtFiletypeDescription->setCursorPosition(0);
}

// --- filters

FilterLists::FilterLists(QWidget* parent) : ListPair(parent), ui_(std::make_unique<Ui::FilterLists>()) {
  ui_->setupUi(this);
  connectControls({ui_->lvwFiltersAvailable, ui_->lvwFiltersAssigned, ui_->cmdMoveFilterToAssigned,
                   ui_->cmdMoveFilterToAvailable, ui_->cmdNewFilter},
                  "Filter Name", {"Global"});
  available().setSorting(true);
  connect(&assigned(), &ListView::rowChosen, this, [this](int row) { toAvailableButton().setEnabled(!isGlobal(row)); });
}

FilterLists::~FilterLists() = default;

void FilterLists::buildForNewSite() {
  showAvailable(listAssignableFilters());
  removeListedItems(available(), assigned());
}

void FilterLists::buildForSite(Id siteId) {
  const std::vector<SiteFilter> own = loadSiteFilters(siteId);
  const std::vector<SiteFilter> global = listGlobalFilters();
  showAvailable(listAssignableFilters());
  assigned().setRows(rowsOf(own, textsOf));
  for (int row = 0; row < assigned().rowCount(); ++row) assigned().setBold(row, true);
  assigned().addRows(rowsOf(global, textsOf));
  removeListedItems(available(), assigned());
}

void FilterLists::showAvailable(const std::vector<SiteFilter>& filters) {
  available().setRows(rowsOf(filters, [](const SiteFilter& filter) -> QStringList {
    return {toQString(filter.name), QString::number(filter.id)};
  }));
}

bool FilterLists::isGlobal(int row) const { return isYes(toUtf8(assigned().cell(row, kGlobalColumn))); }

std::vector<SiteFilter> FilterLists::assignedFilters() const {
  std::vector<SiteFilter> filters;
  filters.reserve(static_cast<std::size_t>(assigned().rowCount()));
  for (int row = 0; row < assigned().rowCount(); ++row)
    filters.push_back(
        {assigned().cell(row, kIdColumn).toLongLong(), toUtf8(assigned().cell(row, kNameColumn)), isGlobal(row)});
  return filters;
}

void FilterLists::moveToAvailable() {
  for (int row : assigned().selectedRows())
    if (isGlobal(row)) assigned().setRowSelected(row, false);
  ListPair::moveToAvailable();
  // Into the order of the names once; rows that are added later still go to the end.
  assigned().setSorting(true);
  assigned().setSorting(false);
}

}  // namespace mv
