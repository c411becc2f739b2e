#include "desktop/ListView.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QMimeData>
#include <QMouseEvent>
#include <algorithm>
#include <cstdlib>

#include "ListRows.h"
#include "desktop/ListColumns.h"

namespace mv {
namespace {

constexpr int kRowsAskedFor = 4;

bool isMovement(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Home || key == Qt::Key_End ||
         key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

}  // namespace

ListView::ListView(QWidget* parent) : QTreeView(parent), rows_(new ListRows(*this)) {
  setModel(rows_);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setUniformRowHeights(true);
  setAllColumnsShowFocus(true);
  setEditTriggers(NoEditTriggers);
  setSelectionBehavior(SelectRows);
  setMultiSelect(false);
  setAcceptDrops(false);
  setTabKeyNavigation(false);
  header()->setSectionsClickable(true);
  header()->setSectionsMovable(false);
  header()->setStretchLastSection(false);
  tellCutCells(*this);
  connect(header(), &QHeaderView::sectionClicked, this, [this](int column) {
    if (headerClickSorts_) sortByClick(column);
  });
  connect(this, &QTreeView::clicked, this, [this](const QModelIndex& cell) {
    const int row = isRowSelected(cell.row()) ? cell.row() : currentSelectedRow();
    if (row >= 0) Q_EMIT rowChosen(row);
  });
  connect(this, &QTreeView::doubleClicked, this, [this](const QModelIndex& cell) { Q_EMIT rowActivated(cell.row()); });
}

void ListView::setColumns(const std::vector<ListColumn>& columns) {
  QStringList titles;
  for (const ListColumn& column : columns) titles << column.title;
  rows_->setTitles(titles);
  for (int i = 0; i < columnCount(); ++i) {
    setColumnWidth(i, mv::columnWidth(*this, i, columns[static_cast<std::size_t>(i)].characters));
    setColumnHidden(i, columns[static_cast<std::size_t>(i)].hidden);
  }
  giveRoom(*this, 0);
}

QSize ListView::sizeHint() const {
  const int row = fontMetrics().height() + 2 * frameWidth();
  return QSize(columnsWidth(*this), header()->sizeHint().height() + kRowsAskedFor * row + 2 * frameWidth())
      .expandedTo(minimumSize());
}

void ListView::setMultiSelect(bool on) { setSelectionMode(on ? ExtendedSelection : SingleSelection); }

int ListView::rowCount() const { return rows_->rowCount(); }

int ListView::columnCount() const { return rows_->columnCount(); }

QModelIndex ListView::rowAt(int row) const { return rows_->index(row, 0); }

void ListView::setRows(std::vector<QStringList> rows) {
  if (!sorting_) header()->setSortIndicatorShown(false);
  selectionModel()->clear();
  rows_->replace(std::move(rows));
  if (sorting_) sortNow();
}

int ListView::addRow(const QStringList& texts, bool bold) {
  const int row = sorting_ ? sortedPlace(texts.value(sortColumn_)) : rowCount();
  if (!sorting_) header()->setSortIndicatorShown(false);
  rows_->insert(row, texts, bold);
  return row;
}

void ListView::addRows(std::vector<QStringList> rows) {
  if (!sorting_) header()->setSortIndicatorShown(false);
  rows_->append(std::move(rows));
  if (sorting_) sortNow();
}

// Behind the rows that are equal, so that they keep the order in which they came.
int ListView::sortedPlace(const QString& text) const {
  int low = 0;
  int high = rowCount();
  while (low < high) {
    const int middle = low + (high - low) / 2;
    const QString there = cell(middle, sortColumn_);
    const bool before = sortDescending_ ? standsBefore(there, text) : standsBefore(text, there);
    if (before)
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

void ListView::setFocusRow(int row) { selectionModel()->setCurrentIndex(rowAt(row), QItemSelectionModel::NoUpdate); }

void ListView::removeRow(int row) {
  if (!rows_->holds(row)) return;
  // Left to itself the view selects the neighbour.
  if (row == currentIndex().row()) setFocusRow(row + 1 < rowCount() ? row + 1 : row - 1);
  rows_->remove(row);
}

void ListView::removeRows(const std::vector<int>& rows) {
  if (rows.empty()) return;
  const int focus = currentIndex().row();
  const auto above = std::lower_bound(rows.begin(), rows.end(), focus) - rows.begin();
  selectionModel()->clear();
  rows_->remove(rows);
  if (focus >= 0) setFocusRow(std::min(focus - static_cast<int>(above), rowCount() - 1));
}

QString ListView::cell(int row, int column) const { return rows_->text(row, column); }

void ListView::setCell(int row, int column, const QString& text) {
  if (rows_->setText(row, column, text) && sorting_ && column == sortColumn_) sortNow();
}

bool ListView::isBold(int row) const { return rows_->isBold(row); }

void ListView::setBold(int row, bool bold) { rows_->setBold(row, bold); }

int ListView::findRow(int column, const QString& text) const {
  for (int row = 0; row < rowCount(); ++row)
    if (cell(row, column) == text) return row;
  return -1;
}

bool ListView::isRowSelected(int row) const { return selectionModel()->isSelected(rowAt(row)); }

void ListView::setRowSelected(int row, bool selected) {
  if (!rows_->holds(row)) return;
  if (selected && selectionMode() == SingleSelection) clearSelection();
  selectionModel()->select(
      rowAt(row), (selected ? QItemSelectionModel::Select : QItemSelectionModel::Deselect) | QItemSelectionModel::Rows);
  if (selected && !isRowSelected(currentIndex().row())) setFocusRow(row);
}

void ListView::showRow(int row) {
  if (rows_->holds(row)) scrollTo(rowAt(row));
}

// Going through the ranges: with thousands of them each single row would be looked for in all.
std::vector<int> ListView::selectedRows() const {
  std::vector<int> rows;
  for (const QItemSelectionRange& range : selectionModel()->selection())
    for (int row = range.top(); row <= range.bottom(); ++row) rows.push_back(row);
  std::sort(rows.begin(), rows.end());
  rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
  return rows;
}

int ListView::currentSelectedRow() const {
  const int focus = currentIndex().row();
  int nearest = -1;
  for (const int row : selectedRows())
    if (nearest < 0 || std::abs(row - focus) < std::abs(nearest - focus)) nearest = row;
  return nearest;
}

void ListView::keyboardSearch(const QString& search) {
  setFocusRow(currentIndex().row());
  QTreeView::keyboardSearch(search);
}

void ListView::setSorting(bool on) {
  sorting_ = on;
  if (on) sortNow();
}

void ListView::sortByClick(int column) {
  sortColumn_ = column;
  sortDescending_ = nextClickDescending_;
  nextClickDescending_ = !nextClickDescending_;
  header()->setSortIndicatorShown(true);
  sortNow();
}

void ListView::sortAscending(int column) {
  sortColumn_ = column;
  sortDescending_ = false;
  if (sorting_) sortNow();
}

void ListView::sortNow() {
  const Qt::SortOrder order = sortDescending_ ? Qt::DescendingOrder : Qt::AscendingOrder;
  header()->setSortIndicator(sortColumn_, order);
  rows_->sort(sortColumn_, order);
}

void ListView::setDragText(std::function<QString()> text) {
  rows_->dragText = std::move(text);
  setDragEnabled(static_cast<bool>(rows_->dragText));
}

void ListView::startDrag(Qt::DropActions actions) {
  // The press that begins a drag chooses its row like a click, but no click comes of it.
  const int row = currentSelectedRow();
  if (row >= 0) Q_EMIT rowChosen(row);
  Q_EMIT dragStarted();
  QTreeView::startDrag(actions);
  Q_EMIT dragEnded();
}

void ListView::setAcceptTextDrops(bool on) {
  acceptTextDrops_ = on;
  setAcceptDrops(on);
}

void ListView::mousePressEvent(QMouseEvent* event) {
  // Beside the rows there is nothing to choose, and nothing is unchosen.
  if (indexAt(event->pos()).isValid())
    QTreeView::mousePressEvent(event);
  else
    event->accept();
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
  // A mouse dragged over the rows ends in no click, but moves the selection all the same.
  const bool dragged = state() == DragSelectingState;
  QTreeView::mouseReleaseEvent(event);
  const int row = currentSelectedRow();
  if (dragged && row >= 0) Q_EMIT rowChosen(row);
}

void ListView::keyPressEvent(QKeyEvent* event) {
  const int row = currentSelectedRow();
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      // In an editor whose list opens nothing, Enter is for the OK button.
      if (isSignalConnected(QMetaMethod::fromSignal(&ListView::rowActivated))) break;
      event->ignore();
      return;
    case Qt::Key_F2:
      break;
    case Qt::Key_Delete:
      Q_EMIT deletePressed();
      return;
    case Qt::Key_Escape:
      // Left to itself the view takes it for the beginning of a search.
      event->ignore();
      return;
    default:
      moveByKey(event);
      return;
  }
  if (row >= 0) Q_EMIT rowActivated(row);
}

// The row that the first key chooses: an arrow the one that has the focus frame, instead of passing it by.
int ListView::firstStop(int key) const {
  if (key == Qt::Key_Home) return 0;
  if (key == Qt::Key_End) return rowCount() - 1;
  return currentIndex().row();
}

void ListView::moveByKey(QKeyEvent* event) {
  const int before = currentIndex().row();
  const bool wasSelected = isRowSelected(before);
  if (before >= 0 && !selectionModel()->hasSelection() && event->modifiers() == Qt::NoModifier &&
      isMovement(event->key()))
    selectionModel()->setCurrentIndex(rowAt(firstStop(event->key())),
                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  else
    QTreeView::keyPressEvent(event);

  const int after = currentIndex().row();
  if (isRowSelected(after) && (after != before || (!wasSelected && event->key() != Qt::Key_A))) Q_EMIT rowChosen(after);
}

void ListView::focusInEvent(QFocusEvent* event) {
  QTreeView::focusInEvent(event);
  Q_EMIT entered();
}

bool ListView::takesDrop(QDropEvent& event) const {
  const bool takes = acceptTextDrops_ && event.mimeData()->hasText();
  if (takes)
    event.acceptProposedAction();
  else
    event.ignore();
  return takes;
}

void ListView::dragEnterEvent(QDragEnterEvent* event) { takesDrop(*event); }

void ListView::dragMoveEvent(QDragMoveEvent* event) { takesDrop(*event); }

void ListView::dropEvent(QDropEvent* event) {
  if (takesDrop(*event)) Q_EMIT textDropped(event->mimeData()->text());
}

}  // namespace mv
