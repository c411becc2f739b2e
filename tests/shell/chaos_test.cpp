// Ten sites at work while their windows, and the managers', are hidden, shown, ended, closed and opened in no order at
// all, while another program holds the lock of the database, while the database is full or away for a moment, and while
// the server cuts its answers off. The order comes from a seed that is printed; MORVANE_CHAOS_SEED repeats it,
// MORVANE_CHAOS_SECONDS makes it longer.

#include <QAction>
#include <QElapsedTimer>
#include <chrono>
#include <filesystem>
#include <random>
#include <set>
#include <thread>

#include "database/RawStatement.h"
#include "download_windows/frmDownload.h"
#include "program/ProgramMenus.h"
#include "scan_windows/frmScan.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmPreferences.h"
#include "shell/frmProcessManager.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "testkit/TestSite.h"

namespace {

using namespace mv;
using namespace mvtest;

constexpr int kSites = 10;
constexpr int kPages = 40;
constexpr int kTickMs = 10;

class ChaosTest : public ProgramTest {
 protected:
  ChaosTest() : random_(seed()) {
    for (int i = 0; i < kSites; ++i) {
      fillSite(startOf(i));
      addSite(web_.host() + startOf(i), folder() + "/saved", {"jpg"});
    }
    gDatabase.execute("update pref set max_connections = 10");
    gOverwriteExisting = "yes";
    main_ = std::make_unique<frmDownloadManager>(programMenus());
    main_->show();
    sites_ = showSingle<frmWebSites>();
  }

  static std::string startOf(int site) { return "/site" + std::to_string(site) + "/"; }
  // Pages that all refer to all pages and pictures.
  void fillSite(const std::string& start) {
    std::string links;
    for (int i = 0; i < kPages; ++i)
      links += "<a href=\"" + std::to_string(i) + ".html\"> <img src=\"" + std::to_string(i) + ".jpg\"> ";
    web_.page(start, links);
    for (int i = 0; i < kPages; ++i) {
      web_.page(start + std::to_string(i) + ".html", links);
      web_.file(start + std::to_string(i) + ".jpg", "image/jpeg", std::string(3000, 'p'));
    }
  }
  static unsigned seed() {
    const unsigned given = qEnvironmentVariable("MORVANE_CHAOS_SEED", "0").toUInt();
    const unsigned seed = given ? given : std::random_device()();
    std::printf("MORVANE_CHAOS_SEED=%u\n", seed);
    return seed;
  }
  int pick(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }

  ListView& siteList() { return control<ListView>(sites_, "lvwSites"); }
  void startAll() {
    sites_->showChild();
    siteList().selectAll();
    click(sites_, "Start");
  }
  void menu(const char* item) { main_->findChild<QAction*>(item)->trigger(); }

  // At full speed: a turn of a site takes seconds otherwise.
  void hurry() {
    const auto quicken = [](QTimer& timer) {
      if (timer.interval() != kTickMs) timer.setInterval(kTickMs);
    };
    const auto hasten = [&](Process& process) {
      quicken(process.tmrOKToDownload);
      quicken(process.tmrWaitForAWhile);
    };
    for (ChildWindow* window : WindowRegistry::instance().windows()) {
      if (auto* scan = dynamic_cast<frmScan*>(window)) hasten(scan->process());
      if (auto* download = dynamic_cast<frmDownload*>(window)) hasten(download->process());
    }
  }

  void useProcessManager() {
    auto* manager = showSingle<frmProcessManager>();
    auto& list = control<ListView>(manager, "lvwProcesses");
    if (list.rowCount() == 0) return;
    clickRow(list, pick(list.rowCount()));
    click(manager, pick(4) == 0 ? "Delete" : "Expand");
  }
  void stopOrStartASite() {
    sites_->showChild();
    clickRow(siteList(), pick(siteList().rowCount()));
    click(sites_, pick(2) == 0 ? "Stop" : "Start");
  }
  void treatAnyWindow() {
    const std::vector<ChildWindow*> windows = WindowRegistry::instance().windows();
    ChildWindow* window = windows[static_cast<std::size_t>(pick(static_cast<int>(windows.size())))];
    auto* process = dynamic_cast<ProcessWindow*>(window);
    switch (pick(5)) {
      case 0:
        window->showChild();
        break;
      case 1:
        if (process) process->toggleDetails();
        break;
      case 2:
        window->parentWidget()->showMinimized();
        break;
      default:
        window->closeRequested();
    }
  }
  void openAny() {
    static constexpr const char* kItems[] = {
        "mnuFilePrefs",           "mnuToolsPictureViewer",      "mnuToolsWebSiteManager",
        "mnuToolsProcessManager", "mnuToolsFileTypeManager",    "mnuToolsTagManager",
        "mnuWindowsCascade",      "mnuWindowsTileHorizontally", "mnuWindowsTileVertically"};
    menu(kItems[pick(std::size(kItems))]);
  }
  void usePreferences() {
    menu("mnuFilePrefs");
    auto* preferences = find<frmPreferences>();
    static constexpr const char* kButtons[] = {"cmdClearCache", "cmdClearWinPos", "chkAutoHideProcesses", "btnClose"};
    control<QAbstractButton>(preferences, kButtons[pick(std::size(kButtons))]).click();
  }

  // --- what befalls the database and the network; calmDown() ends it

