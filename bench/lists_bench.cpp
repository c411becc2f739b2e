// Lists that are long: how long the one thread is held while lists of 5,000 rows are opened, rebuilt, sorted and
// searched; while an editor fills its pairs of lists; while 2,000 of 5,000 web sites are deleted with their links;
// while the longest queue is built.

#include <QTemporaryDir>
#include <QToolButton>
#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Figures.h"
#include "Main.h"
#include "Program.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmRuleManager.h"
#include "catalog_windows/frmSitePaths.h"
#include "desktop/ListView.h"
#include "forms_windows/frmFormManager.h"
#include "scan_windows/frmTagManager.h"
#include "sites_windows/frmNew.h"
#include "sites_windows/frmWebSites.h"
#include "testkit/SiteRow.h"
#include "windows/WindowRegistry.h"

namespace {

using mv::gDatabase;
using mvtest::insertNumbered;

constexpr int kRows = 5000;
constexpr int kDeleted = 2000;
constexpr int kLinksOfSite = 50;
constexpr int kBusySite = 1;
constexpr int kBusyFilter = 1;
constexpr int kAddressColumn = 2;
constexpr int kQueue = 10'000;          // the most that a scan takes
constexpr long kFirstId = 100;          // behind what the shipped database has
constexpr double kGoalTurn = 16;        // ms
constexpr double kGoalSiteEditor = 30;  // ms; four lists at once

void storeSites() {
  insertNumbered(
      "site (id, name, domain, auto_scan, hops, unique_names, base_name, upper_limit, lower_limit, pages_to_scan, "
      "files_to_download)",
      1, kRows,
      "i, printf('127.0.0.1:1/%d/', i), printf('127.0.0.1:1/%d', i), 'no', 1, 'no', '', 10, 1, " +
          std::to_string(kQueue) + ", 10");
  const std::string link = "link (id, site_id, url, link_type, username, password, status, file_type)";
  insertNumbered(link, 1, kRows * kLinksOfSite,
                 "i, i % " + std::to_string(kRows) +
                     " + 1, printf('www.host.example/%08x.jpg', i), 'File', '', '', 'Done', 'jpg'");
  insertNumbered(
      link, 1'000'001, 1'000'000 + kQueue,
      "i, " + std::to_string(kBusySite) + ", printf('127.0.0.1:1/%d.htm', i), 'Document', '', '', 'False', ''");
  gDatabase.execute("update valid_sid set next_value = 2000000 where sid_name = 'link_id'");
}

void storeCatalogue() {
  const long last = kFirstId + kRows - 1;
  insertNumbered("valid_filetypes (id, name, description, can_delete, download_by_default)", kFirstId, last,
                 "i, printf('t%x', i * 7919), 'Some type of files', 'yes', 'no'");
  insertNumbered("rule (id, valid_rule_type_id, valid_field_id, search_value, path, name, operator)", kFirstId, last,
                 "i, 1, 1, printf('/%x/', i), '', printf('Rule %x', i * 7919), 'Contains'");
  insertNumbered("filter (id, name, global, description)", kFirstId, last,
                 "i, printf('Filter %x', i * 7919), 'no', 'Some filter'");
  insertNumbered("valid_tag (id, tag)", kFirstId, last, "i, printf('<t%x href=', i * 7919)");
  insertNumbered("form (id, name, description, form_type)", kFirstId, last,
                 "i, printf('Form %x', i * 7919), 'Some form', 'Form'");
  // Half of them, so that both lists of a pair are long.
  insertNumbered("filter (id, name, global, description)", kBusyFilter, kBusyFilter, "i, 'Busy', 'no', ''");
  const long half = kFirstId + kRows / 2;
  insertNumbered("filter_rule_xref (filter_id, rule_id)", half, last, std::to_string(kBusyFilter) + ", i");
  insertNumbered("site_filetype_xref (site_id, file_type_id)", half, last, std::to_string(kBusySite) + ", i");
  insertNumbered("site_filter_xref (site_id, filter_id)", half, last, std::to_string(kBusySite) + ", i");
}

std::int64_t sitesStored() { return gDatabase.count("select count(*) as outCount from site"); }

// What is left to do for the windows.
void settle() {
  mvtest::runUntil([turns = 0]() mutable { return ++turns > 10; });
}

// Milliseconds of the longest loop iteration from `begin` until `ended` holds.
double longestTurn(
    const std::function<void()>& begin, const std::function<bool()>& ended = [] { return true; }) {
  const mvtest::LoopMeter meter;
  begin();
  mvtest::runUntil(ended);
  settle();
  return meter.longest;
}

void printTurn(const std::string& what, double longest, double goal = kGoalTurn) {
  mvbench::printFigure(what + ", longest turn", longest, "ms", mvbench::Goal::AtMost, goal);
}

// What is done to a list and its window, and the longest turn of each.
class ListTurns {
 public:
  explicit ListTurns(std::string what) : what_(std::move(what)) {}
  ~ListTurns() {
    printTurn(what_, longest_);
    std::printf(" %s\n", parts_.c_str());
  }
  ListTurns(const ListTurns&) = delete;
  ListTurns& operator=(const ListTurns&) = delete;

