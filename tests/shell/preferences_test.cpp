// The preferences window: the row of `pref` in and out, and the maintenance of the database.

#include <QFileInfo>
#include <QProgressBar>
#include <QSignalSpy>
#include <QSlider>

#include "base/Text.h"
#include "files/DiskSpace.h"
#include "scan_windows/frmScan.h"
#include "shell/frmPreferences.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "windows/frmPleaseWait.h"

namespace {

using namespace mv;
using namespace mvtest;

constexpr const char* kRow =
    "select auto_scan || ',' || quit_time || ',' || max_connections || ',' || hide_processes || ',' || auto_update || "
    "',' || help_server || ',' || overwrite_existing from pref";

class PreferencesTest : public WindowTest {
 protected:
  void open() { window = showSingle<frmPreferences>(); }
  // Turns to the tab that holds the control.
  template <class Control>
  Control& on(int tab, const char* name) {
    control<QTabWidget>(window, "SSTabPrefs").setCurrentIndex(tab);
    return control<Control>(window, name);
  }
  void tick(int tab, const char* name) { mvtest::tick(on<QCheckBox>(tab, name)); }
  QString text(const char* name) { return textOf(window, name); }
  QWidget* waiting() { return frame.findChild<QWidget*>("frmPleaseWait"); }
  void clickCompact() {
    on<QPushButton>(kDatabase, "cmdCompactDatabase");
    click(window, "cmdCompactDatabase");
  }

  enum Tab { kAutoScan, kDatabase, kAutoHide, kAutoUpdate, kGeneral };
  frmPreferences* window = nullptr;
};

TEST_F(PreferencesTest, ShowsTheRowAndWritesItBackOnClose) {
  gDatabase.execute("update pref set auto_scan = 'yes', quit_time = 5, max_connections = 7, auto_update = 'yes'");
  open();
  EXPECT_TRUE(on<QCheckBox>(kAutoScan, "chkAutoScan").isChecked());
  EXPECT_EQ(text("txtGenQuitAfterThisManyHours"), "5");

  auto& slider = on<QSlider>(kAutoScan, "sldrQuitAfterThisManyHours");
  QTest::keyClick(&slider, Qt::Key_PageUp);
  QTest::keyClick(&slider, Qt::Key_Right);
  EXPECT_EQ(text("txtGenQuitAfterThisManyHours"), "11");
  tick(kAutoScan, "chkAutoScan");
  EXPECT_FALSE(slider.isEnabled());
  for (const char* name : {"frmGenTurnAutoScanningOff", "lblGenLogOffAfterThisLong", "txtGenQuitAfterThisManyHours"})
    EXPECT_FALSE(enabled(window, name)) << name;
  tick(kAutoScan, "chkAutoScan");
  EXPECT_TRUE(slider.isEnabled());

  tick(kAutoHide, "chkAutoHideProcesses");
  tick(kGeneral, "chkOverwrite");
  gDatabase.execute("update pref set max_connections = 4");
  EXPECT_EQ(value(kRow), "yes,5,4,no,yes,no,no") << "nothing is written before Close";
  click(window, "btnClose");
  EXPECT_EQ(value(kRow), "yes,11,4,yes,yes,no,yes");
  EXPECT_EQ(count("pref"), 1);
  EXPECT_EQ(gHideProcesses + gOverwriteExisting, "yesyes") << "at once";
  EXPECT_EQ(gAutoScan + gAutoUpdate, "nono") << "from the next start";
  EXPECT_EQ(find<frmPreferences>(), nullptr);
}

TEST_F(PreferencesTest, TheCloseBoxAndEscapeDoNotSave) {
  for (const bool escape : {true, false}) {
    open();
    tick(kAutoScan, "chkAutoScan");
    if (escape)
      QTest::keyClick(window, Qt::Key_Escape);
    else
      window->closeRequested();
    EXPECT_EQ(find<frmPreferences>(), nullptr);
    EXPECT_EQ(value(kRow), "no,8,3,no,no,no,no");
  }
}

TEST_F(PreferencesTest, AnEmptyTableGetsARowAndAFailedSaveKeepsTheOldOne) {
  gDatabase.execute("delete from pref");
  open();
  EXPECT_EQ(control<QSlider>(window, "sldrQuitAfterThisManyHours").value(), 1);
  QTest::keyClick(window, Qt::Key_Return);
  EXPECT_EQ(value(kRow), "no,0,0,no,no,no,no");

  open();
  tick(kAutoScan, "chkAutoScan");
  EXPECT_EQ(text("txtGenQuitAfterThisManyHours"), "1") << "not at once after the start";
  gDatabase.execute("alter table pref rename column help_server to another");
  click(window, "btnClose");
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(dialogs.messages()[0].text.contains("help_server"));
  gDatabase.execute("alter table pref rename column another to help_server");
  EXPECT_EQ(value(kRow), "no,0,0,no,no,no,no");
  EXPECT_NE(find<frmPreferences>(), nullptr) << "what was chosen is still there";
  click(window, "btnClose");
  EXPECT_EQ(value(kRow), "yes,1,0,no,no,no,no");

  gDatabase.execute("alter table pref rename column help_server to another");
  open();
  EXPECT_EQ(dialogs.messages().size(), 2u);
  gDatabase.execute("alter table pref rename column another to help_server");
  click(window, "btnClose");
  EXPECT_EQ(value(kRow), "yes,1,0,no,no,no,no") << "what could not be read is not written over";
}

TEST_F(PreferencesTest, ClearsThePositionsAndTheCache) {
  gDatabase.execute("insert into win_pos (wname, wheight) values ('Web Sites', 1500)");
  gDatabase.execute("insert into link (site_id) values (1), (2)");
  open();
  QTest::mouseClick(&on<QPushButton>(kGeneral, "cmdClearWinPos"), Qt::LeftButton);
  QTest::mouseClick(&on<QPushButton>(kDatabase, "cmdClearCache"), Qt::LeftButton);
  EXPECT_EQ(count("win_pos") + count("link"), 0);
  EXPECT_EQ(text("txtDBStatus"), "Link Cache has been cleared.");
  for (const char* name : {"cmdClearWinPos", "cmdClearCache"}) {
    EXPECT_EQ(text(name), "Cleared");
    EXPECT_FALSE(enabled(window, name));
  }
  window->closeRequested();
  open();
  EXPECT_TRUE(enabled(window, "cmdClearWinPos"));
}

TEST_F(PreferencesTest, ShowsAndTestsTheSpace) {
  setFreeDiskSpace(123ull * 1024 * 1024);
  open();
  EXPECT_EQ(text("txtDBFreeSpace"), "123");
  EXPECT_EQ(text("txtDBName"), toQString(gDatabasePath));
  const auto size = static_cast<double>(QFileInfo(toQString(gDatabasePath)).size());
  EXPECT_EQ(text("txtDBSize"), QString::number(size / 1024 / 1024, 'f', 2));
  EXPECT_EQ(text("txtDBStatus"), "Ready");
  window->closeRequested();

  setFreeDiskSpace(0);
  open();
  EXPECT_EQ(text("txtDBStatus"), "Not enough disk space available to perform maintenance.");
  clickCompact();
  EXPECT_EQ(waiting(), nullptr);
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_EQ(dialogs.messages()[0].text, "Not enough disk space available to perform maintenance.");
}

TEST_F(PreferencesTest, CompactsUnderThePleaseWaitWindowUnlessAProcessRuns) {
  auto* scan = new frmScan;
  scan->process().SiteName = "a";
  open();
  clickCompact();
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_TRUE(dialogs.messages()[0].text.contains("while sites are running"));
  closeProcess("Scan: a");

  gDatabase.execute("insert into link (site_id, url) values (1, 'kept')");
  clickCompact();
  ASSERT_NE(waiting(), nullptr);
  EXPECT_EQ(textOf(waiting(), "lblPleaseWait"), "Waiting...");
  EXPECT_EQ(QApplication::activeModalWidget(), waiting());
  QTest::keyClick(waiting(), Qt::Key_Escape);
  EXPECT_TRUE(waitFor([&] {
    return !waiting() || textOf(waiting(), "lblPleaseWait") == "Compacting Morvane2000 database. Please wait...";
  }));
  EXPECT_TRUE(waitFor([&] { return !waiting(); }));
  EXPECT_EQ(text("txtDBStatus"), "Database compacted");
  EXPECT_EQ(text("cmdCompactDatabase"), "Compacted");
  EXPECT_FALSE(enabled(window, "cmdCompactDatabase"));
  EXPECT_EQ(window->focusWidget()->objectName(), "btnClose") << "the next Enter does no harm";
  EXPECT_EQ(count("link", "url = 'kept'"), 1);
  EXPECT_EQ(dialogs.messages().size(), 1u);
}

TEST_F(PreferencesTest, TheEndOfTheProgramGivesACompactionUp) {
  open();
  clickCompact();
  window->unload();
  EXPECT_EQ(waiting(), nullptr);
  open();
  clickCompact();
  ASSERT_TRUE(waitFor([&] { return textOf(waiting(), "lblPleaseWait") != "Waiting..."; }));
  window->unload();
  EXPECT_EQ(waiting(), nullptr);
  EXPECT_FALSE(QFile::exists(toQString(folder() + gTempDatabaseFileName)));
  EXPECT_EQ(count("pref"), 1);
}

// Counts the paints of a widget.
class PaintWatch : public QObject {
 public:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints;
    return false;
  }
  int paints = 0;
};

