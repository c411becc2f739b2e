// The whole harvest of 2,000 pages with 100 links each and 2,000 files of 16 KB, by the real program with its windows.
// harvest_bench soak: 100,000 pages and 20,000 files, and what an object costs from the first tenth to the last.

#include <QTemporaryDir>
#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include "Figures.h"
#include "Main.h"
#include "Server.h"
#include "base/Text.h"

namespace {

constexpr int kRuns = 5;
constexpr double kGoalSpeed = 3300;     // objects per second; such a machine ends at about 4200
constexpr double kGoalCpu = 0.25;       // ms
constexpr double kGoalMemory = 7.5;     // MB
constexpr double kGoalSoakMemory = 30;  // MB, with the cache of the engine
constexpr double kGoalDrift = 1.1;      // last tenth against the first
constexpr double kGoalGrowth = 3;       // MB

std::string ownFolder(const std::string& program) { return program.substr(0, program.rfind('/') + 1); }

// What the harvest program prints: a name and a number a line.
std::map<std::string, double> harvest(const std::string& program, const std::string& host, const std::string& folder,
                                      const std::string& step) {
  const std::string command =
      ownFolder(program) + "harvest http://" + host + "/ '" + folder + "' " + step + " 2>/dev/null";
  std::FILE* answer = popen(command.c_str(), "r");
  if (answer == nullptr) throw std::runtime_error("The harvest did not start");
  std::map<std::string, double> values;
  std::array<char, 160> line{};
  while (std::fgets(line.data(), line.size(), answer) != nullptr) {
    std::array<char, 32> name{};
    double value = 0;
    if (std::sscanf(line.data(), "%31s %lf", name.data(), &value) == 2) values[name.data()] = value;
    if (!step.empty()) std::fputs(line.data(), stdout);
    std::fflush(stdout);
  }
  if (pclose(answer) != 0 || values.empty()) throw std::runtime_error("The harvest failed");
  return values;
}

void wholeHarvest(const std::string& program) {
  const mvbench::SiteShape shape;
  const mvbench::ServerProcess server(shape);
  const auto objects = static_cast<double>(shape.pages + shape.files);
  std::vector<double> speed, cpu, memory;
  const QTemporaryDir folder;  // nothing is deleted between the runs: file systems take their time over that
  for (int run = 0; run < kRuns; ++run) {
    auto values = harvest(program, server.host(), mv::toUtf8(folder.filePath(QString::number(run))), "");
    if (values["pages"] < static_cast<double>(shape.pages) || values["files"] != static_cast<double>(shape.files))
      throw std::runtime_error("The harvest is not whole");
    speed.push_back(objects / values["wall"]);
    cpu.push_back(values["cpu"] * 1000 / objects);
    memory.push_back(values["peak"] - values["idle"]);
  }
  using mvbench::Goal;
  mvbench::printFigure("whole harvest (limit 4200)", mvbench::median(speed), "objects/s", Goal::AtLeast, kGoalSpeed);
  mvbench::printFigure("whole harvest, processor time of an object", mvbench::median(cpu), "ms", Goal::AtMost,
                       kGoalCpu);
  mvbench::printFigure("whole harvest, memory growth", mvbench::median(memory), "MB", Goal::AtMost, kGoalMemory);
}

void soak(const std::string& program) {
  mvbench::SiteShape shape;
  shape.pages = 100'000;
  shape.files = 20'000;
  shape.fileBytes = 2048;
  const mvbench::ServerProcess server(shape);
  const QTemporaryDir folder;
  auto values = harvest(program, server.host(), mv::toUtf8(folder.filePath("program")),
                        std::to_string((shape.pages + shape.files) / 10));
  mvbench::printFigure("soak, time of an object, last tenth / first", values["drift"], "", mvbench::Goal::AtMost,
                       kGoalDrift);
  mvbench::printFigure("soak, memory growth after the first tenth", values["growth"], "MB", mvbench::Goal::AtMost,
                       kGoalSoakMemory);
  mvbench::printFigure("  of it outside the database engine and its cache", values["growth"] - values["engine"], "MB",
                       mvbench::Goal::AtMost, kGoalGrowth);
}

}  // namespace

int main(int argc, char** argv) {
  const bool isLong = argc == 2 && std::strcmp(argv[1], "soak") == 0;
  return mvbench::run([&] { (isLong ? soak : wholeHarvest)(argv[0]); });
}
