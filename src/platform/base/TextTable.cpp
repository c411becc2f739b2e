#include "base/TextTable.h"

#include <algorithm>
#include <numeric>

namespace mv {

namespace {

// Characters that both begin with. A list's texts are much alike, and comparing without case takes many times as long
// for each character.
qsizetype sameStart(const QString& left, const QString& right) {
  const qsizetype same = std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first - left.begin();
  // Halves of one character have no order of their own.
  return same > 0 && left[same - 1].isHighSurrogate() ? same - 1 : same;
}

}  // namespace

bool standsBefore(const QString& left, const QString& right) {
  const qsizetype same = sameStart(left, right);
  const int folded = QStringView(left).mid(same).compare(QStringView(right).mid(same), Qt::CaseInsensitive);
  return folded != 0 ? folded < 0 : left < right;
}

void TextTable::setTitles(const QStringList& titles) {
  beginResetModel();
  titles_ = titles;
  endResetModel();
}

int TextTable::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(titles_.size());
}

QVariant TextTable::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  return cellText(index.row(), index.column());
}

QVariant TextTable::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
    return QAbstractTableModel::headerData(section, orientation, role);
  return titles_.value(section);
}

void TextTable::sort(int column, Qt::SortOrder order) {
  if (column < 0 || column >= columnCount()) return;
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  const std::vector<int> rows = sortedRows(column, order);
  reorder(rows);
  moveIndexes(rows);
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

// The present row numbers in their new order.
std::vector<int> TextTable::sortedRows(int column, Qt::SortOrder order) const {
  std::vector<QString> keys;
  keys.reserve(static_cast<std::size_t>(rowCount()));
  for (int row = 0; row < rowCount(); ++row) keys.push_back(cellText(row, column));
  const auto before = [&keys](int left, int right) {
    return standsBefore(keys[static_cast<std::size_t>(left)], keys[static_cast<std::size_t>(right)]);
  };
  std::vector<int> sorted(keys.size());
  std::iota(sorted.begin(), sorted.end(), 0);
  if (order == Qt::AscendingOrder)
    std::stable_sort(sorted.begin(), sorted.end(), before);
  else
    std::stable_sort(sorted.begin(), sorted.end(), [&before](int left, int right) { return before(right, left); });
  return sorted;
}

void TextTable::moveIndexes(const std::vector<int>& rows) {
  std::vector<int> newPlace(rows.size());
  for (std::size_t place = 0; place < rows.size(); ++place)
    newPlace[static_cast<std::size_t>(rows[place])] = static_cast<int>(place);
  const QModelIndexList from = persistentIndexList();
  QModelIndexList to;
  to.reserve(from.size());
  for (const QModelIndex& old : from) to.append(index(newPlace[static_cast<std::size_t>(old.row())], old.column()));
  changePersistentIndexList(from, to);
}

}  // namespace mv
