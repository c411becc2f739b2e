// The link table at scale: what a scan and a download cost per link and per tick when millions of links are stored.
// MORVANE_BENCH_ROWS links are stored beforehand (a million by default); TMPDIR says where. An argument names the part
// to be measured alone.

#include <QCoreApplication>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "Figures.h"
#include "app/Settings.h"
#include "database/RawStatement.h"
#include "download/DownloadProcess.h"
#include "scan/ScanProcess.h"
#include "scan/clsLinkParser.h"
#include "store/Maintenance.h"
#include "store/ProgramDatabase.h"
#include "testkit/EventLoop.h"
#include "testkit/ProgramFolder.h"
#include "testkit/SiteRow.h"
#include "testkit/TestSite.h"

namespace {

using namespace mvbench;
using mv::gDatabase;
using mv::number;
using mv::quoted;

constexpr std::int64_t kSliceRows = 200'000;
constexpr int kRuns = 7;
constexpr int kLinksARun = 10'000;
constexpr int kLinksASlice = 500;  // about what a scan stores between two looks at the clock
constexpr int kIdleSite = 100;     // has all rows stored beforehand
constexpr int kBusySite = 3;       // gets the new ones, which all wait
constexpr int kWaitingLinks = 10;  // pages, and as many files

std::int64_t storedRows = 1'000'000;

// The address of link number `number`; in SQL and here the same. They come in no order.
std::string url(std::int64_t number) {
  char text[96];
  std::snprintf(text, sizeof text, "www.host%03d.example/pictures/%08x/image%d.jpg", static_cast<int>(number % 1000),
                static_cast<unsigned>(number * 2654435761 % 4294967296), static_cast<int>(number));
  return text;
}

// Handled links begin+1 .. end of the idle site: seven files to three pages.
void storeSlice(std::int64_t begin, std::int64_t end) {
  gDatabase.execute(
      "insert into link (id, site_id, url, link_type, username, password, status, file_type) "
      "with recursive numbers(n) as (select " +
      number(begin) + " union all select n + 1 from numbers where n < " + number(end) + ") select n + 1, " +
      number(kIdleSite) +
      ", printf('www.host%03d.example/pictures/%08x/image%d.jpg', n % 1000, n * 2654435761 % 4294967296, n), "
      "case when n % 10 < 7 then 'File' when n % 10 = 8 then 'Directory' else 'Document' end, '', '', 'Done', 'jpg' "
      "from numbers where n > " +
      number(begin));
}

void setNextId() {
  gDatabase.execute("update valid_sid set next_value = " +
                    number(gDatabase.query("select max(id) as newest from link").number("newest") + 1) +
                    " where sid_name = 'link_id'");
}

void storeLinks() {
  for (mv::Recordset names =
           gDatabase.query("select name from sqlite_schema where type = 'index' and tbl_name = 'link'");
       !names.endOfRows(); names.moveNext())
    gDatabase.execute(mv::rawStatement("drop index " + names.text("name")));
  for (std::int64_t begin = 0; begin < storedRows; begin += kSliceRows)
    storeSlice(begin, std::min(begin + kSliceRows, storedRows));
  mv::ensureIndexes();
  // Every so many rows a page and a file wait.
  const mv::Literal spread = number(storedRows / kWaitingLinks);
  gDatabase.execute("update link set status = \"False\", link_type = \"Document\" where id % " + spread + " = 1");
  gDatabase.execute("update link set status = \"False\", link_type = \"File\" where id % " + spread + " = 2");
  setNextId();
}

void addSite(int id) {
  gDatabase.execute(
      "insert into site (id, name, upper_limit, lower_limit, pages_to_scan, files_to_download, download_path, "
      "auto_scan, domain, alternate_matchpath, hops, unique_names, base_name) values (" +
      number(id) +
      ", \"host.example\", 24, 0, 5000, 5000, \"\", \"no\", \"host.example\", \"no\", 1000000, "
      "\"no\", \"\")");
  mvtest::allowEveryType(id);
}

std::int64_t anyNumber() {
  static std::mt19937_64 random(1);
  return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(storedRows)) + 1;
}

