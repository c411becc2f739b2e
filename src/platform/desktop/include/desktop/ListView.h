// The list in report view that managers and editors use: a row's text and its sub-items under column headers, sorting
// by column, selection of one or several rows, drag and drop of texts. Column 0 is the row's own text. Some thousand
// rows are not felt when they are set, added or removed together; the process windows' work lists have a model of their
// own.
#pragma once

#include <QStringList>
#include <QTreeView>
#include <functional>
#include <string>
#include <vector>

namespace mv {

struct ListColumn {
  QString title;
  int characters = 14;  // that its cells have room for
  bool hidden = false;  // a value that the window needs and the user does not
};

class ListRows;

class ListView : public QTreeView {
  Q_OBJECT
 public:
  explicit ListView(QWidget* parent = nullptr);

  // The first column takes the room that the others leave.
  void setColumns(const std::vector<ListColumn>& columns);
  // All columns, and some rows.
  QSize sizeHint() const override;
  void setMultiSelect(bool on);

  // In place of the rows that there are; in their order, or, while sorting is on, in that of the list. None is
  // selected.
  void setRows(std::vector<QStringList> rows);
  void clearRows() { setRows({}); }
  // Appends a row, or, while sorting is on, puts it in its place; appended, it leaves the order that a header was
  // clicked for, and the header's arrow goes. Not selected. Returns its row number.
  int addRow(const QStringList& texts, bool bold = false);
  // The same for several at once.
  void addRows(std::vector<QStringList> rows);
  void removeRow(int row);
  // In ascending order. None is selected afterwards.
  void removeRows(const std::vector<int>& rows);
  int rowCount() const;
  int columnCount() const;
  QString cell(int row, int column) const;
  void setCell(int row, int column, const QString& text);
  bool isBold(int row) const;
  void setBold(int row, bool bold);
  // First row whose text in `column` equals `text` exactly, -1 when none.
  int findRow(int column, const QString& text) const;

  bool isRowSelected(int row) const;
  void setRowSelected(int row, bool selected);
  // Scrolls as little as shows the row.
  void showRow(int row);
  // In list order.
  std::vector<int> selectedRows() const;
  // The selected row nearest the keyboard focus, -1 when none is selected.
  int currentSelectedRow() const;

  // Type-ahead goes by the row's own text, whichever column was clicked.
  void keyboardSearch(const QString& search) override;

  // Sorting compares texts ("10" before "9"), without case first; equal rows keep their order.
  // While on, the list is kept in order of the current sort column and direction.
  void setSorting(bool on);
  // The column-header rule of the list windows: sorts by `column`, ascending or descending by a flag that is one for
  // the whole list and turns at every call; the first call sorts ascending. Connected to header clicks by default.
  void sortByClick(int column);
  // Ascending by `column` from now on; what the next click on a header does stays as it is.
  void sortAscending(int column);
  void setHeaderClickSorts(bool on) { headerClickSorts_ = on; }

  // What a drag of the selected rows carries, asked when it starts; without one the list is no drag source.
  void setDragText(std::function<QString()> text);
  void setAcceptTextDrops(bool on);

 Q_SIGNALS:
  // The user chose a row: a click, or the keyboard moved the selection to it.
  void rowChosen(int row);
  // Double click, Enter or F2.
  void rowActivated(int row);
  // The Delete key.
  void deletePressed();
  // The list got the keyboard focus.
  void entered();
  void textDropped(const QString& text);
  // Around a drag out of this list: before its text is asked, and when it is over, dropped or given up. Between them
  // events run, and the list must not be deleted.
  void dragStarted();
  void dragEnded();

 protected:
  void startDrag(Qt::DropActions actions) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void sortNow();
  int sortedPlace(const QString& text) const;
  QModelIndex rowAt(int row) const;
  // The keyboard focus; what is selected stays.
  void setFocusRow(int row);
  void moveByKey(QKeyEvent* event);
  int firstStop(int key) const;
  // Answers a drag over the list or a drop on it.
  bool takesDrop(QDropEvent& event) const;

  ListRows* rows_;
  bool sorting_ = false;
  bool headerClickSorts_ = true;
  int sortColumn_ = 0;
  bool sortDescending_ = false;  // order of the list as it stands
  bool nextClickDescending_ = false;
  bool acceptTextDrops_ = false;
};

}  // namespace mv
