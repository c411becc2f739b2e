// The web-site list, worked as a user works it.

#include <QAction>
#include <QMenu>
#include <QMimeData>
#include <QToolButton>

#include "SitesTest.h"
#include "app/EndProgram.h"
#include "app/ErrorLog.h"
#include "base/Clock.h"
#include "download_windows/frmDownload.h"
#include "scan_windows/frmScan.h"
#include "sites_windows/frmWebSites.h"

namespace mvtest {
namespace {

constexpr int kOnOff = 3;

class WebSites : public SitesTest {
 protected:
  // Sites on a port that refuses at once; none of the tests waits for a request.
  mv::Id site(const std::string& name) { return addSite("127.0.0.1:1/" + name, folder()); }
  void openWith(std::initializer_list<const char*> names) {
    for (const char* name : names) site(name);
    window = mv::showSingle<mv::frmWebSites>();
    list = &control<mv::ListView>(window, "lvwSites");
  }
  void press(const char* button) { click(window, button); }
  bool enabled(const char* button) { return mvtest::enabled(window, button); }
  void choose(const char* entry) {
    for (QAction* action : control<QToolButton>(window, "Connections").menu()->actions())
      if (action->text() == QLatin1String(entry)) return action->trigger();
    FAIL() << "no entry " << entry;
  }
  // "on" and bold change together: anything else shows as "?".
  std::string states() {
    std::string states;
    for (int row = 0; row < list->rowCount(); ++row) {
      const bool on = list->cell(row, kOnOff) == "on";
      states += on != list->isBold(row) ? '?' : on ? '1' : '0';
    }
    return states;
  }
  int processWindows() const {
    const auto windows = mv::WindowRegistry::instance().windows();
    return static_cast<int>(std::count_if(windows.begin(), windows.end(), [](const mv::ChildWindow* each) {
      return each->positionKey().startsWith("Scan: ") || each->positionKey().startsWith("Download: ");
    }));
  }
  void setMaximum(int connections) {
    mv::gDatabase.execute("update pref set max_connections = " + mv::number(connections));
  }

