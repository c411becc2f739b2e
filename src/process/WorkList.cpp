#include "process/WorkList.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "base/Text.h"
#include "base/ToolTip.h"
#include "base/WebAddress.h"

namespace mv {

namespace {
enum Column { kState, kId, kUrl, kUserName, kPassword, kFileName, kFileType };
}  // namespace

const char* stateText(RowState state) {
  switch (state) {
    case RowState::Waiting:
      return "False";
    case RowState::Working:
      return "Working";
    case RowState::Done:
      return "Done";
    case RowState::Exists:
      return "Exists";
    case RowState::Error:
      return "Error";
  }
  return "";
}

const std::string& listedText(const RowAddress& address) {
  const auto* escaped = std::get_if<EscapedAddress>(&address);
  return escaped ? escaped->text() : std::get<std::string>(address);
}

std::string plainAddress(const RowAddress& address) {
  const auto* escaped = std::get_if<EscapedAddress>(&address);
  return escaped ? escaped->restored() : std::get<std::string>(address);
}

WorkList::WorkList(const QStringList& titles, QObject* parent) : QAbstractTableModel(parent), titles_(titles) {}

void WorkList::append(WorkRow row) {
  beginInsertRows({}, count(), count());
  add(std::move(row));
  endInsertRows();
}

void WorkList::append(std::vector<WorkRow> rows) {
  if (rows.empty()) return;
  beginInsertRows({}, count(), count() + static_cast<int>(rows.size()) - 1);
  for (WorkRow& row : rows) add(std::move(row));
  endInsertRows();
}

void WorkList::add(WorkRow row) {
  // Of rows with the same id the first in the list is the one that is found.
  byLink_.emplace(row.linkId, count());
  if (row.state == RowState::Waiting) ++waitingCount_;
  if (row.tagged) addresses_.insert(listedText(row.url));
  rows_.push_back(std::move(row));
}

void WorkList::clear() {
  beginResetModel();
  rows_.clear();
  byLink_.clear();
  addresses_.clear();
  waitingCount_ = 0;
  waitingCursor_ = 0;
  endResetModel();
}

void WorkList::setState(int index, RowState state) {
  RowState& shown = rows_[static_cast<std::size_t>(index)].state;
  waitingCount_ += (state == RowState::Waiting ? 1 : 0) - (shown == RowState::Waiting ? 1 : 0);
  shown = state;
  if (state == RowState::Waiting) waitingCursor_ = std::min(waitingCursor_, index);
  const QModelIndex cell = this->index(index, kState);
  Q_EMIT dataChanged(cell, cell);
}

int WorkList::nextWaiting() const {
  while (waitingCursor_ < count() && row(waitingCursor_).state != RowState::Waiting) ++waitingCursor_;
  return waitingCursor_ < count() ? waitingCursor_ : -1;
}

int WorkList::findLink(std::int64_t linkId) const {
  const auto found = byLink_.find(linkId);
  return found == byLink_.end() ? -1 : found->second;
}

bool WorkList::holdsAddress(const std::string& url) const { return addresses_.contains(url); }

void WorkList::sort(int column, Qt::SortOrder order) {
  if (column < 0 || column >= columnCount()) return;
  Q_EMIT layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
  reorder(sortedRows(column, order));
  Q_EMIT layoutChanged({}, QAbstractItemModel::VerticalSortHint);
}

// The present row numbers in their new order.
std::vector<int> WorkList::sortedRows(int column, Qt::SortOrder order) const {
  std::vector<QString> keys;
  keys.reserve(rows_.size());
  for (const WorkRow& row : rows_) keys.push_back(toQString(cellText(row, column)));
  const auto before = [&keys](int left, int right) {
    const QString& a = keys[static_cast<std::size_t>(left)];
    const QString& b = keys[static_cast<std::size_t>(right)];
    const int folded = a.compare(b, Qt::CaseInsensitive);
    return folded != 0 ? folded < 0 : a < b;
  };
  std::vector<int> sorted(rows_.size());
  std::iota(sorted.begin(), sorted.end(), 0);
  if (order == Qt::AscendingOrder)
    std::stable_sort(sorted.begin(), sorted.end(), before);
  else
    std::stable_sort(sorted.begin(), sorted.end(), [&before](int left, int right) { return before(right, left); });
  return sorted;
}

void WorkList::reorder(const std::vector<int>& sorted) {
  std::deque<WorkRow> rows;
  std::vector<int> newPlace(rows_.size());
  for (const int old : sorted) {
    newPlace[static_cast<std::size_t>(old)] = static_cast<int>(rows.size());
    rows.push_back(std::move(rows_[static_cast<std::size_t>(old)]));
  }
  rows_ = std::move(rows);

  byLink_.clear();
  for (int index = 0; index < count(); ++index) byLink_.emplace(row(index).linkId, index);
  waitingCursor_ = 0;

  const QModelIndexList from = persistentIndexList();
  QModelIndexList to;
  for (const QModelIndex& old : from) to.append(index(newPlace[static_cast<std::size_t>(old.row())], old.column()));
  changePersistentIndexList(from, to);
}

int WorkList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

int WorkList::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(titles_.size());
}

QVariant WorkList::data(const QModelIndex& index, int role) const {
  const bool shown = role == Qt::DisplayRole || (role == Qt::ToolTipRole && index.column() == kUrl);
  if (!shown || !checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const QString text = toQString(cellText(row(index.row()), index.column()));
  return role == Qt::ToolTipRole ? plainToolTip(text) : text;
}

QVariant WorkList::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
    return QAbstractTableModel::headerData(section, orientation, role);
  return titles_.value(section);
}

std::string WorkList::cellText(const WorkRow& row, int column) const {
  switch (column) {
    case kState:
      return stateText(row.state);
    case kId:
      return std::to_string(row.linkId);
    case kUrl:
      return maskPassword(listedText(row.url));
    case kUserName:
      return row.userName;
    case kPassword:
      return row.password;
    case kFileName:
      return row.fileName;
    case kFileType:
      return row.fileType;
    default:
      return {};
  }
}

}  // namespace mv
