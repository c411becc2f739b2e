#include <gtest/gtest.h>

#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QMimeData>
#include <QSignalSpy>
#include <QTest>

#include "platform/ListView.h"
#include "support/Controls.h"

namespace {

using mv::ListView;

QStringList texts(const ListView& list, int column = 0) {
  QStringList all;
  for (int row = 0; row < list.rowCount(); ++row) all << list.cell(row, column);
  return all;
}

class ListViewTest : public ::testing::Test {
 protected:
  ListViewTest() {
    list.setColumns({{"Name", 120}, {"Number", 60}, {"Id", 40, true}});
    list.resize(400, 300);
    list.show();
  }

  void fill(const QStringList& names) {
    for (const QString& name : names) list.addRow({name, QString::number(name.size()), "id-" + name});
  }
  QPoint at(int row) const { return list.visualItemRect(list.topLevelItem(row)).center(); }
  void click(int row, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QTest::mouseClick(list.viewport(), Qt::LeftButton, keys, at(row));
  }
  void clickHeader(int column) { mvtest::clickHeader(list, column); }

  ListView list;
};

TEST_F(ListViewTest, HeaderClicksSortTextsInTurnWhateverTheColumn) {
  fill({"b", "A", "a", "10", "9", "B"});
  clickHeader(0);
  EXPECT_EQ(texts(list), QStringList({"10", "9", "A", "a", "B", "b"}));
  clickHeader(1);
  EXPECT_EQ(texts(list, 1), QStringList({"2", "1", "1", "1", "1", "1"})) << "the second click sorts descending";
  EXPECT_EQ(texts(list), QStringList({"10", "9", "A", "a", "B", "b"})) << "equal rows keep their order";
  clickHeader(0);
  EXPECT_EQ(texts(list).first(), "10");

  list.setHeaderClickSorts(false);
  clickHeader(0);
  EXPECT_EQ(texts(list).first(), "10");
}

TEST_F(ListViewTest, KeepsItsOrderWhileSortingIsOn) {
  fill({"delta", "alpha"});
  EXPECT_EQ(texts(list), QStringList({"delta", "alpha"}));
  list.setSorting(true);
  EXPECT_EQ(list.addRow({"Charlie"}), 1);
  EXPECT_EQ(list.addRow({"zulu"}), 3);
  EXPECT_EQ(list.addRow({"ALPHA"}), 0);
  EXPECT_EQ(texts(list), QStringList({"ALPHA", "alpha", "Charlie", "delta", "zulu"}));
  list.setCell(0, 0, "november");
  EXPECT_EQ(texts(list), QStringList({"alpha", "Charlie", "delta", "november", "zulu"}));

  list.sortByClick(0);
  list.sortByClick(0);
  EXPECT_EQ(texts(list).first(), "zulu");
  EXPECT_EQ(list.addRow({"oscar"}), 1) << "descending";
  list.setSorting(false);
  EXPECT_EQ(list.addRow({"mike"}), 6);
}

TEST_F(ListViewTest, SortingKeepsSelectionAndType) {
  list.setMultiSelect(true);
  fill({"c", "b", "a"});
  list.setBold(0, true);
  list.setRowSelected(0, true);
  list.setRowSelected(2, true);
  list.setSorting(true);
  EXPECT_EQ(list.selectedRows(), std::vector<int>({0, 2}));
  EXPECT_TRUE(list.isBold(2));
  EXPECT_FALSE(list.isBold(0));
  list.setBold(2, false);
  EXPECT_FALSE(list.isBold(2));
}

TEST_F(ListViewTest, TheUserChoosesRowsTheProgramDoesNot) {
  fill({"one", "two", "three"});
  QSignalSpy chosen(&list, &ListView::rowChosen);
  list.setRowSelected(1, true);
  list.addRow({"four"});
  list.setSorting(true);
  list.setSorting(false);
  EXPECT_TRUE(chosen.isEmpty());

  click(2);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen.takeFirst().at(0).toInt(), 2);
  EXPECT_EQ(list.selectedRows(), std::vector<int>({2}));

  QTest::keyClick(&list, Qt::Key_Up);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen.takeFirst().at(0).toInt(), 1);

  QTest::keyClick(&list, 'f');
  ASSERT_EQ(chosen.size(), 1) << "type-ahead";
  EXPECT_EQ(list.cell(chosen.takeFirst().at(0).toInt(), 0), "four");

  QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 280));
  EXPECT_TRUE(chosen.isEmpty());
  EXPECT_EQ(list.selectedRows().size(), 1U) << "beside the rows nothing is unchosen";
}

