#include <QLineEdit>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>

#include "ScanTest.h"
#include "platform/Text.h"
#include "scan/frmScan.h"
#include "support/Controls.h"

namespace {

using mvtest::control;
using mvtest::waitFor;

class ScanWindowTest : public mvtest::ScanTest<mvtest::WindowTest> {
 protected:
  ScanWindowTest() : window(open()) {}

  mv::frmScan* open() {
    auto* scan = new mv::frmScan;
    prepare(scan->process());
    scan->setCaption(scan->positionKey());
    scan->showChild();
    return scan;
  }
  void clickDetails() { mvtest::click(window, "btnDetails"); }
  QString text(const char* label) const { return control<QLabel>(window, label).text(); }
  void closeForGood() {
    mv::gClosingProcesses = true;
    window->unload();
    mv::gClosingProcesses = false;
  }
  // Nothing overlaps, nothing is cut off by the window's edge.
  void expectAllInside(const std::vector<const char*>& names) const {
    for (const char* name : names) {
      const QWidget& widget = control<QWidget>(window, name);
      const QRect place(widget.mapTo(window.data(), QPoint()), widget.size());
      EXPECT_TRUE(window->rect().contains(place)) << name << " ends at " << place.right() << ", " << place.bottom();
      if (qobject_cast<const QProgressBar*>(&widget)) continue;  // thin on purpose
      EXPECT_GE(widget.height(), widget.minimumSizeHint().height()) << name;
    }
    const auto* area = window->findChild<QScrollArea*>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_FALSE(area->verticalScrollBar()->isVisible());
    EXPECT_FALSE(area->horizontalScrollBar()->isVisible());
  }

  QPointer<mv::frmScan> window;
};

TEST_F(ScanWindowTest, ShowsTheScanInBothSizes) {
  site.page("/", R"(<a href="gone.htm">)");
  EXPECT_EQ(text("lblPage"), "Page: ");
  EXPECT_EQ(window->place().width, mv::kProcessWidth);
  QCoreApplication::processEvents();
  expectAllInside({"lblPage", "lblPagesToScan", "lblPagesProcessed", "pbarSave", "btnDetails"});
  EXPECT_FALSE(control<QTreeView>(window, "lvwLinks").isVisible());
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return text("lblInfoErrorCount") == "Errors: 1"; }));
  EXPECT_EQ(text("lblPagesToScan"), "To Scan: 48");
  EXPECT_EQ(text("lblPagesProcessed"), "Processed: 2");
  EXPECT_EQ(control<QProgressBar>(window, "pbarSave").value(), 2);
  EXPECT_EQ(control<QProgressBar>(window, "pbarSave").maximum(), 50);
  EXPECT_EQ(control<QLineEdit>(window, "txtInfoPageURL").text(),
            "Page URL: " + mv::toQString(site.host()) + "/gone.htm");
  EXPECT_EQ(text("lblInfoErrorPage"), mv::toQString(site.host()) + "/gone.htm");
  EXPECT_EQ(text("lblInfoErrorReason"), "Code: 404  -  Reason: Not Found");
  EXPECT_EQ(text("lblSiteId"), QString::number(siteId));
  EXPECT_FALSE(control<QLabel>(window, "lblSiteId").isVisible());

  EXPECT_EQ(control<QPushButton>(window, "btnDetails").text(), "Show Details");
  clickDetails();
  QCoreApplication::processEvents();
  EXPECT_EQ(control<QPushButton>(window, "btnDetails").text(), "Hide Details");
  EXPECT_EQ(window->place().height, mv::kExpandedHeight);
  expectAllInside({"lblPage", "btnDetails", "lvwLinks", "txtInfoPageURL", "lblInfoErrorPage", "lblInfoErrorReason",
                   "lblInfoErrorTime", "lblInfoErrorCount"});
  QTest::keyClick(&control<QPushButton>(window, "btnDetails"), Qt::Key_Space);
  EXPECT_NEAR(window->place().height, mv::kCollapsedHeight, mv::kTwipsPerPixel);
  EXPECT_TRUE(window->DetailsCollapsed());
}

TEST_F(ScanWindowTest, SelectsThePageTakenUpAndSortsByItsHeader) {
  addLink(20, "h/b.htm");
  addLink(9, "h/a.htm");
  window->initWindow();
  clickDetails();
  window->process().tmrOKToDownload.stop();
  QTreeView& list = control<QTreeView>(window, "lvwLinks");
  const auto column = [&list](int number) {
    QStringList texts;
    for (int row = 0; row < list.model()->rowCount(); ++row)
      texts << list.model()->index(row, number).data().toString();
    return texts;
  };
  const auto clickHeader = [&header = *list.header()](int number) {
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(header.sectionViewportPosition(number) + 10, 5));
  };
  QCoreApplication::processEvents();
  clickHeader(1);
  EXPECT_EQ(column(1), QStringList({"1", "20", "9"})) << "ascending first, as texts";
  clickHeader(2);
  EXPECT_EQ(column(2).back(), "h/a.htm") << "one flag for all columns";
  window->process().crawlStep();
  EXPECT_EQ(list.currentIndex().row(), 0);
  EXPECT_TRUE(list.selectionModel()->isRowSelected(0));
  EXPECT_EQ(column(0)[0], "Working");
}

TEST_F(ScanWindowTest, ClosedByItsUserItHidesAndScansOn) {
  site.page("/", R"(<a href="a.htm">)");
  window->closeRequested();
  EXPECT_FALSE(window->isChildVisible());
  window->initWindow();
  EXPECT_TRUE(waitForStatus("/a.htm", "Done"));
  window->showChild();
  EXPECT_TRUE(window->isChildVisible());
  mv::gAppClosing = true;
  window->closeRequested();
  EXPECT_TRUE(waitFor([this] { return !window; }));
}

TEST_F(ScanWindowTest, KeepsItsPlaceUnderItsSite) {
  window->initWindow();
  window->setPlace({1500, 3000, 1600, 6000});
  clickDetails();
  closeForGood();
  ASSERT_TRUE(waitFor([this] { return !window; }));
  EXPECT_EQ(count("win_pos", "wname = " + mv::quoted("Scan: " + site.host())), 1);
  window = open();
  window->initWindow();
  EXPECT_EQ(window->place().top, 1500);
  EXPECT_EQ(window->place().left, 3000);
  EXPECT_EQ(window->place().width, 6000);
  EXPECT_EQ(window->place().height, mv::kExpandedHeight);
  EXPECT_FALSE(window->DetailsCollapsed()) << "left expanded, found expanded";
}

TEST_F(ScanWindowTest, StoppedWhileItsMessageBoxStandsItGoesBehindIt) {
  site.page("/", anchors("/p", 0, 50));
  window->initWindow();
  mv::gDatabase.execute("alter table link rename column file_type to gone");
  bool thereAfterUnload = false;
  dialogs.duringMessage = [&] {
    closeForGood();
    waitFor([] { return false; }, 20);
    thereAfterUnload = !window.isNull();
  };
  ASSERT_TRUE(waitFor([this] { return !window; }));
  EXPECT_TRUE(thereAfterUnload) << "its code was still running";
}

}  // namespace
