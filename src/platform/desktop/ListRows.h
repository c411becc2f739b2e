// The rows of a ListView.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "base/TextTable.h"

namespace mv {

class ListRows : public TextTable {
 public:
  explicit ListRows(QWidget& view) : TextTable({}, &view), view_(view) {}

  using TextTable::setTitles;
  // What a drag of rows carries; without it they cannot be dragged.
  std::function<QString()> dragText;

  // In place of those that there are.
  void replace(std::vector<QStringList> rows);
  void insert(int row, const QStringList& texts, bool bold);
  // Behind the others.
  void append(std::vector<QStringList> rows);
  void remove(int row);
  // `rows` in ascending order. No index stays valid.
  void remove(const std::vector<int>& rows);

  bool holds(int row) const { return row >= 0 && row < rowCount(); }
  // "" where there is none.
  QString text(int row, int column) const { return holds(row) ? cellText(row, column) : QString(); }
  // False when it is there already, or there is no such row.
  bool setText(int row, int column, const QString& text);
  bool isBold(int row) const { return holds(row) && at(row).bold; }
  void setBold(int row, bool bold);

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QStringList mimeTypes() const override;
  QMimeData* mimeData(const QModelIndexList& indexes) const override;

 protected:
  QString cellText(int row, int column) const override { return at(row).texts.value(column); }
  void reorder(const std::vector<int>& rows) override;

 private:
  struct Row {
    QStringList texts;
    bool bold = false;
  };
  const Row& at(int row) const { return rows_[static_cast<std::size_t>(row)]; }
  Row& at(int row) { return rows_[static_cast<std::size_t>(row)]; }

  const QWidget& view_;
  std::vector<Row> rows_;
};

}  // namespace mv
