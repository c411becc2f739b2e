// The main window: menu tree, clipboard commands, arrangement, closing.

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QtTest/QTest>

#include "app/EndProgram.h"
#include "app/ErrorLog.h"
#include "base/Text.h"
#include "base/UserSettings.h"
#include "desktop/Browser.h"
#include "program/ProgramMenus.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmWebSites.h"
#include "store/LinkCleaner.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "windows/ChildWindow.h"
#include "windows/WindowRegistry.h"

namespace {

using namespace mv;
using namespace mvtest;

class MainWindowTest : public ProgramTest {
 protected:
  MainWindowTest() : main(std::make_unique<frmDownloadManager>(programMenus())) {
    main->initWindow();
    main->show();
  }
  QAction* item(const char* name) {
    auto* action = main->findChild<QAction*>(QString::fromLatin1(name));
    EXPECT_NE(action, nullptr) << name;
    return action;
  }
  std::unique_ptr<frmDownloadManager> main;
};

TEST_F(MainWindowTest, HasTheWholeMenuTree) {
  // A "!" stands behind an entry whose window there is not yet.
  const std::string tools =
      "&Tools: &Picture Viewer, &Web Site Manager, P&rocess Manager, -, F&orm Manager, &Filter Manager, "
      "&Rule Manager, FileType &Manager, Ta&g Manager";
  const std::string help =
      "&Help: &Open Help, Morvane2000 Online &Manual, Morvane2000 &Help Page, &Morvane2000 Home Page, -, "
      "Quillon &Support Site, &Quillon Home Page, -, &About Morvane2000";
  const std::vector<std::string> expected = {"&File: &Preferences..., -, &Exit",
                                             "&Edit: &Cut, C&opy, P&aste, -, &Delete Web Site!", tools,
                                             "&Windows: &Cascade, Tile &Horizontally, Tile &Vertically", help};
  std::vector<std::string> found;
  for (const QAction* top : main->menuBar()->actions()) {
    QStringList entries;
    for (const QAction* entry : top->menu()->actions())
      entries << (entry->isSeparator() ? "-" : entry->text() + (entry->isEnabled() ? "" : "!"));
    found.push_back((top->text() + ": " + entries.join(", ")).toStdString());
  }
  EXPECT_EQ(found, expected);
  EXPECT_EQ(main->windowTitle(), "Morvane2000");
}

TEST_F(MainWindowTest, ClipboardCommandsActOnTheControlWithTheFocus) {
  auto* edit = new QLineEdit("xabcy", main.get());
  edit->setGeometry(0, 40, 100, 20);
  edit->show();
  main->activateWindow();
  edit->setFocus();
  ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == edit; }));
  QClipboard* clipboard = QApplication::clipboard();

  edit->setSelection(1, 3);
  item("mnuEditCopy")->trigger();
  EXPECT_EQ(clipboard->text(), "abc");
  item("mnuEditCut")->trigger();
  EXPECT_EQ(edit->text(), "xy");
  item("mnuEditPaste")->trigger();
  EXPECT_EQ(edit->text(), "xabcy");
  edit->setEchoMode(QLineEdit::Password);
  edit->selectAll();
  item("mnuEditCopy")->trigger();
  EXPECT_EQ(clipboard->text(), "abc") << "a password does not leave its box";
}

TEST_F(MainWindowTest, TheEditMenuByKeyActsOnTheSelectionThatWasThereBefore) {
  auto* edit = new QLineEdit("xabcy", main.get());
  edit->setGeometry(0, 40, 100, 20);
  edit->show();
  main->activateWindow();
  edit->setFocus();
  ASSERT_TRUE(waitFor([&] { return QApplication::focusWidget() == edit; }));
  auto* menu = main->findChild<QMenu*>("mnuEdit");
  const auto chooseByKey = [&](Qt::Key mnemonic) {
    edit->setSelection(1, 3);
    QTest::keyClick(edit, Qt::Key_E, Qt::AltModifier);
    ASSERT_TRUE(waitFor([&] { return menu->isVisible(); }));
    QTest::keyClick(menu, mnemonic);
    ASSERT_TRUE(waitFor([&] { return !menu->isVisible(); }));
  };
  chooseByKey(Qt::Key_O);
  EXPECT_EQ(QApplication::clipboard()->text(), "abc");
  chooseByKey(Qt::Key_C);
  EXPECT_EQ(edit->text(), "xy");
}