  mv::frmWebSites* window = nullptr;
  mv::ListView* list = nullptr;
};

TEST_F(WebSites, ShowsEverySiteWithItsColumns) {
  setMaximum(2);
  mv::gDatabase.execute("update valid_sid set next_value = 7 where sid_name = 'site_id'");
  site("a");
  mv::gDatabase.execute("update site set auto_scan = \"yes\", hops = 3, unique_names = \"yes\", base_name = \"B\"");
  openWith({});
  EXPECT_EQ(window->caption(), "Web Sites: Max Connections: 2");
  EXPECT_EQ(rowText(*list, 0), "127.0.0.1:1/a|7|yes|off|127.0.0.1:1|3|yes|B");
  EXPECT_EQ(frame.clipboardEnabled, true);
}

TEST_F(WebSites, StartsInListOrderUpToTheLimitAndStops) {
  setMaximum(2);
  openWith({"a", "b", "c", "d"});
  list->setFocus();
  QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
  press("Start");
  EXPECT_EQ(states(), "1100");
  EXPECT_EQ(processWindows(), 4);
  EXPECT_FALSE(enabled("Start"));
  EXPECT_TRUE(enabled("Stop"));

  clickRow(*list, 2);
  EXPECT_TRUE(enabled("Start"));
  EXPECT_FALSE(enabled("Stop"));
  press("Start");
  EXPECT_EQ(states(), "1100") << "the limit is reached";

  clickRow(*list, 0);
  EXPECT_TRUE(enabled("Stop"));
  press("Stop");
  EXPECT_EQ(states(), "0100");
  EXPECT_EQ(processWindows(), 2);

  clickRows(*list, {1, 2});
  press("Start");
  EXPECT_EQ(states(), "0110") << "only the row that is off";

  window->closeAllWebSites();
  EXPECT_EQ(states(), "0000");
  EXPECT_EQ(processWindows(), 0);
}

TEST_F(WebSites, GivesTheProcessesTheSitesValues) {
  const mv::Id id = site("a");
  mv::gDatabase.execute("update site set hops = 4, unique_names = \"yes\", base_name = \"Stem\"");
  insert("site_form_xref", {{std::to_string(id), "20"}});
  mv::gOverwriteExisting = "yes";
  mv::gHideProcesses = "yes";
  openWith({});
  doubleClickRow(*list, 0);
  auto* scan = find<mv::frmScan>();
  auto* download = find<mv::frmDownload>();
  ASSERT_TRUE(scan && download);
  const auto& scanned = scan->process();
  const auto& saved = download->process();
  EXPECT_EQ(scanned.Domain, "127.0.0.1:1");
  EXPECT_EQ((std::vector<long>{scanned.SiteID, scanned.LoginFormID, scanned.DomainHops, saved.SiteId}),
            (std::vector<long>{id, 20, 4, id}));
  EXPECT_EQ(saved.UniqueNames + saved.BaseName + saved.OverwriteExisting, "yesStemyes");
  EXPECT_FALSE(scan->isChildVisible());
  EXPECT_FALSE(download->isChildVisible());
}

TEST_F(WebSites, APasswordInAnAddressIsShownNowhereButInTheLocationBox) {
  setMaximum(3);
  // Two users of one host.
  for (const char* user : {"anna:geheim@", "bert:geheim@"}) addSite(user + std::string("127.0.0.1:1/a"), folder());
  openWith({});
  EXPECT_EQ(names(*list), "anna:***@127.0.0.1:1/a,bert:***@127.0.0.1:1/a");
  EXPECT_EQ(list->cell(0, 4), "anna:***@127.0.0.1:1");
  list->selectAll();
  press("Start");
  ASSERT_EQ(processWindows(), 4);
  EXPECT_EQ(find<mv::frmScan>()->process().SiteName, "anna:geheim@127.0.0.1:1/a") << "as it is stored";
  EXPECT_EQ(find<mv::frmScan>()->process().Domain, "anna:geheim@127.0.0.1:1");
  clickRow(*list, 1);
  press("Edit");
  auto* edited = find<mv::frmNew>();
  EXPECT_EQ(edited->caption(), "Edit: bert:***@127.0.0.1:1/a");
  EXPECT_EQ(edited->SiteName, "bert:geheim@127.0.0.1:1/a");
  EXPECT_EQ(textOf(edited, "txtURL"), "bert:geheim@127.0.0.1:1/a");
  press("Stop");
  EXPECT_EQ(states(), "10");
  EXPECT_EQ(find<mv::frmScan>()->caption(), "Scan: anna:***@127.0.0.1:1/a") << "the other user's goes on";
  window->closeAllWebSites();
  EXPECT_EQ(count("win_pos", "wname like '%geheim%'"), 0);
  EXPECT_EQ(count("win_pos", "wname = 'Scan: bert:***@127.0.0.1:1/a'"), 1);
}

TEST_F(WebSites, StartOfASiteThatARebuildShowsOffMakesNoSecondPair) {
  setMaximum(2);
  openWith({"a", "b", "c"});
  clickRow(*list, 0);
  press("Start");
  find<mv::frmScan>()->hideChild();
  window->buildWorkingLists("init");
  EXPECT_EQ(states(), "000");
  clickRow(*list, 0);
  press("Start");
  EXPECT_EQ(states(), "100");
  EXPECT_EQ(processWindows(), 2);
  EXPECT_TRUE(find<mv::frmScan>()->isChildVisible());

  clickRows(*list, {1, 2});
  press("Start");
  EXPECT_EQ(states(), "110") << "it counts once";
  window->buildWorkingLists("init");
  mv::closeProcess("Download: 127.0.0.1:1/a");
  clickRows(*list, {0, 1, 2});
  press("Start");
  EXPECT_EQ(states(), "110") << "at the limit those at work are on again, and no other one";
  EXPECT_EQ(processWindows(), 4) << "the half that was ended is there again";
}

TEST_F(WebSites, ASiteThatIsTakenBackWhileItRunsStopsWithALineInTheLog) {
  setMaximum(1);
  openWith({"kept"});
  openNew();
  type(editor, "txtURL", "127.0.0.1:1/new");
  click(editor, "cmdApply");
  clickRow(*list, 1);
  press("Start");
  ASSERT_EQ(processWindows(), 2);
  click(editor, "cmdCancel");
  EXPECT_TRUE(waitFor([this] { return processWindows() == 0; }));
  EXPECT_EQ(names(*list), "127.0.0.1:1/kept");
  const QString log = mv::toQString(readFile(mv::errorLogPath()));
  EXPECT_EQ(log.count("127.0.0.1:1/new: its site is no longer stored"), 2) << log.toStdString();
  EXPECT_TRUE(dialogs.messages().empty());
  clickRow(*list, 0);
  press("Start");
  EXPECT_EQ(states(), "1") << "its connection is free";
}

TEST_F(WebSites, ADeletedSiteThatARebuildShowsOffStopsWorking) {
  setMaximum(1);
  openWith({"a", "b"});
  clickRow(*list, 0);
  press("Start");
  window->buildWorkingLists("init");
  clickRow(*list, 0);
  press("Delete");
  EXPECT_EQ(processWindows(), 0);
  clickRow(*list, 0);
  press("Start");
  EXPECT_EQ(states(), "1") << "its connection is free";
}

TEST_F(WebSites, ASiteThatWasRenamedWhileItRunsIsStopped) {
  openWith({"a"});
  clickRow(*list, 0);
  press("Start");
  mv::gDatabase.execute("update site set name = \"renamed\"");
  window->buildWorkingLists("websiteedited", list->cell(0, 1).toLong());
  clickRow(*list, 0);
  press("Stop");
  EXPECT_EQ(processWindows(), 0);
}

TEST_F(WebSites, AProgramThatClosesDuringAStartStartsNothingMore) {
  setMaximum(3);
  openWith({"a", "b"});
  list->selectAll();
  // The start runs into an error, and while its box stands the program is closed.
  mv::gDatabase.execute("drop table site_form_xref");
  dialogs.duringMessage = [this] {
    mv::gAppClosing = true;
    for (mv::ChildWindow* each : mv::WindowRegistry::instance().windows()) each->unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  };
  press("Start");
  EXPECT_EQ(dialogs.messages().size(), 1u);
  EXPECT_EQ(processWindows(), 0);
}

TEST_F(WebSites, ARebuildDuringAStartMarksNoOtherRow) {
  openWith({"a", "b", "c"});
  clickRow(*list, 1);
  // The scan runs into an error; while its box stands the first site is deleted.
  mv::gDatabase.execute("drop table valid_tag");
  dialogs.duringMessage = [this] {
    dialogs.duringMessage = nullptr;
    mv::gDatabase.execute("delete from site where id = 1");
    window->buildWorkingLists("init");
  };
  press("Start");
  EXPECT_FALSE(dialogs.messages().empty());
  EXPECT_EQ(states(), "10") << "b, now the first";
}

TEST_F(WebSites, AutoScanLooksAtTheFirstRowsOnly) {
  openWith({"a", "b", "c", "d", "e"});
  const std::pair<mv::SqlText, const char*> cases[] = {
      {"4, 5", "00000"}, {"1, 3", "10100"}, {"1, 2, 3, 4, 5", "11100"}};
  for (const auto& [automatic, started] : cases) {
    mv::gDatabase.execute("update site set auto_scan = iif(id in (" + automatic + "), 'yes', 'no')");
    window->buildWorkingLists("init");
    window->autoScan();
    EXPECT_EQ(states(), started);
    window->closeAllWebSites();
  }
}

TEST_F(WebSites, ConnectionsEntriesAreStored) {
  openWith({});
  choose("4 Connections");
  EXPECT_EQ(window->caption(), "Web Sites: Max Connections: 4");
  EXPECT_EQ(value("select max_connections from pref"), "4");
  const std::pair<const char*, const char*> answers[] = {
      {"7", "7"}, {"0", "1"}, {"abc", "1"}, {"2.6 please", "3"}, {"-3", "1"}, {"99999999999999999999", "1000"}};
  for (const auto& [answer, connections] : answers) {
    dialogs.nextInputs = {QString(answer)};
    choose("Other...");
    EXPECT_EQ(value("select max_connections from pref"), connections) << answer;
  }
  setMaximum(3);
  QTest::mouseClick(&control<QToolButton>(window, "Connections"), Qt::LeftButton, {}, QPoint(5, 5));
  EXPECT_EQ(dialogs.messages().size(), 1u);
  EXPECT_EQ(window->caption(), "Web Sites: Max Connections: 1");
  EXPECT_EQ(value("select max_connections from pref"), "3") << "the button sets it until the next rebuild";
}

TEST_F(WebSites, TheChoiceOfConnectionsOpensByKey) {
  openWith({});
  auto& button = control<QToolButton>(window, "Connections");
  int opened = 0;
  QObject::connect(button.menu(), &QMenu::aboutToShow, button.menu(), [&] { ++opened; });
  QObject::connect(button.menu(), &QMenu::aboutToShow, button.menu(), &QWidget::close, Qt::QueuedConnection);
  QTest::keyClick(&button, Qt::Key_Down);
  EXPECT_EQ(opened, 1);
}

TEST_F(WebSites, DeletesTheSelectedSitesButNotARunningOne) {
  openWith({"a", "b", "c", "d"});
  clickRow(*list, 1);
  press("Start");
  clickRows(*list, {0, 1, 2});
  list->setFocus();
  QTest::keyClick(list, Qt::Key_Delete);
  ASSERT_EQ(dialogs.questions.size(), 1u) << "the key may be a slip";
  EXPECT_TRUE(dialogs.questions[0].text.contains("these 2 web sites"));
  EXPECT_EQ(list->rowCount(), 4);
  press("Delete");
  EXPECT_EQ(dialogs.questions.size(), 1u) << "the button is none";
  EXPECT_EQ(names(*list), "127.0.0.1:1/b,127.0.0.1:1/d");
  EXPECT_EQ(all("name", "site order by id"), "127.0.0.1:1/b,127.0.0.1:1/d");
  EXPECT_EQ(states(), "10");
  EXPECT_TRUE(dialogs.messages().empty());
  press("Edit");
  EXPECT_FALSE(find<mv::frmNew>()) << "the row clicked last is gone";

  insert("site (id, name)", {{"0", "without number"}});
  window->buildWorkingLists("init");
  clickRow(*list, 0);
  dialogs.nextConfirmation = true;
  QTest::keyClick(list, Qt::Key_Delete);
  EXPECT_EQ(lastMessage(), "No Site Selected: Please select a web site to delete. ");
  EXPECT_EQ(count("site", "id = 0"), 1);
}

TEST_F(WebSites, DeletingThousandsOfSitesLeavesTheWindowsAlive) {
  openWith({});
  insertNumbered("site (id, name, domain, auto_scan)", 100, 2000, "i, 'h' || i, 'h', 'no'");
  window->buildWorkingLists("init");
  list->setFocus();
  QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
  dialogs.nextConfirmation = true;
  const LoopMeter turn;
  QTest::keyClick(list, Qt::Key_Delete);
  EXPECT_GT(count("site"), 0) << "all at once";
  ASSERT_TRUE(waitFor([this] { return count("site") == 0; }));
  EXPECT_EQ(names(*list), "");
  EXPECT_LT(turn.longest, 100.0);
}

TEST_F(WebSites, ADeletionOfManySitesCanBeStopped) {
  openWith({});
  insertNumbered("site (id, name, domain, auto_scan)", 1, 4000, "i, 'h' || i, 'h', 'no'");
  window->buildWorkingLists("init");
  list->selectAll();
  press("Delete");
  const auto waiting = [this] { return frame.findChild<QWidget*>("frmPleaseWait"); };
  ASSERT_TRUE(waitFor(waiting));
  EXPECT_TRUE(textOf(waiting(), "lblPleaseWait").endsWith(" of 4000"))
      << qPrintable(textOf(waiting(), "lblPleaseWait"));
  click(waiting(), "cmdStop");
  ASSERT_TRUE(waitFor([&] { return !waiting(); }));
  const long left = count("site");
  EXPECT_GT(left, 0);
  EXPECT_LT(left, 4000);
  EXPECT_EQ(list->rowCount(), left);
  QCoreApplication::processEvents();
  EXPECT_EQ(count("site"), left);
}

TEST_F(WebSites, OpensTheEditor) {
  openWith({"a", "b"});
  press("Edit");
  EXPECT_FALSE(find<mv::frmNew>()) << "no row was clicked yet";
  clickRow(*list, 1);
  list->setFocus();
  QTest::keyClick(list, Qt::Key_F2);
  editor = dynamic_cast<mv::frmNew*>(windowTitled("Edit: 127.0.0.1:1/b"));
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->Mode, "edit");
  EXPECT_EQ(editor->SiteID, list->cell(1, 1).toInt());
}

TEST_F(WebSites, IsWorkedByKeys) {
  openWith({"a", "b"});
  clickRow(*list, 1);
  list->setFocus();
  QTest::keyClick(list, Qt::Key_F5);
  EXPECT_EQ(states(), "01");
  QTest::keyClick(list, Qt::Key_F5);
  QTest::keyClick(list, Qt::Key_F5, Qt::ShiftModifier);
  EXPECT_EQ(states(), "00");
  QTest::keyClick(list, Qt::Key_Insert);
  EXPECT_TRUE(windowTitled("New Web Site"));
  QTest::keyClick(list, Qt::Key_Escape);
  EXPECT_FALSE(window->isChildVisible());
}

TEST_F(WebSites, AnEditedRunningSiteStaysOnWithItsNewValues) {
  openWith({"a", "b"});
  clickRow(*list, 0);
  press("Start");
  mv::gDatabase.execute("update site set hops = 9 where id = " + mv::number(list->cell(0, 1).toLong()));
  window->buildWorkingLists("websiteedited", list->cell(0, 1).toLong());
  EXPECT_EQ(list->cell(0, 5), "9");
  EXPECT_EQ(states(), "10");
  window->buildWorkingLists("websiteedited", 4711);
  EXPECT_EQ(list->rowCount(), 2);
}

TEST_F(WebSites, NewAndChangedRowsKeepTheirPlaceAfterASort) {
  openWith({"b", "a", "c"});
  clickHeader(*list, 0);
  window->buildWorkingLists("websiteadded", site("aa"));
  EXPECT_EQ(names(*list), "127.0.0.1:1/a,127.0.0.1:1/b,127.0.0.1:1/c,127.0.0.1:1/aa");
  clickHeader(*list, kOnOff);
  list->selectAll();
  press("Start");
  EXPECT_EQ(states(), "1110") << "a row that turns on keeps its place";
}

TEST_F(WebSites, DroppedFiltersGoToEverySelectedSite) {
  openWith({"a", "b", "c"});
  list->selectAll();
  QMimeData data;
  data.setText("12\r\n15\r\n");
  const auto drop = [&] {
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list->viewport(), &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list->viewport(), &event);
  };
  drop();
  EXPECT_EQ(count("site_filter_xref"), 0) << "not a drag of filters";
  mv::gDragKind = mv::kDropFilter;
  drop();
  EXPECT_EQ(all("filter_id", "site_filter_xref"), "12,15,12,15,12,15");
  EXPECT_EQ(mv::gDragKind, "");
}

TEST_F(WebSites, TheQuitTimerEndsTheProgramOnlyAfterTheQuitMoment) {
  openWith({});
  int ends = 0;
  mv::setEndProgram([&] { ++ends; });
  mv::gQuitAt = QDateTime(QDate(2001, 5, 6), QTime(12, 0));
  int ticks = 0;
  QObject::connect(&window->tmrQuit, &QTimer::timeout, window, [&] { ++ticks; });
  window->tmrQuit.start(1);
  mv::setNow(mv::gQuitAt);
  EXPECT_TRUE(waitFor([&] { return ticks > 1; }));
  EXPECT_EQ(ends, 0);
  mv::setNow(mv::gQuitAt.addSecs(1));
  EXPECT_TRUE(waitFor([&] { return ends > 0; }));
  window->tmrQuit.stop();
}

}  // namespace
}  // namespace mvtest
