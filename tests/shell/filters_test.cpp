// Rules and filters made with mouse and keyboard, a filter dragged to two sites, and what a scan then leaves out.

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QWindow>
#include <memory>

#include "WholeUse.h"
#include "app/Settings.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmRuleManager.h"
#include "frmNewRule.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

class FiltersTest : public WholeUse {
 protected:
  void createRule(const QString& name, const QString& field, const QString& op, const QString& value,
                  const QString& ruleType) {
    click(window<frmRuleManager>(), "New");
    auto* editor = window<frmNewRule>();
    chooseEntry(*control<QComboBox>(editor, "cmboFields"), field);
    chooseEntry(*control<QComboBox>(editor, "cmboOperator"), op);
    type(editor, "txtValue", value);
    chooseEntry(*control<QComboBox>(editor, "cmboRuleTypes"), ruleType);
    type(editor, "txtRuleName", name);
    QTest::keyClick(editor->focusWidget(), Qt::Key_Return);
  }

  void createFilter(const QString& name, const QString& rule, bool global) {
    click(window<frmFilterManager>(), "New");
    auto* editor = window<frmNewFilter>();
    type(editor, "txtFilterName", name);
    control<QCheckBox>(editor, "chkGlobal")->setChecked(global);
    choose(control<ListView>(editor, "lvwRulesAvailable"), rule);
    click(editor, "cmdMoveToAssigned");
    click(editor, "cmdOK");
  }

  // With the mouse, from a row of a list to a place in the main window.
  void dragRow(ListView& from, int row, const QPoint& target) {
    QWindow* frame = main_.windowHandle();
    const QPoint start = from.viewport()->mapTo(&main_, from.visualRect(from.model()->index(row, 0)).center());
    bool dropped = false;
    QTimer hand;
    QObject::connect(&from, &ListView::dragStarted, &hand, [&] {
      dropped = QGuiApplication::platformName() == "offscreen";
      if (dropped)
        carry(from, target);
      else
        hand.start(1);
    });
    // The drag runs an event loop of its own.
    QObject::connect(&hand, &QTimer::timeout, &hand, [&, left = 3]() mutable {
      dropped = --left == 0;
      if (dropped) hand.stop();
      if (dropped)
        QTest::mouseRelease(frame, Qt::LeftButton, {}, target);
      else
        QTest::mouseMove(frame, target - QPoint(left, 0));
    });
    QTest::mousePress(frame, Qt::LeftButton, {}, start);
    // The first move tells the list that the mouse is dragged, the second how far.
    for (const int way : {1, 2}) QTest::mouseMove(frame, start + QPoint(way * QApplication::startDragDistance(), 0));
    EXPECT_TRUE(waitFor([&] { return dropped && gDragKind.empty(); })) << "no drag, or one without end";
    QTest::mouseRelease(frame, Qt::LeftButton, {}, target);
  }

  // What the mouse does during a drag, on the one platform where no drag leaves its list.
  void carry(ListView& from, const QPoint& target) {
    const std::unique_ptr<QMimeData> load(from.model()->mimeData(from.selectionModel()->selectedRows()));
    QWidget* below = main_.childAt(target);
    const QPoint place = below->mapFrom(&main_, target);
    QDragEnterEvent enter(place, Qt::CopyAction, load.get(), Qt::LeftButton, Qt::NoModifier);
    QDropEvent drop(place, Qt::CopyAction, load.get(), Qt::LeftButton, Qt::NoModifier);
    for (QEvent* event : {static_cast<QEvent*>(&enter), static_cast<QEvent*>(&drop)})
      if (below->acceptDrops()) QCoreApplication::sendEvent(below, event);
  }
};

TEST_F(FiltersTest, AFilterDroppedOnTwoSitesAndAGlobalOneKeepLinksOut) {
  TestSite site;
  site.page("/", R"(<img src="banner1.jpg"> <img src="BANNER2.jpg"> <a href="/banner/index.html"> <img src="one.gif">
                    <img src="two.jpg"> <a href="deep/page.html">)");
  site.page("/deep/page.html", R"(<img src="three.gif"> <img src="../gif.jpg">)");
  for (const std::string& host : {site.host(), std::string("other.example"), std::string("third.example")})
    addSite(host, folder(), {"jpg", "gif"});

  chooseFromMenu("mnuTools", "mnuToolsRuleManager");
  createRule("Banners", "Link", "Contains", "banner", "Ignore");
  createRule("Gifs", "Filetype", "Equals", "gif", "Save To");
  window<frmRuleManager>()->unload();
  chooseFromMenu("mnuTools", "mnuToolsFilterManager");
  createFilter("No banners", "Banners", true);
  createFilter("No gifs", "Gifs", false);
  ASSERT_EQ(count("filter_rule_xref"), 2);

  chooseFromMenu("mnuTools", "mnuToolsWebSiteManager");
  chooseFromMenu("mnuWindows", "mnuWindowsTileVertically");
  auto* sites = window<frmWebSites>();
  auto& siteList = *control<ListView>(sites, "lvwSites");
  for (const int row : {0, 1}) siteList.setRowSelected(row, true);
  auto* manager = window<frmFilterManager>();
  auto& filters = *control<ListView>(manager, "lvwFilters");
  manager->showChild();
  const int dragged = filters.findRow(0, "No gifs");
  ASSERT_GE(dragged, 0);
  dragRow(filters, dragged, main_.rect().bottomLeft() + QPoint(5, -5));
  EXPECT_EQ(count("site_filter_xref"), 0) << "dropped beside the list";
  dragRow(filters, dragged, siteList.viewport()->mapTo(&main_, siteList.viewport()->rect().center()));
  EXPECT_EQ(value("select group_concat(site_id || ':' || filter_id) from site_filter_xref"), "1:2,2:2");

  clickRow(siteList, 0);
  click(sites, "Start");
  const std::string root = site.host() + '/';
  const auto links = [&] {
    return value("select group_concat(url, ' ') from (select url from link where site_id = 1 order by url)");
  };
  const std::string expected = root + "BANNER2.jpg " + root + "deep/page.html " + root + "gif.jpg " + root + "two.jpg";
  EXPECT_TRUE(waitFor([&] { return count("link", "url = '" + root + "gif.jpg'") > 0; }, 30'000));
  EXPECT_EQ(links(), expected);
  click(sites, "Stop");
}

}  // namespace
