// How long the program takes from its start to the main window that the user sees, with a million links in the
// database, and how much memory it then has.

#include <unistd.h>

#include <QMainWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QWindow>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "Figures.h"
#include "Links.h"
#include "Main.h"
#include "Memory.h"
#include "Program.h"
#include "app/Settings.h"
#include "base/Text.h"
#include "shell/frmDownloadManager.h"
#include "store/ProgramDatabase.h"

namespace {

constexpr double kMB = 1e6;
constexpr int kRuns = 9;
constexpr std::int64_t kLinks = 1'000'000;
constexpr double kGoalMs = 80;

// Ends the program when the main window has been painted for the first time.
class FirstPaint : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched) != nullptr) {
      at = mvbench::secondsOf(CLOCK_MONOTONIC);
      cpu = mvbench::secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    }
    return false;
  }
  double at = 0;
  double cpu = 0;
};

// In the process that is measured: `started` is when it was.
void start(const std::string& folder, double started) {
  const mvbench::Application application;
  FirstPaint paint;
  qApp->installEventFilter(&paint);
  mv::StartUp startUp;
  if (!startUp.run(folder)) throw std::runtime_error("The program did not start");
  mvtest::runUntil([&] { return paint.at > 0; });
  const double idle = mvbench::memory("VmRSS");
  const double own = mvbench::memory("RssAnon");
  std::printf("%f %f %f %f\n", paint.at - started, paint.cpu, idle, own);
  startUp.mainWindow()->close();
}

struct Run {
  double wall = 0, cpu = 0, idle = 0, own = 0;
};

Run runOnce(const char* program, const std::string& folder) {
  std::array<char, 64> started{};
  std::snprintf(started.data(), started.size(), "%f", mvbench::secondsOf(CLOCK_MONOTONIC));
  const std::string command = std::string(program) + " '" + folder + "' " + started.data() + " 2>/dev/null";
  std::FILE* answer = popen(command.c_str(), "r");
  Run run;
  const bool good =
      answer != nullptr && std::fscanf(answer, "%lf %lf %lf %lf", &run.wall, &run.cpu, &run.idle, &run.own) == 4;
  if (answer != nullptr) pclose(answer);
  if (!good) throw std::runtime_error("The program did not start");
  return run;
}

void measure(const char* program) {
  const QTemporaryDir temporary;
  const std::string folder = mv::toUtf8(temporary.filePath("program"));
  mvtest::openProgramFolder(folder);
  mvbench::storeHandledLinks(mvbench::addSite("host.example"), "host.example", kLinks);
  mv::gDatabase.execute("update pref set auto_scan = \"no\"");
  mv::ensureIndexes();
  mv::gDatabase.close();
  std::vector<double> wall, cpu, idle, own;
  for (int i = 0; i < kRuns; ++i) {
    const Run run = runOnce(program, folder);
    wall.push_back(run.wall * 1000);
    cpu.push_back(run.cpu * 1000);
    idle.push_back(run.idle / kMB);
    own.push_back(run.own / kMB);
  }
  mvbench::printFigure("start to shown window, a million links", mvbench::median(wall), "ms", mvbench::Goal::AtMost,
                       kGoalMs);
  std::printf("%-52s %12.6g ms\n", "  of it processor time", mvbench::median(cpu));
  std::printf("%-52s %12.6g MB (%.6g MB its own)\n", "memory of the idle program", mvbench::median(idle),
              mvbench::median(own));
}

}  // namespace

int main(int argc, char** argv) {
  return mvbench::run([&] {
    if (argc == 3)
      start(argv[1], std::atof(argv[2]));
    else
      measure(argv[0]);
  });
}
