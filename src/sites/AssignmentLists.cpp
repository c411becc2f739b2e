#include "sites/AssignmentLists.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/ListHelpers.h"
#include "app/ScrollingPage.h"
#include "app/Settings.h"
#include "platform/Text.h"

namespace mv {

namespace {

constexpr int kGlobalColumn = 2;
constexpr int kMinimumListHeight = 96;  // logical pixels: header and a few rows
constexpr int kMinimumListWidth = 120;
constexpr int kNameColumnWidth = 140;

std::function<void()>& installedNewFilterOpener() {
  static std::function<void()> opener;
  return opener;
}

void showTypes(ListView& list, const std::vector<NamedId>& types) {
  list.setSorting(false);
  list.clearRows();
  for (const NamedId& type : types) list.addRow({toQString(type.name), QString::number(type.id)});
  list.setSorting(true);
}

QStringList textsOf(const SiteFilter& filter) {
  return {toQString(filter.name), QString::number(filter.id), toQString(filter.global)};
}

}  // namespace

AssignmentLists::AssignmentLists(const Texts& texts, const std::vector<const char*>& assignedHidden)
    : rows_(new QVBoxLayout(makeScrollingPage(this))),
      available_(makeList(texts.availableName, texts.availableTip, texts.column, {"ID"})),
      toAssigned_(makeButton(texts.toAssigned, ">")),
      toAvailable_(makeButton(texts.toAvailable, "<")),
      create_(makeButton(texts.create, texts.createCaption)) {
  std::vector<const char*> hidden{"ID"};
  hidden.insert(hidden.end(), assignedHidden.begin(), assignedHidden.end());
  assigned_ = makeList(texts.assignedName, texts.assignedTip, texts.column, hidden);

  auto* buttons = new QVBoxLayout;
  buttons->addStretch();
  for (QPushButton* button : {toAssigned_, toAvailable_, create_}) buttons->addWidget(button);
  buttons->addStretch();

  auto* lists = new QHBoxLayout;
  lists->addWidget(titled(texts.availableTitle, available_), 1);
  lists->addLayout(buttons);
  lists->addWidget(titled(texts.assignedTitle, assigned_), 1);

  rows_->addLayout(lists, 1);
  connectAll();
}

ListView* AssignmentLists::makeList(const char* name, const char* toolTip, const char* column,
                                    const std::vector<const char*>& hidden) {
  auto* list = new ListView(this);
  list->setObjectName(name);
  list->setToolTip(toolTip);
  std::vector<ListColumn> columns{{column, kNameColumnWidth, false}};
  for (const char* title : hidden) columns.push_back({title, 0, true});
  list->setColumns(columns);
  list->setMultiSelect(true);
  list->setHeaderClickSorts(false);
  list->setMinimumSize(kMinimumListWidth, kMinimumListHeight);
  return list;
}

QPushButton* AssignmentLists::makeButton(const ButtonTexts& texts, const QString& caption) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(texts.name);
  button->setToolTip(texts.toolTip);
  button->setAccessibleName(texts.toolTip);
  button->setAutoDefault(false);
  return button;
}

QWidget* AssignmentLists::titled(const char* title, ListView* list) {
  auto* box = new QWidget(this);
  auto* label = new QLabel(title, box);
  label->setBuddy(list);
  list->setAccessibleName(title);
  auto* layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(label);
  layout->addWidget(list, 1);
  return box;
}

void AssignmentLists::connectAll() {
  connect(available_, &ListView::entered, this, [this] { allowMove(true); });
  connect(assigned_, &ListView::entered, this, [this] { allowMove(false); });
  connect(toAssigned_, &QPushButton::clicked, this, [this] {
    moveToAssigned();
    Q_EMIT moved();
  });
  connect(toAvailable_, &QPushButton::clicked, this, [this] {
    moveToAvailable();
    Q_EMIT moved();
  });
  connect(create_, &QPushButton::clicked, this, &AssignmentLists::newWanted);
}

void AssignmentLists::allowMove(bool toAssigned) {
  toAssigned_->setEnabled(toAssigned);
  toAvailable_->setEnabled(!toAssigned);
}

void AssignmentLists::disableMoves() {
  toAssigned_->setEnabled(false);
  toAvailable_->setEnabled(false);
}

// --- file types

