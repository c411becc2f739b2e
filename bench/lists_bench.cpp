// Lists that are long: how long the one thread is held while 5,000 web sites are loaded, 2,000 of them are deleted with
// their links, and the longest queues are built.

#include <QAbstractItemView>
#include <QItemSelectionModel>
#include <QTemporaryDir>
#include <QToolButton>
#include <cstdio>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>

#include "Figures.h"
#include "Program.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "sites_windows/frmWebSites.h"
#include "store/ProgramDatabase.h"
#include "windows/WindowRegistry.h"

namespace {

using mv::gDatabase;
using mv::number;
using mv::quoted;

constexpr int kSites = 5000;
constexpr int kDeleted = 2000;
constexpr int kLinksOfSite = 50;
constexpr int kBusySite = 1;
constexpr int kQueue = 10'000;    // the most that a scan takes
constexpr double kGoalTurn = 16;  // ms

void fillDatabase() {
  gDatabase.execute(
      "insert into site (id, name, domain, auto_scan, hops, unique_names, base_name, upper_limit, lower_limit, "
      "pages_to_scan, files_to_download) with recursive numbers(n) as (select 1 union all select n + 1 from numbers "
      "where n < " +
      number(kSites) + ") select n, printf('127.0.0.1:1/%d/', n), printf('127.0.0.1:1/%d', n), 'no', 1, 'no', " +
      quoted("") + ", 10, 1, " + number(kQueue) + ", 10 from numbers");
  gDatabase.execute(
      "insert into link (id, site_id, url, link_type, username, password, status, file_type) with recursive numbers(n) "
      "as (select 1 union all select n + 1 from numbers where n < " +
      number(kSites * kLinksOfSite) + ") select n, n % " + number(kSites) +
      " + 1, printf('www.host.example/%08x.jpg', n), 'File', '', '', 'Done', 'jpg' from numbers");
  gDatabase.execute(
      "insert into link (id, site_id, url, link_type, username, password, status, file_type) with recursive numbers(n) "
      "as (select 1 union all select n + 1 from numbers where n < " +
      number(kQueue) + ") select n + 1000000, " + number(kBusySite) +
      ", printf('127.0.0.1:1/%d.htm', n), 'Document', '', '', 'False', '' from numbers");
  gDatabase.execute("update valid_sid set next_value = 2000000 where sid_name = 'link_id'");
}

mv::frmWebSites& siteList() {
  for (mv::ChildWindow* window : mv::WindowRegistry::instance().windows())
    if (auto* sites = dynamic_cast<mv::frmWebSites*>(window)) return *sites;
  throw std::runtime_error("There is no list of web sites");
}

std::int64_t sitesStored() { return gDatabase.count("select count(*) as outCount from site"); }

// What is left to do for the windows.
void settle() {
  mvtest::runUntil([turns = 0]() mutable { return ++turns > 10; });
}

// The longest loop iteration from `begin` until `ended` holds.
template <class Begin, class Ended>
void measure(const std::string& name, Begin&& begin, Ended&& ended) {
  const mvtest::LoopMeter meter;
  const mvbench::Timing timing = mvbench::timed([&] {
    begin();
    mvtest::runUntil(ended);
    settle();
  });
  mvbench::printFigure(name + ", longest turn", meter.longest, "ms", mvbench::Goal::AtMost, kGoalTurn);
  std::printf("  %.3f s, %.3f s of the processor, in %ld iterations\n", timing.wall, timing.process, meter.iterations);
}

void measureAll() {
  const mvbench::Application application;
  const QTemporaryDir folder;
  mvtest::openProgramFolder(mv::toUtf8(folder.filePath("program")));
  fillDatabase();
  mvbench::Program program;
  settle();

  mv::frmWebSites& sites = siteList();
  auto& list = *sites.findChild<QAbstractItemView*>("lvwSites");
  const std::string many = std::to_string(kSites) + " web sites";
  measure(
      many + " loaded", [&] { sites.buildWorkingLists("init"); }, [] { return true; });

  std::unique_ptr<mv::ScanProcess> scan = std::make_unique<mv::ScanProcess>();
  scan->SiteID = kBusySite;
  scan->SiteName = scan->Domain = "127.0.0.1:1";
  measure(
      "a queue of " + std::to_string(kQueue) + " pages built", [&] { scan->initWindow(); },
      [&] { return scan->lvwLinks.count() >= kQueue && !scan->rowsOpened(); });
  scan.reset();

  QItemSelection all(list.model()->index(1, 0), list.model()->index(kDeleted, 0));
  list.selectionModel()->select(all, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  measure(
      std::to_string(kDeleted) + " of " + many + " deleted", [&] { sites.findChild<QToolButton*>("Delete")->click(); },
      [] { return sitesStored() <= kSites - kDeleted; });
}

}  // namespace

int main() {
  try {
    measureAll();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
