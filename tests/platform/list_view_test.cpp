#include <gtest/gtest.h>

#include <QHeaderView>
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
  list.setBold(0, true);
  list.setRowSelected(0, true);
  list.setSorting(true);
  EXPECT_EQ(list.selectedRows(), std::vector<int>({1}));
  EXPECT_TRUE(list.isBold(1));
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
  list.clearSelection();
  QTest::keyClick(&list, Qt::Key_Down);
  ASSERT_EQ(chosen.size(), 1) << "the first key chooses the row with the focus frame";
  EXPECT_EQ(chosen.takeFirst().at(0).toInt(), 1);

  QTest::keyClick(&list, 'f');
  ASSERT_EQ(chosen.size(), 1) << "type-ahead";
  EXPECT_EQ(list.cell(chosen.takeFirst().at(0).toInt(), 0), "four");

  QTest::mousePress(list.viewport(), Qt::LeftButton, Qt::NoModifier, at(0));
  QMouseEvent move(QEvent::MouseMove, at(2), list.viewport()->mapToGlobal(at(2)), Qt::NoButton, Qt::LeftButton, {});
  QCoreApplication::sendEvent(list.viewport(), &move);
  QTest::mouseRelease(list.viewport(), Qt::LeftButton, Qt::NoModifier, at(2));
  EXPECT_EQ(list.selectedRows(), std::vector<int>({2}));
  ASSERT_FALSE(chosen.isEmpty()) << "a row marked by dragging the mouse is the one that Edit and Delete go for";
  EXPECT_EQ(chosen.last().at(0).toInt(), 2);
  chosen.clear();

  QTest::mouseClick(list.viewport(), Qt::LeftButton, Qt::NoModifier, QPoint(20, 280));
  EXPECT_TRUE(chosen.isEmpty());
  EXPECT_EQ(list.selectedRows().size(), 1U) << "beside the rows nothing is unchosen";
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

}  // namespace