// A link as the scan hands it on.
bool store(mv::clsLinkParser& parser, const std::string& link) {
  parser.BasePath = "host.example/";
  parser.Link = link;
  parser.ProcessLink();
  if (parser.isKnown()) return false;
  parser.AddLinkToDatabase();
  return parser.Flag;
}

mv::clsLinkParser makeParser() {
  mv::clsLinkParser parser;
  parser.SiteID = kBusySite;
  parser.Domain = "host.example";
  parser.DomainHops = 1'000'000;
  parser.BuildFilters();
  parser.InitializeDomainHopper();
  return parser;
}

void newLinks() {
  mv::clsLinkParser parser = makeParser();
  std::int64_t number = storedRows;
  const auto storeSlice = [&] {
    const mv::clsLinkParser::CachedLookups lookups(parser);
    mv::CommitGroup slice(gDatabase);
    for (int i = 0; i < kLinksASlice; ++i)
      if (!store(parser, url(++number))) throw std::runtime_error("the address was there");
    slice.commit();
  };
  const Timing timing = medianOf(kRuns, [&] {
    for (int i = 0; i < kLinksARun; i += kLinksASlice) storeSlice();
  });
  printFigure("links tested, checked, stored", kLinksARun / timing.cpu, "links/s", Goal::AtLeast, 38'000);
  printFigure("links tested, checked, stored (all threads)", kLinksARun / timing.process, "links/s", Goal::AtLeast,
              27'500);
  printFigure("links tested, checked, stored (wall)", kLinksARun / timing.wall, "links/s", Goal::AtLeast, 32'500);
}

// From the request to the end of its last slice.
void hugePage() {
  constexpr int kLinksOfPage = 1'000'000;
  std::string html;
  for (int i = 0; i < kLinksOfPage; ++i) html += "<a href=\"/pictures/" + std::to_string(i) + ".jpg\">\n";
  mvtest::TestSite site;
  site.page("/", html);
  mv::ScanProcess process;
  process.SiteID = kBusySite;
  process.SiteName = process.Domain = site.host();
  process.DomainHops = 1'000'000;
  process.tmrOKToDownload.setInterval(1);
  bool ended = false;
  QObject::connect(&process, &mv::ScanProcess::pageProcessed, [&] { ended = true; });
  const mvtest::LoopMeter meter;
  const Timing timing = timed([&] {
    process.initWindow();
    mvtest::runUntil([&] { return ended; });
  });
  printFigure("a page of a million links (wall)", timing.wall, "s", Goal::AtMost, 12);
  printFigure("a page of a million links, longest turn", meter.longest, "ms", Goal::AtMost, 16);
}

void knownLinks() {
  mv::clsLinkParser parser = makeParser();
  const auto show = [&](const char* name, double goal, auto&& next) {
    const Timing timing = medianOf(kRuns, [&] {
      const mv::clsLinkParser::CachedLookups lookups(parser);
      for (int i = 0; i < kLinksARun; ++i)
        if (store(parser, next())) throw std::runtime_error("a link is missing");
    });
    printFigure(name, timing.cpu / kLinksARun * 1e6, "us", Goal::AtMost, goal);
  };
  show("known link, not seen lately", 10, [] { return url(anyNumber()); });
  show("known link, seen lately", 0.35, [] { return url(storedRows - anyNumber() % 100); });
}

// One rebuilding of a process's work list.
template <class ProcessOfSite>
double secondsOfQueue(int site, int expectedRows) {
  ProcessOfSite process(site);
  const Timing timing = medianOf(kRuns, [&] {
    process.lvwLinks.clear();
    process.buildQueue();
  });
  if (expectedRows >= 0 && process.lvwLinks.count() != expectedRows) throw std::runtime_error("a wrong queue");
  return timing.cpu;
}

struct Scan : mv::ScanProcess {
  explicit Scan(int site) {
    SiteID = site;
    SiteName = Domain = "host.example";
    initWindow();
  }
};

struct Download : mv::DownloadProcess {
  explicit Download(int site) {
    SiteId = site;
    SiteName = "host.example";
    initWindow();
  }
};

void queues() {
  printFigure("scan queue, 10 of the site's rows wait", secondsOfQueue<Scan>(kIdleSite, kWaitingLinks + 1) * 1e3, "ms",
              Goal::AtMost, 1);
  printFigure("download queue, 10 of the site's rows wait", secondsOfQueue<Download>(kIdleSite, kWaitingLinks) * 1e3,
              "ms", Goal::AtMost, 1);
  printFigure("scan queue of a busy site", secondsOfQueue<Scan>(kBusySite, -1) * 1e3, "ms", Goal::AtMost, 1);
  printFigure("download queue of a busy site", secondsOfQueue<Download>(kBusySite, -1) * 1e3, "ms", Goal::AtMost, 2);
}

void marking() {
  const Timing timing = medianOf(kRuns, [&] {
    for (int i = 0; i < kLinksARun; ++i)
      gDatabase.execute("update link set status = " + quoted(i % 2 == 0 ? "False" : "Done") +
                        " where id = " + number(anyNumber()));
  });
  printFigure("a link marked", timing.cpu / kLinksARun * 1e6, "us", Goal::AtMost, 30);
}

void idlePoll() {
  gDatabase.execute("update link set status = \"Done\" where status = \"False\" and site_id = " + number(kIdleSite));
  Download process(kIdleSite);
  constexpr int kPolls = 1000;
  const Timing timing = medianOf(kRuns, [&] {
    for (int i = 0; i < kPolls; ++i) process.downloadNext();
  });
  printFigure("idle download poll", timing.cpu / kPolls * 1e3, "ms", Goal::AtMost, 0.05);
}

void clearing() {
  constexpr int kSlices = 50;
  const Timing timing = medianOf(kSlices, [&] {
    gDatabase.execute("delete from link where id in (select id from link where site_id = " + number(kIdleSite) +
                      " limit 1000)");
  });
  printFigure("a thousand of a site's links cleared", timing.cpu * 1e3, "ms", Goal::AtMost, 11);
}

void opening() {
  const Timing timing = medianOf(kRuns, [] { mv::openProgramDatabase(mv::gDatabasePath); });
  printFigure("database closed and opened", timing.cpu * 1e3, "ms", Goal::AtMost, 2);
}

// The program's compaction, which checks its copy and brings it to the disk, beside the engine's bare copy of the file.
void compacting() {
  const std::string copy = mv::gDatabasePath + ".copy";
  const Timing bare = timed([&] { gDatabase.execute("vacuum into " + quoted(copy)); });
  std::filesystem::remove(copy);
  bool ended = false;
  const mvtest::LoopMeter meter;
  const Timing timing = timed([&] {
    const auto compaction = mv::compactDatabase(mv::gDatabasePath, copy);
    QObject::connect(compaction.get(), &mv::Compaction::finished, [&](const std::exception_ptr& failure) {
      if (failure) std::rethrow_exception(failure);
      ended = true;
    });
    mvtest::runUntil([&] { return ended; });
  });
  std::printf("%-52s %12.6g s\n", "the engine's bare copy (wall)", bare.wall);
  printFigure("compaction (wall)", timing.wall, "s", Goal::AtMost, 1.5 * bare.wall);
  printFigure("compaction, longest turn", meter.longest, "ms", Goal::AtMost, 16);
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (const char* rows = std::getenv("MORVANE_BENCH_ROWS")) storedRows = std::max(1000LL, std::atoll(rows));
  const mvtest::ProgramFolder folder;
  const Timing taken = timed([] {
    storeLinks();
    addSite(kIdleSite);
    addSite(kBusySite);
  });
  std::printf("%lld links stored beforehand in %.1f s\n", static_cast<long long>(storedRows), taken.wall);
  const std::pair<std::string_view, void (*)()> parts[] = {
      {"new", newLinks},  {"page", hugePage},  {"known", knownLinks}, {"queues", queues},     {"mark", marking},
      {"idle", idlePoll}, {"clear", clearing}, {"open", opening},     {"compact", compacting}};
  for (const auto& [name, measure] : parts)
    if (argc < 2 || name == argv[1]) measure();
}
