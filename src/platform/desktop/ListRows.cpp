#include "ListRows.h"

#include <QFont>
#include <QMimeData>
#include <utility>

namespace mv {

namespace {
const QString kTextType = "text/plain";
}  // namespace

void ListRows::replace(std::vector<QStringList> rows) {
  beginResetModel();
  rows_.clear();
  rows_.reserve(rows.size());
  for (QStringList& texts : rows) rows_.push_back({std::move(texts)});
  endResetModel();
}

void ListRows::insert(int row, const QStringList& texts, bool bold) {
  beginInsertRows({}, row, row);
  rows_.insert(rows_.begin() + row, {texts, bold});
  endInsertRows();
}

void ListRows::append(std::vector<QStringList> rows) {
  if (rows.empty()) return;
  beginInsertRows({}, rowCount(), rowCount() + static_cast<int>(rows.size()) - 1);
  for (QStringList& texts : rows) rows_.push_back({std::move(texts)});
  endInsertRows();
}

void ListRows::remove(int row) {
  beginRemoveRows({}, row, row);
  rows_.erase(rows_.begin() + row);
  endRemoveRows();
}

void ListRows::remove(const std::vector<int>& rows) {
  beginResetModel();
  std::vector<Row> left;
  auto gone = rows.begin();
  for (int row = 0; row < rowCount(); ++row) {
    if (gone != rows.end() && *gone == row)
      ++gone;
    else
      left.push_back(std::move(at(row)));
  }
  rows_ = std::move(left);
  endResetModel();
}

bool ListRows::setText(int row, int column, const QString& text) {
  if (!holds(row) || cellText(row, column) == text) return false;
  QStringList& texts = at(row).texts;
  while (texts.size() <= column) texts << QString();
  texts[column] = text;
  Q_EMIT dataChanged(index(row, column), index(row, column));
  return true;
}

void ListRows::setBold(int row, bool bold) {
  if (!holds(row) || isBold(row) == bold) return;
  at(row).bold = bold;
  Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
}

int ListRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant ListRows::data(const QModelIndex& index, int role) const {
  if (role != Qt::FontRole || !isBold(index.row())) return TextTable::data(index, role);
  QFont type = view_.font();
  type.setBold(true);
  return type;
}

Qt::ItemFlags ListRows::flags(const QModelIndex& index) const {
  const Qt::ItemFlags every = TextTable::flags(index);
  return index.isValid() && dragText ? every | Qt::ItemIsDragEnabled : every;
}

QStringList ListRows::mimeTypes() const { return {kTextType}; }

QMimeData* ListRows::mimeData(const QModelIndexList&) const {
  auto* carried = new QMimeData;
  if (dragText) carried->setText(dragText());
  return carried;
}

void ListRows::reorder(const std::vector<int>& rows) {
  std::vector<Row> moved;
  moved.reserve(rows.size());
  for (const int old : rows) moved.push_back(std::move(at(old)));
  rows_ = std::move(moved);
}

}  // namespace mv
