#include <gtest/gtest.h>

#include <QSignalSpy>

#include "base/TextTable.h"
#include "testkit/Controls.h"

namespace {

using namespace mvtest;
using mv::ListView;
using Texts = std::vector<QString>;

class ListViewTest : public ::testing::Test {
 protected:
  ListViewTest() {
    list.setColumns({{"Name", 16}, {"Number", 8}, {"Id", 4, true}});
    list.resize(400, 300);
    list.show();
  }

  void fill(const QStringList& names) {
    for (const QString& name : names) list.addRow({name, QString::number(name.size()), "id-" + name});
  }
  QPoint at(int row) const { return middleOf(list, row); }
  Texts texts() const { return columnTexts(list); }

  ListView list;
};

TEST_F(ListViewTest, HeaderClicksSortTextsInTurnWhateverTheColumn) {
  fill({"b", "A", "a", "10", "9", "B"});
  for (const int column : {0, 1}) {
    clickHeader(list, column);  // the second click sorts descending, equal rows keep their order
    EXPECT_EQ(texts(), Texts({"10", "9", "A", "a", "B", "b"}));
  }
}

// As Qt compares them as wholes.
TEST(TextOrder, GoesWithoutCaseFirst) {
  const QStringList list = {"",
                            "a",
                            "A",
                            "aB",
                            "Ab",
                            "ab1",
                            "aB0",
                            "z",
                            "\u00e4",
                            "\u00c4b",
                            "10",
                            "9",
                            "\uffee",
                            QString::fromUcs4(U"\U0001F600"),
                            QString::fromUcs4(U"\U0001F601"),
                            QString::fromUcs4(U"x\U00010400b"),
                            QString::fromUcs4(U"x\U00010428a")};
  for (const QString& left : list)
    for (const QString& right : list) {
      const int folded = left.compare(right, Qt::CaseInsensitive);
      EXPECT_EQ(mv::standsBefore(left, right), folded < 0 || (folded == 0 && left < right))
          << left.toStdString() << ' ' << right.toStdString();
    }
}

TEST_F(ListViewTest, KeepsItsOrderWhileSortingIsOn) {
  fill({"delta", "alpha"});
  list.setBold(0, true);
  list.setRowSelected(0, true);
  list.setSorting(true);
  EXPECT_EQ(list.selectedRows(), std::vector<int>({1}));
  EXPECT_TRUE(list.isBold(1));
  EXPECT_EQ(list.addRow({"Charlie"}), 1);
  EXPECT_EQ(list.addRow({"ALPHA"}), 0);
  list.setCell(0, 0, "november");
  EXPECT_EQ(texts(), Texts({"alpha", "Charlie", "delta", "november"}));
  list.sortByClick(0);
  list.sortByClick(0);
  EXPECT_EQ(list.addRow({"mike"}), 1) << "descending";
  list.setSorting(false);
  EXPECT_EQ(list.addRow({"oscar"}), 5);
}

TEST_F(ListViewTest, TheUserChoosesRowsTheProgramDoesNot) {
  fill({"one", "two", "three"});
  QSignalSpy chosen(&list, &ListView::rowChosen);
  list.setRowSelected(1, true);
  list.setSorting(true);
  list.setSorting(false);
  EXPECT_TRUE(chosen.isEmpty());
  const auto expectChosen = [&](int row) {
    ASSERT_FALSE(chosen.isEmpty());
    EXPECT_EQ(chosen.last().at(0).toInt(), row);
    EXPECT_EQ(list.selectedRows(), std::vector<int>({row}));
    chosen.clear();
  };
  clickRow(list, 2);
  expectChosen(2);
  QTest::keyClick(&list, Qt::Key_Up);
  expectChosen(1);
  list.clearSelection();
  QTest::keyClick(&list, Qt::Key_Down);
  expectChosen(1);  // the first key chooses the row with the focus frame
  for (const auto& [key, row] : {std::pair(Qt::Key_End, 2), std::pair(Qt::Key_Home, 0)}) {
    list.clearSelection();
    QTest::keyClick(&list, key);
    expectChosen(row);
  }

  QTest::mousePress(list.viewport(), Qt::LeftButton, Qt::NoModifier, at(0));
  QMouseEvent move(QEvent::MouseMove, at(2), list.viewport()->mapToGlobal(at(2)), Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(list.viewport(), &move);
  QTest::mouseRelease(list.viewport(), Qt::LeftButton, Qt::NoModifier, at(2));
  expectChosen(2);  // marked by dragging the mouse it is the one that Edit and Delete go for
  list.removeRow(2);
  EXPECT_EQ(list.currentSelectedRow(), -1);
  EXPECT_TRUE(chosen.isEmpty()) << "no other takes its place";
}

TEST_F(ListViewTest, ThousandsOfRowsComeAndGoInOneStep) {
  const auto numbersDownFrom = [](int last, int count) {
    std::vector<QStringList> rows;
    for (int number = last; number > last - count; --number) rows.push_back({QString::number(number)});
    return rows;
  };
  list.setMultiSelect(true);
  list.setSorting(true);
  QSignalSpy inserted(list.model(), &QAbstractItemModel::rowsInserted);
  QSignalSpy removed(list.model(), &QAbstractItemModel::rowsRemoved);
  QSignalSpy replaced(list.model(), &QAbstractItemModel::modelReset);
  list.setRows(numbersDownFrom(8999, 3000));
  ASSERT_EQ(list.rowCount(), 3000);
  EXPECT_EQ(list.cell(0, 0), "6000");
  for (int row = 1; row < 3000; row += 2) list.setRowSelected(row, true);

  list.addRows(numbersDownFrom(1999, 1000));
  const std::vector<int> odd = list.selectedRows();
  ASSERT_EQ(odd.size(), 1500U) << "the selected rows stay so";
  EXPECT_EQ(list.cell(odd.front(), 0), "6001");
  list.setCurrentIndex(list.model()->index(odd[1], 0));
  for (const int row : odd) list.setRowSelected(row, true);
  list.removeRows(odd);
  EXPECT_EQ(list.rowCount(), 2500);
  EXPECT_EQ(list.cell(2499, 0), "8998");
  EXPECT_EQ(list.cell(list.currentIndex().row(), 0), "6004") << "the row behind the one that had the focus frame";
  EXPECT_TRUE(list.selectedRows().empty());
  EXPECT_EQ(inserted.size(), 1);
  EXPECT_EQ(removed.size(), 0);
  EXPECT_EQ(replaced.size(), 2);
}

TEST_F(ListViewTest, TheArrowShowsTheOrderAsLongAsItHolds) {
  list.setSorting(true);
  clickHeader(list, 0);
  list.setRows({{"b"}, {"a"}});
  EXPECT_EQ(texts(), Texts({"a", "b"}));
  EXPECT_TRUE(list.header()->isSortIndicatorShown());
  list.setSorting(false);
  list.setRows({{"b"}, {"a"}});
  EXPECT_EQ(texts(), Texts({"b", "a"}));
  EXPECT_FALSE(list.header()->isSortIndicatorShown());
}

}  // namespace