TEST_F(ListViewTest, TheFirstArrowKeyChoosesTheFirstRow) {
  fill({"one", "two"});
  QSignalSpy chosen(&list, &ListView::rowChosen);
  list.setCurrentItem(list.topLevelItem(0), 0, QItemSelectionModel::NoUpdate);
  QTest::keyClick(&list, Qt::Key_Down);
  ASSERT_EQ(chosen.size(), 1);
  EXPECT_EQ(chosen.first().at(0).toInt(), 0);
}

TEST_F(ListViewTest, SelectsSeveralRowsOnlyWhereItMay) {
  fill({"one", "two", "three"});
  list.setRowSelected(0, true);
  list.setRowSelected(2, true);
  EXPECT_EQ(list.selectedRows(), std::vector<int>({2}));
  QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(list.selectedRows().size(), 1U);

  list.setMultiSelect(true);
  QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(list.selectedRows().size(), 3U);
  click(1);
  click(2, Qt::ControlModifier);
  EXPECT_EQ(list.selectedRows(), std::vector<int>({1, 2}));
  EXPECT_EQ(list.currentSelectedRow(), 2);
  list.setRowSelected(2, false);
  EXPECT_EQ(list.currentSelectedRow(), 1);
}

TEST_F(ListViewTest, RemovingTheSelectedRowSelectsNoOther) {
  fill({"one", "two", "three"});
  QSignalSpy chosen(&list, &ListView::rowChosen);
  click(1);
  list.removeRow(1);
  EXPECT_EQ(texts(list), QStringList({"one", "three"}));
  EXPECT_EQ(list.currentSelectedRow(), -1);
  list.removeRow(1);
  list.removeRow(0);
  list.removeRow(0);
  EXPECT_EQ(list.rowCount(), 0);
  EXPECT_EQ(chosen.size(), 1);
}

TEST_F(ListViewTest, DoubleClickAndKeysActivateAndDelete) {
  fill({"one", "two"});
  QSignalSpy activated(&list, &ListView::rowActivated);
  QSignalSpy deleted(&list, &ListView::deletePressed);
  QTest::keyClick(&list, Qt::Key_F2);
  EXPECT_TRUE(activated.isEmpty()) << "no row is selected";

  mvtest::doubleClickRow(list, 1);
  ASSERT_EQ(activated.size(), 1);
  EXPECT_EQ(activated.first().at(0).toInt(), 1);
  click(1);
  QTest::keyClick(&list, Qt::Key_Return);
  QTest::keyClick(&list, Qt::Key_Enter);
  QTest::keyClick(&list, Qt::Key_F2);
  EXPECT_EQ(activated.size(), 4);
  QTest::keyClick(&list, Qt::Key_Delete);
  EXPECT_EQ(deleted.size(), 1);
}

TEST_F(ListViewTest, DropsArriveAsText) {
  QMimeData mime;
  mime.setText("4|7|");
  const auto drop = [&] {
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list.viewport(), &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list.viewport(), &event);
  };
  QSignalSpy dropped(&list, &ListView::textDropped);
  drop();
  EXPECT_TRUE(dropped.isEmpty());
  list.setAcceptTextDrops(true);
  drop();
  ASSERT_EQ(dropped.size(), 1);
  EXPECT_EQ(dropped.first().at(0).toString(), "4|7|");
}

TEST_F(ListViewTest, FindsRowsExactly) {
  fill({"one", "One"});
  EXPECT_EQ(list.findRow(0, "One"), 1);
  EXPECT_EQ(list.findRow(2, "id-one"), 0);
  EXPECT_EQ(list.findRow(0, "on"), -1);
  EXPECT_EQ(list.cell(5, 0), QString());
}

TEST_F(ListViewTest, FillsThousandsOfSortedRowsAtOnce) {
  list.setSorting(true);
  QElapsedTimer clock;
  clock.start();
  for (int i = 0; i < 5000; ++i) list.addRow({QString::number((i * 7919) % 5000), "x", "y"});
  EXPECT_LT(clock.elapsed(), 1000);
  EXPECT_EQ(list.cell(0, 0), "0");
  EXPECT_EQ(list.cell(4999, 0), "999");
}

}  // namespace
