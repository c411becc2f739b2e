#include "windows/ListPair.h"

#include <QPushButton>

#include "desktop/ListColumns.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

constexpr int kNameCharacters = 12;
constexpr const char* kIdTitle = "ID";

void lay(ListView& list, const QString& column, const QStringList& hidden) {
  std::vector<ListColumn> columns{{column, kNameCharacters, false}};
  for (const QString& title : hidden) columns.push_back({title, 0, true});
  list.setColumns(columns);
  list.setMultiSelect(true);
  list.setHeaderClickSorts(false);
}

}  // namespace

void ListPair::connectControls(const Controls& controls, const QString& column, const QStringList& assignedHidden) {
  available_ = controls.available;
  assigned_ = controls.assigned;
  toAssigned_ = controls.toAssigned;
  toAvailable_ = controls.toAvailable;
  lay(*available_, column, {kIdTitle});
  lay(*assigned_, column, QStringList{kIdTitle} + assignedHidden);
  setEmptyText(*available_, "None is left. Press New to make one.");
  setEmptyText(*assigned_, "None yet. Select rows on the left and press >.");
  connect(available_, &ListView::entered, this, [this] { allowMove(true); });
  connect(available_, &ListView::rowChosen, this, [this] { allowMove(true); });
  connect(assigned_, &ListView::entered, this, [this] { allowMove(false); });
  connect(assigned_, &ListView::rowChosen, this, [this] { allowMove(false); });
  connect(toAssigned_, &QPushButton::clicked, this, [this] {
    moveToAssigned();
    Q_EMIT moved();
  });
  connect(toAvailable_, &QPushButton::clicked, this, [this] {
    moveToAvailable();
    Q_EMIT moved();
  });
  toAssigned_->setShortcut(Qt::ALT | Qt::Key_Right);
  toAvailable_->setShortcut(Qt::ALT | Qt::Key_Left);
  // A button that is disabled takes no click.
  connect(available_, &QTreeView::doubleClicked, toAssigned_, &QPushButton::click);
  connect(assigned_, &QTreeView::doubleClicked, toAvailable_, &QPushButton::click);
  connect(controls.create, &QPushButton::clicked, this, &ListPair::newWanted);
}

void ListPair::allowMove(bool toAssigned) {
  toAssigned_->setEnabled(toAssigned);
  toAvailable_->setEnabled(!toAssigned);
}

void ListPair::disableMoves() {
  toAssigned_->setEnabled(false);
  toAvailable_->setEnabled(false);
}

std::vector<std::int64_t> ListPair::assignedIds() const {
  std::vector<std::int64_t> ids;
  ids.reserve(static_cast<std::size_t>(assigned_->rowCount()));
  for (int row = 0; row < assigned_->rowCount(); ++row) ids.push_back(assigned_->cell(row, kIdColumn).toLongLong());
  return ids;
}

void ListPair::moveToAssigned() { moveSelectedItems(*available_, *assigned_); }
void ListPair::moveToAvailable() { moveSelectedItems(*assigned_, *available_); }

}  // namespace mv
