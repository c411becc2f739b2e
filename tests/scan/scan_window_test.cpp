#include <QPointer>

#include "ScanTest.h"
#include "app/Events.h"
#include "base/Text.h"
#include "scan_windows/frmScan.h"
#include "testkit/Controls.h"

namespace {

using namespace mvtest;

class ScanWindowTest : public ScanTest<WindowTest> {
 protected:
  ScanWindowTest() : window(open()) {}

  mv::frmScan* open() {
    auto* scan = new mv::frmScan;
    prepare(scan->process());
    scan->setCaption(scan->positionKey());
    scan->showChild();
    return scan;
  }
  void clickDetails() { click(window, "btnDetails"); }
  QString text(const char* label) const { return textOf(window, label); }

  QPointer<mv::frmScan> window;
};

TEST_F(ScanWindowTest, ShowsTheScanInBothSizes) {
  site.page("/", R"(<a href="gone.htm">)");
  EXPECT_EQ(window->place().width, mv::kProcessWidth);
  EXPECT_FALSE(control<QTreeView>(window, "lvwLinks").isVisible());
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return window->process().ErrorCount() == 1; }));
  window->process().tmrOKToDownload.stop();  // the window shows this state before there is another
  ASSERT_TRUE(waitFor([this] { return text("lblInfoErrorCount") == "Errors: 1"; }));
  EXPECT_EQ(text("lblPagesToScan"), "To Scan: 48");
  EXPECT_EQ(text("lblPagesProcessed"), "Processed: 2");
  EXPECT_EQ(control<QProgressBar>(window, "pbarSave").value(), 2);
  EXPECT_EQ(control<QProgressBar>(window, "pbarSave").maximum(), 50);
  const QString page = mv::toQString(site.host()) + "/gone.htm";
  EXPECT_EQ(text("txtInfoPageURL"), "Page URL: " + page);
  EXPECT_EQ(text("lblInfoErrorPage"), page);
  EXPECT_EQ(text("lblInfoErrorReason"), "Code: 404  -  Reason: Not Found");

  clickDetails();
  EXPECT_EQ(text("btnDetails"), "Hide Details");
  EXPECT_EQ(window->place().height, mv::kExpandedHeight);
  QTest::keyClick(&control<QPushButton>(window, "btnDetails"), Qt::Key_Space);
  EXPECT_NEAR(window->place().height, mv::kCollapsedHeight, mv::kTwipsPerPixel);
}

TEST_F(ScanWindowTest, TellsHowFarALongPageIs) {
  setTags({"<img src=", "<a * href="});
  std::string page;
  for (int link = 0; link < 100'000; ++link) page += "<a href=\"page" + std::to_string(link) + ".htm\">";
  site.page("/", page);
  std::vector<int> percents;
  QObject::connect(&window->process(), &mv::Process::viewChanged, window, [&] {
    const int percent = window->process().status().pagePercent;
    if (percent >= 0 && (percents.empty() || percents.back() != percent)) percents.push_back(percent);
  });
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return text("lblState").endsWith(" % of a long page."); }));
  ASSERT_TRUE(waitFor([this] { return window->process().status().pagesRead == 1; }));
  ASSERT_GE(percents.size(), 2u);
  EXPECT_TRUE(std::is_sorted(percents.begin(), percents.end()));
  EXPECT_GT(percents.back(), 50);
  EXPECT_LE(percents.back(), 100);
  window->process().tmrOKToDownload.stop();
  EXPECT_TRUE(waitFor([this] { return text("lblState").startsWith("1 page read, 100000 links found"); }))
      << qPrintable(text("lblState"));
}

TEST_F(ScanWindowTest, SaysWhenAllLinksOfAPageAreKnownAlready) {
  site.page("/", R"(<a href="gone.htm">)");
  insert("link (id, site_id, link_type, url, status)", {{"40", "4711", "Document", site.host() + "/gone.htm", "Done"}});
  window->initWindow();
  EXPECT_TRUE(waitFor([this] { return text("lblState") == "1 page read, no new link. Start page next."; }))
      << qPrintable(text("lblState"));
}

TEST_F(ScanWindowTest, SelectsThePageTakenUpAndSortsByItsHeader) {
  addLink(20, "h/b.htm");
  addLink(9, "h/a.htm");
  window->initWindow();
  clickDetails();
  window->process().tmrOKToDownload.stop();
  QTreeView& list = control<QTreeView>(window, "lvwLinks");
  const QHeaderView& header = *list.header();
  QCoreApplication::processEvents();
  for (const int column : {1, 2})  // one flag for all columns: the second click sorts descending
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(header.sectionViewportPosition(column) + 10, 5));
  EXPECT_EQ(window->process().lvwLinks.findLink(9), 2);
  window->process().crawlStep();
  EXPECT_TRUE(waitFor([&] { return list.selectionModel()->isRowSelected(0); }));
}

// Else the row would go from under a double click.
TEST_F(ScanWindowTest, LeavesTheListForAWhileToTheUserWhoIsAtIt) {
  addLink(20, "h/b.htm");
  addLink(9, "h/a.htm");
  window->initWindow();
  clickDetails();
  // One page, and no other while this looks.
  window->process().tmrOKToDownload.setInterval(60'000);
  QTreeView& list = control<QTreeView>(window, "lvwLinks");
  QCoreApplication::processEvents();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(2, 0)).center());
  const auto isChosen = [&list] { return list.selectionModel()->isRowSelected(2); };
  ASSERT_TRUE(isChosen());
  window->process().crawlStep();
  ASSERT_TRUE(waitFor([this] { return text("lblPagesProcessed") == "Processed: 1"; }));
  EXPECT_TRUE(isChosen());
  EXPECT_TRUE(waitFor([&] { return !isChosen(); })) << "for good";
}

TEST_F(ScanWindowTest, ClosedByItsUserItHidesAndScansOn) {
  site.page("/", R"(<a href="a.htm">)");
  window->closeRequested();
  EXPECT_FALSE(window->isChildVisible());
  window->initWindow();
  EXPECT_TRUE(waitForStatus("/a.htm", "Done"));
  mv::gAppClosing = true;
  window->closeRequested();
  EXPECT_TRUE(waitFor([this] { return !window; }));
}

TEST_F(ScanWindowTest, KeepsItsPlaceUnderItsSite) {
  window->initWindow();
  window->setPlace({1500, 3000, 1600, 6000});
  clickDetails();
  endForGood(window);
  ASSERT_TRUE(waitFor([this] { return !window; }));
  window = open();
  window->initWindow();
  EXPECT_EQ(window->place(), (mv::TwipRect{1500, 3000, mv::kExpandedHeight, 6000}));
  EXPECT_FALSE(window->DetailsCollapsed()) << "left expanded, found expanded";
}

TEST_F(ScanWindowTest, StoppedWhileItsMessageBoxStandsItGoesBehindIt) {
  site.page("/", anchors("/p", 0, 50));
  window->initWindow();
  mv::gDatabase.execute("alter table link rename column file_type to gone");
  bool thereAfterUnload = false;
  dialogs.duringMessage = [&] {
    endForGood(window);
    waitFor([] { return false; }, 20);
    thereAfterUnload = !window.isNull();
  };
  ASSERT_TRUE(waitFor([this] { return !window; }));
  EXPECT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(thereAfterUnload) << "its code was still running";
}

TEST_F(ScanWindowTest, GoesWithItsSite) {
  window->initWindow();
  mv::gDatabase.execute("delete from site");
  Q_EMIT mv::events().siteTakenBack(siteId);
  EXPECT_TRUE(waitFor([this] { return !window; }));
}

}  // namespace
