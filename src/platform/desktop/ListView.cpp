#include "desktop/ListView.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMetaMethod>
#include <QMimeData>
#include <QMouseEvent>
#include <cstdlib>

#include "desktop/ListColumns.h"

namespace mv {
namespace {

const QString kTextType = "text/plain";
constexpr int kRowsAskedFor = 4;

bool lessText(const QString& a, const QString& b) {
  const int order = a.compare(b, Qt::CaseInsensitive);
  return order != 0 ? order < 0 : a < b;
}

// A row that compares as lists sort: without case first.
class Row : public QTreeWidgetItem {
 public:
  using QTreeWidgetItem::QTreeWidgetItem;
  bool operator<(const QTreeWidgetItem& other) const override {
    const int column = treeWidget() ? treeWidget()->sortColumn() : 0;
    return lessText(text(column), other.text(column));
  }
};

bool isMovement(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Home || key == Qt::Key_End ||
         key == Qt::Key_PageUp || key == Qt::Key_PageDown;
}

}  // namespace

ListView::ListView(QWidget* parent) : QTreeWidget(parent) {
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
  connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
    const int row = item->isSelected() ? indexOfTopLevelItem(item) : currentSelectedRow();
    if (row >= 0) Q_EMIT rowChosen(row);
  });
  connect(this, &QTreeWidget::itemDoubleClicked, this,
          [this](QTreeWidgetItem* item) { Q_EMIT rowActivated(indexOfTopLevelItem(item)); });
}

