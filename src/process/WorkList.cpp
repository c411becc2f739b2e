#include "process/WorkList.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "base/ToolTip.h"
#include "base/WebAddress.h"

namespace mv {

namespace {

enum Column { kState, kId, kUrl, kUserName, kPassword, kFileName, kFileType };

std::string textOf(const WorkRow& row, int column) {
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

WorkList::WorkList(const QStringList& titles, QObject* parent) : TextTable(titles, parent) {}

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

void WorkList::reorder(const std::vector<int>& rows) {
  std::deque<WorkRow> moved;
  for (const int old : rows) moved.push_back(std::move(rows_[static_cast<std::size_t>(old)]));
  rows_ = std::move(moved);

  byLink_.clear();
  for (int index = 0; index < count(); ++index) byLink_.emplace(row(index).linkId, index);
  waitingCursor_ = 0;
}

int WorkList::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant WorkList::data(const QModelIndex& index, int role) const {
  if (role != Qt::ToolTipRole || index.column() != kUrl) return TextTable::data(index, role);
  return plainToolTip(TextTable::data(index, Qt::DisplayRole).toString());
}

QString WorkList::cellText(int index, int column) const { return toQString(textOf(row(index), column)); }

}  // namespace mv
