// harvest ADDRESS FOLDER [STEP]: the real program, windows and all, fetches a whole local site without its pauses, and
// ends when no page and no file waits any more. Prints what that took, with STEP after every so many objects too.
// FOLDER must not hold a database.

#include <sqlite3.h>

#include <QObject>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "Figures.h"
#include "Main.h"
#include "Memory.h"
#include "Program.h"
#include "app/Settings.h"
#include "net/Address.h"

namespace {

constexpr double kMB = 1e6;

// One link of the site still waits.
bool linksWait(mv::Id site) {
  return !mv::gDatabase
              .query("select id from link where site_id = " + mv::number(site) +
                     " and link_type <> \"Email Address\" and status = \"False\"")
              .endOfRows();
}

// Counts what arrives, and what it costs.
class Meter : public QObject {
 public:
  Meter(mv::ScanProcess& scan, mv::DownloadProcess& download);

  long objects() const { return pages + files; }
  double wall() const { return mvbench::secondsOf(CLOCK_MONOTONIC) - wall_; }
  double cpu() const { return mvbench::secondsOf(CLOCK_PROCESS_CPUTIME_ID) - cpu_; }

  // Prints a line after every `step` objects.
  long step = 0;
  std::vector<double> cpuOfStep;  // seconds
  struct Memory {
    double all;     // bytes
    double engine;  // of it the database engine's, nearly all its cache of pages, which has a limit
  };
  std::vector<Memory> memoryAfterStep;
  long pages = 0;
  long files = 0;

 private:
  void arrived();

  double wall_ = mvbench::secondsOf(CLOCK_MONOTONIC);
  double cpu_ = mvbench::secondsOf(CLOCK_PROCESS_CPUTIME_ID);
  double lastCpu_ = 0;
};

Meter::Meter(mv::ScanProcess& scan, mv::DownloadProcess& download) {
  connect(&scan, &mv::ScanProcess::pageProcessed, this, [this] { ++pages, arrived(); });
  connect(&download, &mv::DownloadProcess::fileSaved, this, [this] { ++files, arrived(); });
}

void Meter::arrived() {
  if (step == 0 || objects() % step != 0) return;
  cpuOfStep.push_back(cpu() - lastCpu_);
  lastCpu_ = cpu();
  memoryAfterStep.push_back({mvbench::memory("VmRSS"), static_cast<double>(sqlite3_memory_used())});
  std::printf("after %ld pages and %ld files: %.4f ms each, memory %.1f MB, of it the database engine's %.1f MB\n",
              pages, files, cpuOfStep.back() * 1000 / static_cast<double>(step), memoryAfterStep.back().all / kMB,
              memoryAfterStep.back().engine / kMB);
  std::fflush(stdout);
}

// The start page has no row of its own.
long pagesDone() {
  return 1 +
         static_cast<long>(mv::gDatabase.count("select count(*) as outCount from link where link_type <> \"File\" and "
                                               "link_type <> \"Email Address\" and status = \"Done\""));
}

void printTotals(const Meter& meter, long errors, double idle) {
  std::printf(
      "pages   %ld\nfiles   %ld\nerrors  %ld\nwall    %.3f s\ncpu     %.3f s\nidle    %.1f MB\npeak    %.1f MB\n",
      pagesDone(), meter.files, errors, meter.wall(), meter.cpu(), idle / kMB, mvbench::memory("VmHWM") / kMB);
  if (meter.cpuOfStep.size() < 2) return;
  const Meter::Memory& first = meter.memoryAfterStep.front();
  const Meter::Memory& last = meter.memoryAfterStep.back();
  std::printf("drift   %.3f\ngrowth  %.1f MB\nengine  %.1f MB\n", meter.cpuOfStep.back() / meter.cpuOfStep.front(),
              (last.all - first.all) / kMB, (last.engine - first.engine) / kMB);
}

void harvest(const std::string& address, const std::string& folder, long step) {
  mvtest::openProgramFolder(folder);
  const mv::Id site = mvbench::addSite(std::string(mv::withoutScheme(address)));
  // A file of the same name from another folder of the site is no reason to pass one over.
  mv::gDatabase.execute("update pref set overwrite_existing = \"yes\"");
  mvbench::Program program;
  auto& scan = program.scans().at(0)->process();
  auto& download = program.downloads().at(0)->process();
  QCoreApplication::processEvents();
  const double idle = mvbench::memory("VmRSS");
  mvbench::forgetPeak();
  Meter meter(scan, download);
  meter.step = step;
  program.unpace();
  // The table is asked when the list of files is empty: every few milliseconds it would cost a twentieth of the
  // harvest.
  mvtest::runUntil(
      [&] { return meter.pages + scan.ErrorCount() > 0 && download.hasNothingLeft() && !linksWait(site); });
  printTotals(meter, scan.ErrorCount() + download.ErrorCount(), idle);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3 && argc != 4) {
    std::fprintf(stderr, "usage: harvest ADDRESS FOLDER [STEP]\n");
    return 2;
  }
  return mvbench::run([&] {
    const mvbench::Application application;
    harvest(argv[1], argv[2], argc > 3 ? std::atol(argv[3]) : 0);
  });
}
