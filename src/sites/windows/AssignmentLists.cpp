#include "AssignmentLists.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Settings.h"
#include "base/Text.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

constexpr int kGlobalColumn = 2;

void showTypes(ListView& list, const std::vector<NamedId>& types) {
  list.setSorting(false);
  list.clearRows();
  for (const NamedId& type : types) list.addRow({toQString(type.name), QString::number(type.id)});
  list.setSorting(true);
}

QStringList textsOf(const SiteFilter& filter) {
  return {toQString(filter.name), QString::number(filter.id), toQString(yesNo(filter.global))};
}

}  // namespace

// --- file types

FileTypeLists::FileTypeLists()
    : ListPair(
          {"Extension",
           {"lvwFiletypesAvailable", "Available Filetypes", "These filetypes will not be downloaded from this site"},
           {"lvwFiletypesAssigned", "Filetypes for This Site", "These filetypes will be downloaded from this site"},
           {"cmdMoveFileTypeToAssigned", "Move from Available to Being Downloaded"},
           {"cmdMoveFileTypeToAvailable", "Move from Being Downloaded to Available"},
           {"cmdNewFileType", "Create a new filetype"},
           "New..."}) {
  txtFiletypeDescription_ = new QLineEdit(this);
  txtFiletypeDescription_->setObjectName("txtFiletypeDescription");
  txtFiletypeDescription_->setReadOnly(true);
  txtFiletypeDescription_->setAccessibleName("Filetype Description");
  auto* label = new QLabel("Filetype Description", this);
  label->setBuddy(txtFiletypeDescription_);
  rows().addWidget(label);
  rows().addWidget(txtFiletypeDescription_);

  for (ListView* list : {&available(), &assigned()})
    connect(list, &ListView::rowChosen, this,
            [this, list](int row) { Q_EMIT typeChosen(list->cell(row, kIdColumn).toLongLong()); });
}

void FileTypeLists::buildForNewSite() { build(loadDefaultFileTypes()); }
void FileTypeLists::buildForSite(Id siteId) { build(loadSiteFileTypes(siteId)); }

void FileTypeLists::build(const std::vector<NamedId>& assignedTypes) {
  showTypes(available(), listFileTypes());
  showTypes(assigned(), assignedTypes);
  removeListedItems(available(), assigned());
}

void FileTypeLists::showDescription(Id fileTypeId) {
  const auto description = findFileTypeDescription(fileTypeId);
  if (!description) return;
  txtFiletypeDescription_->setText(toQString(*description));
  txtFiletypeDescription_->setCursorPosition(0);
}

// --- filters

FilterLists::FilterLists()
    : ListPair({"Filter Name",
                {"lvwFiltersAvailable", "Available Filters"},
                {"lvwFiltersAssigned", "Filters for This Site"},
                {"cmdMoveFilterToAssigned", "Add filter to this web site"},
                {"cmdMoveFilterToAvailable", "Remove filter from this web site"},
                {"cmdNewFilter", "Create a new filter"},
                "New..."},
               {"Global"}) {
  connect(&assigned(), &ListView::rowChosen, this, [this](int row) { toAvailableButton().setEnabled(!isGlobal(row)); });
}

void FilterLists::buildForNewSite() {
  showAvailable(listAssignableFilters());
  removeListedItems(available(), assigned());
}

void FilterLists::buildForSite(Id siteId) {
  const std::vector<SiteFilter> own = loadSiteFilters(siteId);
  const std::vector<SiteFilter> global = listGlobalFilters();
  showAvailable(listAssignableFilters());
  assigned().clearRows();
  for (const SiteFilter& filter : own) assigned().addRow(textsOf(filter), true);
  for (const SiteFilter& filter : global) assigned().addRow(textsOf(filter));
  removeListedItems(available(), assigned());
}

void FilterLists::showAvailable(const std::vector<SiteFilter>& filters) {
  available().setSorting(false);
  available().clearRows();
  for (const SiteFilter& filter : filters) available().addRow({toQString(filter.name), QString::number(filter.id)});
  available().setSorting(true);
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
