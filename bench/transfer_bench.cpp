// One file of 1 GiB through the download process: request, transfer, saving, as fast as the loopback interface lets it.

#include <QFileInfo>
#include <QTemporaryDir>
#include <stdexcept>
#include <string>
#include <vector>

#include "Figures.h"
#include "Main.h"
#include "Memory.h"
#include "Program.h"
#include "Server.h"
#include "app/Settings.h"
#include "base/Text.h"

namespace {

constexpr double kMB = 1e6;
constexpr std::int64_t kSize = std::int64_t{1} << 30;
constexpr int kRuns = 5;
constexpr double kGoalSpeed = 1800;  // MB/s; such a machine's memory and loopback interface end at about 4300
constexpr double kGoalMemory = 7.0;  // MB

// Adds the file to the links of the site.
void addLink(mv::Id site, const std::string& host, int run) {
  mv::gDatabase.execute(
      "insert into link (site_id, url, link_type, username, password, id, status, file_type) values (" +
      mv::number(site) + ", " + mv::quoted(host + "/big/" + std::to_string(kSize) + ".jpg") +
      ", \"File\", \"\", "
      "\"\", " +
      mv::number(run + 10) + ", \"False\", \"jpg\")");
}

mvbench::Timing fetch(mv::Id site, const std::string& host, int run) {
  addLink(site, host, run);
  mv::DownloadProcess download;
  download.SiteId = site;
  download.tmrOKToDownload.setInterval(0);
  std::string saved;
  QObject::connect(&download, &mv::DownloadProcess::fileSaved, [&](const std::string& path) { saved = path; });
  const mvbench::Timing timing = mvbench::timed([&] {
    download.initWindow();
    mvtest::runUntil([&] { return !saved.empty() || download.ErrorCount() > 0; });
  });
  download.requestStop();
  if (saved.empty() || QFileInfo(mv::toQString(saved)).size() != kSize)
    throw std::runtime_error("The file did not arrive: " + download.lastError().reason);
  QFile::remove(mv::toQString(saved));
  mv::gDatabase.execute("update link set status = \"Done\"");
  return timing;
}

void measure() {
  const mvbench::ServerProcess server({});
  const mvbench::Application application;
  const QTemporaryDir folder;
  mvtest::openProgramFolder(mv::toUtf8(folder.filePath("program")));
  const mv::Id site = mvbench::addSite(server.host());
  const double idle = mvbench::memory("VmRSS");
  mvbench::forgetPeak();
  std::vector<double> cpu, wall;
  for (int run = 0; run < kRuns; ++run) {
    const mvbench::Timing timing = fetch(site, server.host(), run);
    cpu.push_back(timing.cpu);
    wall.push_back(timing.wall);
  }
  const double bytes = static_cast<double>(kSize);
  using mvbench::Goal;
  mvbench::printFigure("1 GiB file, fetched and saved (limit 4300)", bytes / kMB / mvbench::median(wall), "MB/s",
                       Goal::AtLeast, kGoalSpeed);
  mvbench::printFigure("1 GiB file, per second of processor time", bytes / kMB / mvbench::median(cpu), "MB/s",
                       Goal::AtLeast, kGoalSpeed);
  mvbench::printFigure("1 GiB file, memory growth", (mvbench::memory("VmHWM") - idle) / kMB, "MB", Goal::AtMost,
                       kGoalMemory);
  mv::gDatabase.close();
}

}  // namespace

int main() { return mvbench::run(measure); }