  // As a backup does: another connection has the right to write for a while.
  void lockDatabase() {
    if (locking_.joinable()) return;
    locking_ = std::jthread([path = gDatabasePath, milliseconds = pick(400)] {
      Database other;
      try {
        other.open(path);
        other.execute("begin immediate");
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        other.execute("rollback");
      } catch (const DatabaseError&) {
        // It is away, or somebody else was quicker.
      }
    });
  }
  void fillDatabase() {
    const std::int64_t pages = gDatabase.query("pragma page_count").number("page_count");
    gDatabase.query(rawStatement("pragma max_page_count = " + std::to_string(pages)));
  }
  void moveDatabase() {
    std::error_code ignored;
    std::filesystem::rename(gDatabasePath, away(), ignored);
  }
  std::string away() const { return gDatabasePath + ".away"; }
  void cutConnections() {
    static constexpr Fault kFaults[] = {Fault::Refuse, Fault::Reset, Fault::ShortBody, Fault::Garbage};
    const std::string start = startOf(pick(kSites));
    const std::string number = std::to_string(pick(kPages));
    const Fault fault = kFaults[pick(std::size(kFaults))];
    web_.add(start + number + ".jpg", {.type = "image/jpeg", .body = std::string(3000, 'p'), .fault = fault});
    web_.add(start + number + ".html", {.body = std::string(3000, 'h'), .fault = fault});
  }
  void befall() {
    switch (pick(4)) {
      case 0:
        return lockDatabase();
      case 1:
        return fillDatabase();
      case 2:
        return moveDatabase();
      default:
        return cutConnections();
    }
  }
  void calmDown() {
    std::error_code ignored;
    if (!std::filesystem::exists(gDatabasePath)) std::filesystem::rename(away(), gDatabasePath, ignored);
    if (locking_.joinable()) locking_.join();
    gDatabase.query("pragma max_page_count = 1000000000");
  }
  // What the user is told of such troubles, and of nothing else.
  void expectTroublesOnly() {
    for (const auto& message : dialogs.messages()) {
      const QString text = message.text.toLower();
      const bool isTrouble = text.contains("locked") || text.contains("full") || text.contains("unable to open") ||
                             text.contains("cannot be stored") || text.contains("in use");
      EXPECT_TRUE(isTrouble) << message.text.toStdString();
    }
    dialogs.forgetMessages();
  }

  void doSomething() {
    switch (pick(9)) {
      case 8:
        return befall();
      case 0:
        return useProcessManager();
      case 1:
        return stopOrStartASite();
      case 2:
        return openAny();
      case 3:
        return usePreferences();
      default:
        return treatAnyWindow();
    }
  }

  // Every process that is there takes its next step.
  void expectAllAtWork() {
    hurry();
    std::set<const Process*> idle;
    for (ChildWindow* window : processWindows()) {
      auto* scan = dynamic_cast<frmScan*>(window);
      Process& process = scan ? static_cast<Process&>(scan->process()) : dynamic_cast<frmDownload*>(window)->process();
      idle.insert(&process);
      QObject::connect(&process.tmrOKToDownload, &QTimer::timeout, sites_, [&] { idle.erase(&process); });
    }
    EXPECT_TRUE(waitFor([&] { return idle.empty(); })) << idle.size() << " processes are stuck";
    for (ChildWindow* window : processWindows()) closeProcess(window->positionKey());
  }

  TestSite web_;
  std::mt19937 random_;
  std::jthread locking_;
  std::unique_ptr<frmDownloadManager> main_;
  frmWebSites* sites_ = nullptr;
};

TEST_F(ChaosTest, NoWindowIsLostAndNoProcessGetsStuck) {
  startAll();
  ASSERT_EQ(processWindows().size(), 2u * kSites);
  const qint64 length = qEnvironmentVariable("MORVANE_CHAOS_SECONDS", "3").toInt() * 1000;
  int deeds = 0;
  QElapsedTimer clock;
  for (clock.start(); clock.elapsed() < length; ++deeds) {
    hurry();
    doSomething();
    waitFor([] { return true; });
    QTest::qWait(pick(10));
    if (pick(4) == 0) calmDown();
  }
  calmDown();
  std::printf("%d deeds, %zu requests served, %zu child windows at the end\n", deeds, web_.requests().size(),
              WindowRegistry::instance().windows().size());

  EXPECT_TRUE(waitFor([&] {
    return main_->mdiArea().subWindowList().size() == std::ssize(WindowRegistry::instance().windows());
  })) << "an ended window is still there";
  expectAllAtWork();

  // Whatever became of them, all sites can be stopped and started again, and each works.
  expectTroublesOnly();
  sites_->closeAllWebSites();
  startAll();
  ASSERT_EQ(processWindows().size(), 2u * kSites);
  hurry();
  gDatabase.execute("delete from link");
  for (int site = 0; site < kSites; ++site) {
    const std::string start = startOf(site);
    const int before = web_.requestCount(start);
    EXPECT_TRUE(waitFor([&] { return web_.requestCount(start) > before; })) << start;
  }
  EXPECT_TRUE(waitFor([&] { return count("link", "link_type = 'File' and status = 'Done'") > 0; }));

  main_->close();
  EXPECT_TRUE(waitFor([&] { return main_->mdiArea().subWindowList().isEmpty(); })) << "a window was left over";
  EXPECT_TRUE(WindowRegistry::instance().windows().empty());
  for (const auto& message : dialogs.messages()) ADD_FAILURE() << message.text.toStdString();
}

}  // namespace