TEST_F(MainWindowTest, OpensOneWindowOfAKindAndArrangesThem) {
  item("mnuToolsFileTypeManager")->trigger();
  item("mnuToolsFileTypeManager")->trigger();
  item("mnuToolsWebSiteManager")->trigger();
  EXPECT_EQ(WindowRegistry::instance().windows().size(), 2u);
  main->resize(800, 600);
  QCoreApplication::processEvents();

  const QSize room = main->mdiArea().viewport()->size();
  const auto windows = main->mdiArea().subWindowList();
  item("mnuWindowsTileHorizontally")->trigger();
  EXPECT_EQ(windows[0]->width(), room.width());
  EXPECT_EQ(windows[0]->height() + windows[1]->height(), room.height());
  item("mnuWindowsTileVertically")->trigger();
  EXPECT_EQ(windows[0]->height(), room.height());
  EXPECT_EQ(windows[0]->width() + windows[1]->width(), room.width());
  item("mnuWindowsCascade")->trigger();
  EXPECT_NE(windows[0]->pos(), windows[1]->pos());
}

TEST_F(MainWindowTest, ClosingUnloadsHiddenWindowsStoresThePlaceAndStampsTheLog) {
  item("mnuToolsWebSiteManager")->trigger();
  auto* sites = WindowRegistry::instance().find<frmWebSites>();
  sites->closeRequested();
  ASSERT_FALSE(sites->isChildVisible());
  ASSERT_EQ(WindowRegistry::instance().windows().size(), 1u) << "hidden, not gone";
  main->setGeometry(30, 45, 750, 600);
  main->close();
  EXPECT_TRUE(gAppClosing);
  EXPECT_TRUE(WindowRegistry::instance().windows().empty());
  EXPECT_EQ(value("select wwidth from win_pos where wname = \"Morvane2000\""), std::to_string(750 * 15));
  EXPECT_EQ(count("win_pos", "wname = \"Web Sites\""), 1);
  EXPECT_NE(readFile(errorLogPath()).find("Log closed ="), std::string::npos);

  main = std::make_unique<frmDownloadManager>(programMenus());
  main->initWindow();
  EXPECT_EQ(main->size(), QSize(750, 600));
  main->show();
  const QPoint place = main->pos();
  ASSERT_NE(place, main->geometry().topLeft()) << "there is a frame";
  main->showMaximized();
  main->close();
  main = std::make_unique<frmDownloadManager>(programMenus());
  main->initWindow();
  EXPECT_EQ(main->pos(), place) << "not further down with every maximised session";

  gDatabase.execute("update win_pos set wtop = 900000, wleft = -900000 where wname = \"Morvane2000\"");
  main = std::make_unique<frmDownloadManager>(programMenus());
  main->initWindow();
  EXPECT_TRUE(main->screen()->availableGeometry().contains(main->pos())) << "a place on no screen";
}

TEST_F(MainWindowTest, ExitEndsAtOnceWithoutTheClosingSteps) {
  insertNumbered("link (id, site_id)", 1, 5000, "i, 1");
  LinkCleaner::instance().clear(1);
  ASSERT_GT(count("link"), 0);
  const long shipped = count("win_pos");
  int ended = 0;
  setEndProgram([&] { ++ended; });
  item("mnuFileExit")->trigger();
  EXPECT_EQ(ended, 1);
  EXPECT_EQ(count("link"), 0) << "what was to be cleared does not come back";
  EXPECT_FALSE(gAppClosing);
  EXPECT_EQ(count("win_pos"), shipped);
}

TEST_F(MainWindowTest, HelpPagesOpenInTheBrowserAndAFailureIsSaid) {
  QStringList opened;
  setBrowserOpener([&](const QString& url) {
    opened << url;
    return opened.size() < 2;
  });
  saveUserSetting("Morvane2000", "Servers", "SupportHost", "127.0.0.1:9");
  frmDownloadManager redirected(programMenus());
  redirected.findChild<QAction*>("mnuHelpOnlineManual")->trigger();
  redirected.findChild<QAction*>("mnuHelpQuillonSupportSite")->trigger();
  EXPECT_EQ(opened, QStringList({"http://127.0.0.1:9/morvane2000/manual.html", "http://127.0.0.1:9/"}));
  ASSERT_EQ(dialogs.messages().size(), 1u);
  EXPECT_EQ(dialogs.messages()[0].text, "Sorry, couldn't find your browser.");
}

TEST_F(MainWindowTest, AboutStaysUntilItIsClosed) {
  frmSplash& splash = main->splash();
  splash.showBriefly();
  item("mnuAbout")->trigger();
  EXPECT_FALSE(splash.closingTimer.isActive());
  EXPECT_TRUE(splash.isVisible());
  const QString details = textOf(&splash, "lblDetails");
  for (const QString& part :
       {QString("MIT"), QString(qVersion()), QString("SQLite 3."), QString("libcurl "), toQString(folder())})
    EXPECT_TRUE(details.contains(part)) << part.toStdString();
  QTest::keyClick(&splash, Qt::Key_Escape);
  EXPECT_FALSE(splash.isVisible());
}

}  // namespace
