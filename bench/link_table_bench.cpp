// The link table at scale: what a scan and a download cost per link and per tick when millions of links are stored.
// MORVANE_BENCH_ROWS links are stored beforehand (a million by default); TMPDIR says where.

#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "app/Settings.h"
#include "store/ProgramDatabase.h"
#include "store/Sequence.h"

namespace {

using mv::gDatabase;
using mv::quoted;

constexpr std::int64_t kDefaultRows = 1'000'000;
constexpr std::int64_t kHandledRows = 1'000'000;  // of the idle site, at most
constexpr std::int64_t kSliceRows = 200'000;
constexpr int kQueueRows = 50;  // what a process takes from its queue query at once
constexpr const char* kIdleSite = "100";
constexpr const char* kBusySite = "3";

std::int64_t storedRows = kDefaultRows;

std::int64_t idleRows() { return std::min(kHandledRows, storedRows / 2); }

std::int64_t siteOf(std::int64_t number) { return number <= idleRows() ? std::atoll(kIdleSite) : number / 10 % 10; }

// The address of link number `number`; in SQL and here the same. A site's links lead to its own host, in no order.
std::string url(std::int64_t number) {
  char text[96];
  std::snprintf(text, sizeof text, "www.host%03d.example/pictures/%08x/image%d.jpg", static_cast<int>(siteOf(number)),
                static_cast<unsigned>(number * 2654435761 % 4294967296), static_cast<int>(number));
  return text;
}

// Links begin+1 .. end. The first belong to the idle site, all of them handled files. The rest is spread over ten
// sites: files and pages, one in a hundred waiting, and addresses of mailboxes, which wait for ever.
void storeSlice(std::int64_t begin, std::int64_t end) {
  const std::string idle = "n <= " + std::to_string(idleRows());
  gDatabase.execute(
      "insert into link (id, site_id, url, link_type, username, password, status, file_type) "
      "with recursive numbers(n, site) as (select " +
      std::to_string(begin) +
      ", 0 "
      "union all select n + 1, iif(n + 1 <= " +
      std::to_string(idleRows()) + ", " + kIdleSite + ", (n + 1) / 10 % 10) from numbers where n < " +
      std::to_string(end) +
      ") select n + 1, site, "
      "printf('www.host%03d.example/pictures/%08x/image%d.jpg', site, n * 2654435761 % 4294967296, n), "
      "case when " +
      idle +
      " or n % 10 < 7 then 'File' when n % 50 = 49 then 'Email Address' "
      "when n % 10 = 8 then 'Directory' else 'Document' end, '', '', "
      "case when " +
      idle +
      " or (n / 100 % 100 > 0 and n % 50 <> 49) then 'Done' else 'False' end, 'jpg' "
      "from numbers where n > " +
      std::to_string(begin));
}

void storeLinks() {
  for (const char* index : {"link_url", "link_site_type_status", "link_site_status_type"})
    gDatabase.execute(std::string("drop index ") + index);
  for (std::int64_t begin = 0; begin < storedRows; begin += kSliceRows)
    storeSlice(begin, std::min(begin + kSliceRows, storedRows));
  mv::ensureIndexes();
  gDatabase.execute("update valid_sid set next_value = " + std::to_string(storedRows + 2) +
                    " where sid_name = 'link_id'");
}

std::int64_t anyNumber() {
  static std::mt19937_64 random(1);
  return static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(storedRows)) + 1;
}

std::int64_t countUrl(const std::string& address) {
  return gDatabase.count("select count(*) as outCount from link where url = " + quoted(address));
}

// Reads as much of a query's result as a process takes at once.
void readQueue(benchmark::State& state, const std::string& sql) {
  int rows = 0;
  for (auto _ : state) {
    rows = 0;
    for (mv::Recordset links = gDatabase.query(sql); !links.endOfRows() && rows < kQueueRows; links.moveNext(), ++rows)
      benchmark::DoNotOptimize(links.text("url"));
  }
  state.counters["rows"] = rows;
}