  void add(const std::string& part, const std::function<void()>& work) {
    const double turn = longestTurn(work);
    longest_ = std::max(longest_, turn);
    parts_ += " " + part + " " + std::to_string(turn).substr(0, 4);
  }

  void addUse(mv::ListView& list) {
    for (int column = 0; column < list.columnCount(); ++column)
      for (int way = 0; way < 2; ++way) add("sorted", [&] { list.sortByClick(column); });
    add("searched", [&] { list.keyboardSearch("zzz"); });
    add("all selected", [&] { list.selectAll(); });
    add("sorted", [&] { list.sortByClick(0); });
  }

 private:
  std::string what_;
  std::string parts_;
  double longest_ = 0;
};

template <class Window>
void useManager(const char* records) {
  ListTurns turns(std::to_string(kRows) + ' ' + records);
  Window* window = nullptr;
  turns.add("opened", [&] { window = mv::showSingle<Window>(); });
  turns.add("rebuilt", [&] { window->buildWorkingLists("init"); });
  turns.addUse(*window->template findChild<mv::ListView*>());
  turns.add("rebuilt", [&] { window->buildWorkingLists("init"); });
  turns.add("closed", [&] { window->unload(); });
}

// Its lists are filled whenever it becomes active. That an editor is laid out for the first time has nothing to do with
// their length, and stands behind the figure only.
template <class Window, class Prepare>
void useEditor(const std::string& what, double goal, Prepare&& prepare) {
  auto* window = new Window;
  prepare(*window);
  const double opened = longestTurn([&] { window->open(); });
  mv::showSingle<mv::frmWebSites>();
  settle();
  printTurn(what, longestTurn([&] { window->showChild(); }), goal);
  std::printf("  opened %.1f\n", opened);
  window->unload();
  settle();
}

void useWebSites(mv::frmWebSites& sites, mv::ListView& list) {
  ListTurns turns(std::to_string(kRows) + " web sites");
  turns.add("rebuilt", [&] { sites.buildWorkingLists("init"); });
  turns.addUse(list);
  turns.add("edited", [&] { sites.buildWorkingLists("websiteedited", kRows); });
  turns.add("rebuilt", [&] { sites.buildWorkingLists("init"); });
}

void useCatalogue() {
  useManager<mv::frmRuleManager>("rules");
  useManager<mv::frmFilterManager>("filters");
  useManager<mv::frmFileTypeManager>("file types");
  useManager<mv::frmTagManager>("tags");
  useManager<mv::frmFormManager>("forms");
  useEditor<mv::frmNewFilter>("a filter's lists of 5000 rules", kGoalTurn, [](mv::frmNewFilter& editor) {
    editor.Mode = "edit";
    editor.FilterId = kBusyFilter;
  });
  useEditor<mv::frmNew>("a site's lists of 5000 types and filters", kGoalSiteEditor, [](mv::frmNew& editor) {
    editor.Mode = "edit";
    editor.SiteID = kBusySite;
  });
}

void openPaths() {
  auto* paths = new mv::frmSitePaths;
  paths->SiteID = kBusySite;
  printTurn("the paths of 2500 file types opened", longestTurn([&] { paths->open(); }));
  paths->unload();
  settle();
}

void useQueue() {
  mv::ScanProcess scan;
  scan.SiteID = kBusySite;
  scan.SiteName = scan.Domain = "127.0.0.1:1";
  const std::string queue = "a queue of " + std::to_string(kQueue) + " pages";
  const auto isBuilt = [&] { return scan.lvwLinks.count() >= kQueue && !scan.rowsOpened(); };
  printTurn(queue + " built", longestTurn([&] { scan.initWindow(); }, isBuilt));
  const auto sort = [&] { scan.lvwLinks.sort(kAddressColumn, Qt::DescendingOrder); };
  printTurn(queue + " sorted", longestTurn(sort));
}

void deleteSites(mv::frmWebSites& sites, mv::ListView& list) {
  QItemSelection many(list.model()->index(1, 0), list.model()->index(kDeleted, 0));
  list.selectionModel()->select(many, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  double longest = 0;
  const mvbench::Timing timing = mvbench::timed([&] {
    longest = longestTurn([&] { sites.findChild<QToolButton*>("Delete")->click(); },
                          [] { return sitesStored() <= kRows - kDeleted; });
  });
  printTurn(std::to_string(kDeleted) + " of " + std::to_string(kRows) + " web sites deleted", longest);
  std::printf("  %.3f s, %.3f s of the processor\n", timing.wall, timing.process);
}

void measureAll() {
  const mvbench::Application application;
  const QTemporaryDir folder;
  mvtest::openProgramFolder(mv::toUtf8(folder.filePath("program")));
  storeSites();
  storeCatalogue();
  mvbench::Program program;
  settle();

  mv::frmWebSites& sites = *mv::showSingle<mv::frmWebSites>();
  auto& list = *sites.findChild<mv::ListView*>("lvwSites");
  useWebSites(sites, list);
  useCatalogue();
  openPaths();
  useQueue();
  deleteSites(sites, list);
}

}  // namespace

int main() { return mvbench::run(measureAll); }