void ListView::setColumns(const std::vector<ListColumn>& columns) {
  setColumnCount(static_cast<int>(columns.size()));
  QStringList titles;
  for (const ListColumn& column : columns) titles << column.title;
  setHeaderLabels(titles);
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

int ListView::addRow(const QStringList& texts, bool bold) {
  auto* item = new Row(texts);
  const int row = sorting_ ? sortedPlace(item->text(sortColumn_)) : rowCount();
  if (!sorting_) header()->setSortIndicatorShown(false);
  insertTopLevelItem(row, item);
  if (bold) setBold(row, true);
  return row;
}

// Behind the rows that are equal, so that they keep the order in which they came.
int ListView::sortedPlace(const QString& text) const {
  int low = 0;
  int high = rowCount();
  while (low < high) {
    const int middle = low + (high - low) / 2;
    const QString& there = topLevelItem(middle)->text(sortColumn_);
    const bool before = sortDescending_ ? lessText(there, text) : lessText(text, there);
    if (before)
      high = middle;
    else
      low = middle + 1;
  }
  return low;
}

void ListView::removeRow(int row) {
  QTreeWidgetItem* item = topLevelItem(row);
  if (!item) return;
  if (item == currentItem()) {
    // Left to itself the view selects the neighbour.
    QTreeWidgetItem* next = topLevelItem(row + 1 < rowCount() ? row + 1 : row - 1);
    setCurrentItem(next, 0, QItemSelectionModel::NoUpdate);
  }
  delete takeTopLevelItem(row);
}

void ListView::clearRows() { clear(); }

QString ListView::cell(int row, int column) const {
  const QTreeWidgetItem* item = topLevelItem(row);
  return item ? item->text(column) : QString();
}

void ListView::setCell(int row, int column, const QString& text) {
  QTreeWidgetItem* item = topLevelItem(row);
  if (!item) return;
  item->setText(column, text);
  if (sorting_ && column == sortColumn_) sortNow();
}

bool ListView::isBold(int row) const {
  const QTreeWidgetItem* item = topLevelItem(row);
  return item && item->font(0).bold();
}

void ListView::setBold(int row, bool bold) {
  QTreeWidgetItem* item = topLevelItem(row);
  if (!item) return;
  QFont type = font();
  type.setBold(bold);
  for (int column = 0; column < columnCount(); ++column)
    item->setData(column, Qt::FontRole, bold ? QVariant(type) : QVariant());
}

int ListView::findRow(int column, const QString& text) const {
  for (int row = 0; row < rowCount(); ++row)
    if (topLevelItem(row)->text(column) == text) return row;
  return -1;
}

bool ListView::isRowSelected(int row) const {
  const QTreeWidgetItem* item = topLevelItem(row);
  return item && item->isSelected();
}

void ListView::setRowSelected(int row, bool selected) {
  QTreeWidgetItem* item = topLevelItem(row);
  if (!item) return;
  if (selected && selectionMode() == SingleSelection) clearSelection();
  item->setSelected(selected);
  if (selected && (!currentItem() || !currentItem()->isSelected()))
    setCurrentItem(item, 0, QItemSelectionModel::NoUpdate);
}

void ListView::showRow(int row) {
  if (QTreeWidgetItem* item = topLevelItem(row)) scrollToItem(item);
}

std::vector<int> ListView::selectedRows() const {
  std::vector<int> rows;
  for (int row = 0; row < rowCount(); ++row)
    if (topLevelItem(row)->isSelected()) rows.push_back(row);
  return rows;
}

int ListView::currentSelectedRow() const {
  const int focus = indexOfTopLevelItem(currentItem());
  int nearest = -1;
  for (const int row : selectedRows())
    if (nearest < 0 || std::abs(row - focus) < std::abs(nearest - focus)) nearest = row;
  return nearest;
}

void ListView::keyboardSearch(const QString& search) {
  if (currentItem()) setCurrentItem(currentItem(), 0, QItemSelectionModel::NoUpdate);
  QTreeWidget::keyboardSearch(search);
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

void ListView::sortNow() { sortItems(sortColumn_, sortDescending_ ? Qt::DescendingOrder : Qt::AscendingOrder); }

void ListView::setDragText(std::function<QString()> text) {
  dragText_ = std::move(text);
  setDragEnabled(static_cast<bool>(dragText_));
}

void ListView::startDrag(Qt::DropActions actions) {
  // The press that begins a drag chooses its row like a click, but no click comes of it.
  const int row = currentSelectedRow();
  if (row >= 0) Q_EMIT rowChosen(row);
  Q_EMIT dragStarted();
  QTreeWidget::startDrag(actions);
  Q_EMIT dragEnded();
}

void ListView::setAcceptTextDrops(bool on) {
  acceptTextDrops_ = on;
  setAcceptDrops(on);
}

void ListView::mousePressEvent(QMouseEvent* event) {
  // Beside the rows there is nothing to choose, and nothing is unchosen.
  if (itemAt(event->pos()))
    QTreeWidget::mousePressEvent(event);
  else
    event->accept();
}

void ListView::mouseReleaseEvent(QMouseEvent* event) {
  // A mouse dragged over the rows ends in no click, but moves the selection all the same.
  const bool dragged = state() == DragSelectingState;
  QTreeWidget::mouseReleaseEvent(event);
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
QTreeWidgetItem* ListView::firstStop(int key) const {
  if (key == Qt::Key_Home) return topLevelItem(0);
  if (key == Qt::Key_End) return topLevelItem(rowCount() - 1);
  return currentItem();
}

void ListView::moveByKey(QKeyEvent* event) {
  const QTreeWidgetItem* before = currentItem();
  const bool wasSelected = before && before->isSelected();
  if (before && !wasSelected && event->modifiers() == Qt::NoModifier && isMovement(event->key()) &&
      selectedItems().isEmpty())
    setCurrentItem(firstStop(event->key()), 0, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  else
    QTreeWidget::keyPressEvent(event);

  const QTreeWidgetItem* after = currentItem();
  if (after && after->isSelected() && (after != before || (!wasSelected && event->key() != Qt::Key_A)))
    Q_EMIT rowChosen(indexOfTopLevelItem(currentItem()));
}

void ListView::focusInEvent(QFocusEvent* event) {
  QTreeWidget::focusInEvent(event);
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

QMimeData* ListView::mimeData(const QList<QTreeWidgetItem*>&) const {
  auto* carried = new QMimeData;
  if (dragText_) carried->setText(dragText_());
  return carried;
}

QStringList ListView::mimeTypes() const { return {kTextType}; }

}  // namespace mv
