#include "sites/AssignmentLists.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/ListHelpers.h"
#include "app/Settings.h"
#include "platform/Text.h"
#include "sites/SiteStore.h"

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

void addNamedRow(ListView& list, std::int64_t id, const std::string& name) {
  list.addRow({toQString(name), QString::number(id)});
}

}  // namespace

AssignmentLists::AssignmentLists(SlotRunner runner, const Texts& texts, const std::vector<const char*>& assignedHidden)
    : run_(std::move(runner)),
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

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(lists, 1);
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
    run([this] { moveToAssigned(); });
    Q_EMIT moved();
  });
  connect(toAvailable_, &QPushButton::clicked, this, [this] {
    run([this] { moveToAvailable(); });
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

FileTypeLists::FileTypeLists(SlotRunner runner)
    : AssignmentLists(std::move(runner),
                      {"Extension",
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
  layout()->addWidget(label);
  layout()->addWidget(txtFiletypeDescription_);

  for (ListView* list : {&available(), &assigned()})
    connect(list, &ListView::rowChosen, this, [this, list](int row) { run([&] { showDescription(*list, row); }); });
}

void FileTypeLists::buildForNewSite() {
  build([this] {
    for (const NamedId& type : loadDefaultFileTypes()) addNamedRow(assigned(), type.id, type.name);
  });
}

void FileTypeLists::buildForSite(std::int32_t siteId) {
  build([this, siteId] {
    for (const NamedId& type : loadSiteFileTypes(siteId)) addNamedRow(assigned(), type.id, type.name);
  });
}

void FileTypeLists::build(const std::function<void()>& fillAssigned) {
  for (ListView* list : {&available(), &assigned()}) {
    list->setSorting(false);
    list->clearRows();
  }
  for (Recordset types = gDatabase.query("select id, name from valid_filetypes order by id"); !types.endOfRows();
       types.moveNext())
    addNamedRow(available(), types.number("id"), types.text("name"));
  fillAssigned();
  available().setSorting(true);
  assigned().setSorting(true);
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

void FileTypeLists::showDescription(const ListView& list, int row) {
  const std::string id = std::to_string(list.cell(row, kIdColumn).toLongLong());
  for (Recordset types = gDatabase.query("select description from valid_filetypes where id = " + id);
       !types.endOfRows(); types.moveNext()) {
    txtFiletypeDescription_->setText(toQString(types.text("description")));
    txtFiletypeDescription_->setCursorPosition(0);
  }
}

// --- filters

void setNewFilterOpener(std::function<void()> opener) { installedNewFilterOpener() = std::move(opener); }
const std::function<void()>& newFilterOpener() { return installedNewFilterOpener(); }

FilterLists::FilterLists(SlotRunner runner)
    : AssignmentLists(std::move(runner),
                      {"Filter Name",
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
  fillAvailable();
  removeListedItems(available(), assigned());
}

void FilterLists::buildForSite(std::int32_t siteId) {
  fillAvailable();
  fillAssigned(siteId);
  removeListedItems(available(), assigned());
}

void FilterLists::fillAvailable() {
  createButton().setEnabled(static_cast<bool>(newFilterOpener()));
  available().setSorting(false);
  available().clearRows();
  for (Recordset filters =
           gDatabase.query("select id, name, global from filter where global = " + quoted("no") + " order by id");
       !filters.endOfRows(); filters.moveNext())
    addNamedRow(available(), filters.number("id"), filters.text("name"));
  available().setSorting(true);
}

void FilterLists::fillAssigned(std::int32_t siteId) {
  assigned().setSorting(false);
  assigned().clearRows();
  for (const SiteFilter& filter : loadSiteFilters(siteId))
    assigned().addRow({toQString(filter.name), QString::number(filter.id), toQString(filter.global)}, true);
  for (Recordset filters =
           gDatabase.query("select id, name, global from filter where global = " + quoted("yes") + " order by id");
       !filters.endOfRows(); filters.moveNext())
    assigned().addRow(
        {toQString(filters.text("name")), QString::number(filters.number("id")), toQString(filters.text("global"))});
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