// MORVANE_LINKS=1000000 for the figure of a large database.
TEST_F(PreferencesTest, ALargeDatabaseHoldsNothingUp) {
  const int links = qEnvironmentVariable("MORVANE_LINKS", "60000").toInt();
  insertNumbered("link (site_id, url, link_type, status)", 1, links,
                 "i % 50, 'http://host' || i % 50 || '.example/some/folder/page-' || i || '.html', 'Document', "
                 "case i % 2 when 0 then 'Done' else 'False' end");
  open();
  clickCompact();
  PaintWatch watch;
  waiting()->findChild<QWidget*>("pbarPleaseWait")->installEventFilter(&watch);
  LoopMeter turn;
  ASSERT_TRUE(waitFor([&] { return !waiting(); }, 300'000));
  EXPECT_EQ(text("txtDBStatus"), "Database compacted");
  QTest::mouseClick(&on<QPushButton>(kDatabase, "cmdClearCache"), Qt::LeftButton);
  ASSERT_TRUE(waiting());
  EXPECT_TRUE(textOf(waiting(), "lblPleaseWait").endsWith("00 links so far"));
  EXPECT_EQ(text("cmdClearCache"), "Clear Cache");
  QSignalSpy percents(&control<QProgressBar>(waiting(), "pbarPleaseWait"), &QProgressBar::valueChanged);
  ASSERT_TRUE(waitFor([&] { return !waiting(); }, 300'000));
  EXPECT_EQ(text("txtDBStatus"), "Link Cache has been cleared.");
  EXPECT_EQ(text("cmdClearCache"), "Cleared");
  EXPECT_GT(percents.size(), 1);
  EXPECT_GT(watch.paints, 1);
  EXPECT_LT(turn.longest, 200) << links << " links";
  EXPECT_EQ(count("link"), 0);
}

}  // namespace
