// Where windows open and what becomes of their places: the first start, process windows in free space, arranging, the
// list of open windows, a maximised main window.

#include <QMdiSubWindow>
#include <QScrollBar>

#include "NormalPlace.h"
#include "WholeUse.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmRuleManager.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "sites_windows/frmWebSites.h"

namespace {

using namespace mv;
using namespace mvtest;

class PlacesTest : public ProgramTest {
 protected:
  PlacesTest() { openMain(); }
  ~PlacesTest() override { main_->close(); }

  void openMain() {
    main_ = std::make_unique<frmDownloadManager>(programMenus());
    main_->initWindow();
    main_->show();
    QCoreApplication::processEvents();
  }
  void closeMain() {
    main_->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  void choose(const char* item) { main_->findChild<QAction*>(item)->trigger(); }
  static QRect rectOf(const ChildWindow* window) { return window->parentWidget()->geometry(); }
  std::vector<ChildWindow*> startSites(int count) {
    for (int i = 0; i < count; ++i) addSite("127.0.0.1:1/" + std::to_string(i), folder());
    auto* sites = showSingle<frmWebSites>();
    auto& list = control<ListView>(sites, "lvwSites");
    list.setFocus();
    list.selectAll();
    click(sites, "Start");
    QCoreApplication::processEvents();
    return processWindows();
  }

  std::unique_ptr<frmDownloadManager> main_;
};

TEST_F(PlacesTest, TheFirstStartHasRoomForTheSitesAndAllTheirColumns) {
  EXPECT_EQ(main_->size(), QSize(1100, 750).boundedTo(main_->screen()->availableSize()));
  auto* sites = showSingle<frmWebSites>();
  QCoreApplication::processEvents();
  auto& list = control<ListView>(sites, "lvwSites");
  EXPECT_EQ(list.horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(sites->place(), (TwipRect{0, 0, 4500, 11400})) << "as shipped, whatever its columns took";
  // It is larger with larger letters.
  const QSize before = sites->size();
  sites->setPlace(sites->place());
  EXPECT_EQ(sites->size(), before);
}

TEST_F(PlacesTest, ProcessWindowsCoverNothingAndADownloadStandsBelowItsScan) {
  // As many as the screen of the tests has room for.
  const std::vector<ChildWindow*> windows = startSites(2);
  ASSERT_EQ(windows.size(), 4U);
  std::vector<QRect> places{rectOf(find<frmWebSites>())};
  for (const ChildWindow* window : windows) places.push_back(rectOf(window));
  const QRect room(QPoint(), main_->mdiArea().viewport()->size());
  for (std::size_t i = 0; i < places.size(); ++i) {
    EXPECT_TRUE(room.contains(places[i])) << i;
    for (std::size_t other = 0; other < i; ++other) EXPECT_FALSE(places[i].intersects(places[other])) << i << other;
  }
  for (std::size_t i = 1; i < places.size(); i += 2)
    EXPECT_EQ(places[i + 1].topLeft(), places[i].bottomLeft() + QPoint(0, 1)) << "scan above download";

  choose("mnuToolsFilterManager");
  EXPECT_FALSE(rectOf(find<frmFilterManager>()).contains(rectOf(find<frmWebSites>()))) << "filters are dragged there";
}

TEST_F(PlacesTest, WhereNoRoomIsFreeProcessWindowsCoverTheLeast) {
  addSite("127.0.0.1:1/only", folder());
  auto* sites = showSingle<frmWebSites>();
  const QRect room = main_->mdiArea().viewport()->rect();
  const QRect most = room.adjusted(0, 0, -200, -100);
  sites->setPlace({0, 0, pixelsToTwips(most.height()), pixelsToTwips(most.width())});
  const std::vector<ChildWindow*> windows = startSites(0);
  ASSERT_EQ(windows.size(), 2U);
  for (const ChildWindow* window : windows) {
    EXPECT_TRUE(room.contains(rectOf(window)));
    EXPECT_EQ(rectOf(window).right(), room.right());
  }
  EXPECT_EQ(rectOf(windows[1]).topLeft(), rectOf(windows[0]).bottomLeft() + QPoint(0, 1));
  EXPECT_EQ(rectOf(windows[1]).bottom(), room.bottom());
}

TEST_F(PlacesTest, AWindowThatItsDetailsHavePushedUpGoesBackWithoutThem) {
  const std::vector<ChildWindow*> windows = startSites(1);
  auto* download = dynamic_cast<ProcessWindow*>(windows[1]);
  QWidget& frame = *download->parentWidget();
  const QPoint low(40, main_->mdiArea().viewport()->height() - frame.height());
  frame.move(low);
  download->toggleDetails();
  EXPECT_LT(frame.y(), low.y());
  download->toggleDetails();
  EXPECT_EQ(frame.pos(), low);

  download->toggleDetails();
  frame.move(80, 0);
  download->toggleDetails();
  EXPECT_EQ(frame.pos(), QPoint(80, 0)) << "where the user has put it";
}

TEST_F(PlacesTest, ManagersOpenBesideTheSitesThatFiltersAreDraggedTo) {
  showSingle<frmWebSites>();
  choose("mnuToolsFilterManager");
  choose("mnuToolsRuleManager");
  EXPECT_FALSE(rectOf(find<frmFilterManager>()).intersects(rectOf(find<frmWebSites>())));
  EXPECT_FALSE(rectOf(find<frmRuleManager>()).intersects(rectOf(find<frmFilterManager>())));
}

TEST_F(PlacesTest, MoreThanThreeWindowsAreTiledInAGridAndCascadeGivesThemTheirSizesBack) {
  const std::vector<ChildWindow*> windows = startSites(3);
  const QSize room = main_->mdiArea().viewport()->size();
  find<frmWebSites>()->closeRequested();
  for (const char* tiling : {"mnuWindowsTileHorizontally", "mnuWindowsTileVertically"}) {
    choose(tiling);
    std::int64_t covered = 0;
    for (const ChildWindow* window : windows) {
      const QRect place = rectOf(window);
      covered += std::int64_t{place.width()} * place.height();
      EXPECT_LT(place.width(), room.width());
      EXPECT_LT(place.height(), room.height());
    }
    EXPECT_EQ(covered, std::int64_t{room.width()} * room.height()) << "no gap, no overlap";
  }
  choose("mnuWindowsCascade");
  for (const ChildWindow* window : windows) {
    EXPECT_EQ(window->place().height, kCollapsedHeight);
    EXPECT_EQ(window->place().width, kProcessWidth);
    EXPECT_TRUE(QRect(QPoint(), room).contains(rectOf(window)));
  }
}

TEST_F(PlacesTest, TheWindowsMenuListsTheOpenWindows) {
  showSingle<frmWebSites>();
  choose("mnuToolsFilterManager");
  choose("mnuToolsRuleManager");
  find<frmRuleManager>()->unload();
  auto* menu = main_->findChild<QMenu*>("mnuWindows");
  for (int opening = 0; opening < 2; ++opening) {
    Q_EMIT menu->aboutToShow();
    ASSERT_EQ(menu->actions().size(), 6) << "three commands, a separator, two windows";
    EXPECT_TRUE(menu->actions()[3]->isSeparator());
    EXPECT_EQ(menu->actions()[4]->text(), "&1 Web Sites: Max Connections: 3");
    EXPECT_FALSE(menu->actions()[4]->isChecked());
    EXPECT_EQ(menu->actions()[5]->text(), "&2 Filter Manager");
    EXPECT_TRUE(menu->actions()[5]->isChecked());
  }
  menu->actions()[4]->trigger();
  Q_EMIT menu->aboutToShow();
  EXPECT_TRUE(menu->actions()[4]->isChecked());
}

TEST_F(PlacesTest, AMaximisedMainWindowComesBackMaximisedAndKeepsItsNormalPlace) {
  main_->setGeometry(60, 50, 640, 480);
  QTest::qWait(400);
  main_->showMaximized();
  QCoreApplication::processEvents();
  closeMain();
  EXPECT_EQ(value("select wwidth from win_pos where wname = 'Morvane2000'"), std::to_string(640 * 15));
  openMain();
  EXPECT_TRUE(main_->isMaximized());
  closeMain();
  EXPECT_EQ(value("select wwidth from win_pos where wname = 'Morvane2000'"), std::to_string(640 * 15));
  gDatabase.execute("delete from win_pos");
  openMain();
  EXPECT_FALSE(main_->isMaximized());
  EXPECT_EQ(main_->size(), QSize(413, 240)) << "the laid-down size";
}

// As some window managers do: the size first, the word that it is the maximised one later.
TEST(NormalPlaceTest, ASizeThatIsCalledMaximisedInTheNextMomentIsNotTheNormalOne) {
  QWidget window;
  window.setGeometry(10, 20, 300, 200);
  NormalPlace place(window);
  window.show();
  QTest::qWait(400);
  const QRect normal = place.rect();
  EXPECT_EQ(normal.size(), QSize(300, 200));
  window.resize(1200, 900);
  window.setWindowState(Qt::WindowMaximized);
  QTest::qWait(400);
  EXPECT_EQ(place.rect(), normal);
}

// As others do with a window that was maximised when it was first shown.
TEST(NormalPlaceTest, AWindowMaximisedFromTheStartGetsItsStoredPlaceBackThoughItsFrameIsCountedTwice) {
  const QRect stored(60, 50, 300, 200);
  for (const bool dragged : {false, true}) {
    QWidget window;
    window.setGeometry(stored);
    NormalPlace place(window);
    place.set(stored, true);
    window.showMaximized();
    QTest::qWait(400);
    window.showNormal();
    const QPoint given = stored.topLeft() + (dragged ? QPoint(300, 200) : QPoint(-5, -5));
    window.move(given);
    QTest::qWait(400);
    EXPECT_EQ(window.pos(), dragged ? given : stored.topLeft());
    EXPECT_EQ(place.rect().topLeft(), window.pos());
  }
}

}  // namespace