FileTypeLists::FileTypeLists()
    : AssignmentLists({"Extension",
                       "lvwFiletypesAvailable",
                       "Available Filetypes",
                       "These filetypes will not be downloaded from this site",
                       "lvwFiletypesAssigned",
                       "Filetypes for This Site",
                       "These filetypes will be downloaded from this site",
                       {"cmdMoveFileTypeToAssigned", "Move from Available to Being Downloaded"},
                       {"cmdMoveFileTypeToAvailable", "Move from Being Downloaded to Available"},
                       {"cmdNewFileType", "Create a new filetype"},
                       "New..."},
                      {}) {
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
void FileTypeLists::buildForSite(std::int32_t siteId) { build(loadSiteFileTypes(siteId)); }

void FileTypeLists::build(const std::vector<NamedId>& assignedTypes) {
  showTypes(available(), listFileTypes());
  showTypes(assigned(), assignedTypes);
  removeListedItems(available(), assigned());
}

std::vector<std::int64_t> FileTypeLists::assignedIds() const {
  std::vector<std::int64_t> ids;
  ids.reserve(static_cast<std::size_t>(assigned().rowCount()));
  for (int row = 0; row < assigned().rowCount(); ++row) ids.push_back(assigned().cell(row, kIdColumn).toLongLong());
  return ids;
}

void FileTypeLists::moveToAssigned() { moveSelectedItems(available(), assigned()); }
void FileTypeLists::moveToAvailable() { moveSelectedItems(assigned(), available()); }

void FileTypeLists::showDescription(std::int64_t fileTypeId) {
  for (Recordset types =
           gDatabase.query("select description from valid_filetypes where id = " + std::to_string(fileTypeId));
       !types.endOfRows(); types.moveNext()) {
    txtFiletypeDescription_->setText(toQString(types.text("description")));
    txtFiletypeDescription_->setCursorPosition(0);
  }
}

// --- filters

void setNewFilterOpener(std::function<void()> opener) { installedNewFilterOpener() = std::move(opener); }
const std::function<void()>& newFilterOpener() { return installedNewFilterOpener(); }

FilterLists::FilterLists()
    : AssignmentLists({"Filter Name",
                       "lvwFiltersAvailable",
                       "Available Filters",
                       "",
                       "lvwFiltersAssigned",
                       "Filters for This Site",
                       "",
                       {"cmdMoveFilterToAssigned", "Add filter to this web site"},
                       {"cmdMoveFilterToAvailable", "Remove filter from this web site"},
                       {"cmdNewFilter", "Create a new filter"},
                       "New..."},
                      {"Global"}) {
  connect(&assigned(), &ListView::rowChosen, this, [this](int row) { toAvailableButton().setEnabled(!isGlobal(row)); });
}

void FilterLists::buildForNewSite() {
  showAvailable(listFilters(false));
  removeListedItems(available(), assigned());
}

void FilterLists::buildForSite(std::int32_t siteId) {
  const std::vector<SiteFilter> own = loadSiteFilters(siteId);
  const std::vector<SiteFilter> global = listFilters(true);
  showAvailable(listFilters(false));
  assigned().clearRows();
  for (const SiteFilter& filter : own) assigned().addRow(textsOf(filter), true);
  for (const SiteFilter& filter : global) assigned().addRow(textsOf(filter));
  removeListedItems(available(), assigned());
}

void FilterLists::showAvailable(const std::vector<SiteFilter>& filters) {
  createButton().setEnabled(static_cast<bool>(newFilterOpener()));
  available().setSorting(false);
  available().clearRows();
  for (const SiteFilter& filter : filters) available().addRow({toQString(filter.name), QString::number(filter.id)});
  available().setSorting(true);
}

bool FilterLists::isGlobal(int row) const { return isYes(toUtf8(assigned().cell(row, kGlobalColumn))); }

std::vector<std::pair<std::int64_t, std::string>> FilterLists::assignedIdsAndGlobal() const {
  std::vector<std::pair<std::int64_t, std::string>> filters;
  filters.reserve(static_cast<std::size_t>(assigned().rowCount()));
  for (int row = 0; row < assigned().rowCount(); ++row)
    filters.emplace_back(assigned().cell(row, kIdColumn).toLongLong(), toUtf8(assigned().cell(row, kGlobalColumn)));
  return filters;
}

void FilterLists::moveToAssigned() { moveSelectedItems(available(), assigned()); }

void FilterLists::moveToAvailable() {
  for (int row : assigned().selectedRows())
    if (isGlobal(row)) assigned().setRowSelected(row, false);
  moveSelectedItems(assigned(), available());
  // Into the order of the names once; rows that are added later still go to the end.
  assigned().setSorting(true);
  assigned().setSorting(false);
}

}  // namespace mv