std::string downloadQueue(const std::string& site) {
  return "select id, status, site_id, link_type, url, username, password, file_type from link where site_id = " + site +
         " and link_type = " + quoted("File") + " and status <> " + quoted("Done");
}

// A link as the scan stores it: duplicate check, identifier, insert.
void insertNewLink(benchmark::State& state) {
  static std::int64_t number = storedRows;
  for (auto _ : state) {
    const std::string address = url(++number);
    if (countUrl(address) > 0) state.SkipWithError("the address was there");
    gDatabase.execute("insert into link (site_id,url,link_type,username,password,id,status,file_type) values (" +
                      std::to_string(siteOf(number)) + ", " + quoted(address) + ", " + quoted("File") + ", " +
                      quoted("") + ", " + quoted("") + ", " + std::to_string(mv::nextSequenceValue("link_id")) + ", " +
                      quoted("False") + ", " + quoted("jpg") + ")");
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(insertNewLink)->Iterations(100'000)->Unit(benchmark::kMicrosecond);

void duplicateCheckOfAStoredLink(benchmark::State& state) {
  for (auto _ : state)
    if (countUrl(url(anyNumber())) != 1) state.SkipWithError("a link is missing");
}
BENCHMARK(duplicateCheckOfAStoredLink)->Unit(benchmark::kMicrosecond);

void duplicateCheckOfANewLink(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(countUrl(url(anyNumber()) + "x"));
}
BENCHMARK(duplicateCheckOfANewLink)->Unit(benchmark::kMicrosecond);

void idleDownloadPoll(benchmark::State& state) { readQueue(state, downloadQueue(kIdleSite)); }
BENCHMARK(idleDownloadPoll)->Unit(benchmark::kMicrosecond);

void downloadQueueOfABusySite(benchmark::State& state) { readQueue(state, downloadQueue(kBusySite)); }
BENCHMARK(downloadQueueOfABusySite)->Unit(benchmark::kMicrosecond);

void scanQueueOfABusySite(benchmark::State& state) {
  readQueue(state, std::string("select id, status, site_id, url, link_type  from link where site_id = ") + kBusySite +
                       " and link_type <> " + quoted("File") + " and link_type <> " + quoted("Email Address") +
                       " and status = " + quoted("False"));
}
BENCHMARK(scanQueueOfABusySite)->Unit(benchmark::kMicrosecond);

void markALinkDone(benchmark::State& state) {
  for (auto _ : state)
    gDatabase.execute("update link set status = " + quoted("Done") + " where id = " + std::to_string(anyNumber()));
}
BENCHMARK(markALinkDone)->Unit(benchmark::kMicrosecond);

void clearTheCacheOfTheIdleSite(benchmark::State& state) {
  for (auto _ : state) gDatabase.execute(std::string("delete from link where site_id = ") + kIdleSite);
  state.counters["rows"] = static_cast<double>(gDatabase.rowsAffected());
}
BENCHMARK(clearTheCacheOfTheIdleSite)->Iterations(1)->Unit(benchmark::kMillisecond);

void closeAndOpen(benchmark::State& state) {
  for (auto _ : state) mv::openProgramDatabase(mv::gDatabasePath);
}
BENCHMARK(closeAndOpen)->Iterations(3)->Unit(benchmark::kMillisecond);

void clearTheWholeCache(benchmark::State& state) {
  for (auto _ : state) gDatabase.execute("delete from link");
  state.counters["rows"] = static_cast<double>(gDatabase.rowsAffected());
}
BENCHMARK(clearTheWholeCache)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  if (const char* rows = std::getenv("MORVANE_BENCH_ROWS")) storedRows = std::max(1000LL, std::atoll(rows));

  const QTemporaryDir folder;
  mv::setProgramFolder(folder.path().toStdString());
  QFile::copy(QStringLiteral(MORVANE_SHIPPED_DATABASE), QString::fromStdString(mv::gDatabasePath));
  mv::openProgramDatabase(mv::gDatabasePath);
  const auto start = std::chrono::steady_clock::now();
  storeLinks();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  std::cout << storedRows << " links stored in " << taken.count() << " s\n";
  benchmark::RunSpecifiedBenchmarks();
  gDatabase.close();
}
