// The model of a list: texts under titles, whose rows a click on a title puts in order, in every list alike.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <vector>

namespace mv {

// The order of texts in lists: without case first, "10" before "9".
bool standsBefore(const QString& left, const QString& right);

class TextTable : public QAbstractTableModel {
 public:
  // By the texts of `column`; rows that are equal there keep their order. What points to a row goes with it.
  void sort(int column, Qt::SortOrder order) override;

  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 protected:
  TextTable(const QStringList& titles, QObject* parent) : QAbstractTableModel(parent), titles_(titles) {}
  // Of a table without rows.
  void setTitles(const QStringList& titles);

  // As the list shows it.
  virtual QString cellText(int row, int column) const = 0;
  // Puts the rows into the order in which their present numbers are given.
  virtual void reorder(const std::vector<int>& rows) = 0;

 private:
  std::vector<int> sortedRows(int column, Qt::SortOrder order) const;
  void moveIndexes(const std::vector<int>& rows);

  QStringList titles_;
};

}  // namespace mv
