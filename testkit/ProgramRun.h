// Runs the built program as a user does, in a program folder of its own that is removed afterwards.
#pragma once

#include <QProcess>
#include <string>
#include <vector>

#include "store/Id.h"
#include "testkit/ProgramFolder.h"

namespace mvtest {

class ProgramRun {
 public:
  // A copy of `executable` in a fresh program folder, whose database is open in gDatabase.
  explicit ProgramRun(const std::string& executable);
  // Kills a program that still runs.
  ~ProgramRun();
  ProgramRun(const ProgramRun&) = delete;
  ProgramRun& operator=(const ProgramRun&) = delete;

  // Adds a site with automatic scanning on, files from `lowerKB` to `upperMB`, and switches automatic scanning on.
  // Returns the site's id.
  mv::Id addAutoScanSite(const std::string& location, const std::string& lowerKB, const std::string& upperMB,
                         const std::vector<std::string>& extensions);

  // Without a display (DISPLAY, WAYLAND_DISPLAY) on the offscreen platform. False when it did not start.
  bool start();
  bool isRunning();
  // Asks it to end as a log-out does. True when it ended by itself with code 0.
  bool terminate();
  // Ends it without asking, at whatever it is doing.
  void kill();

 private:
  ProgramFolder folder_;
  QProcess process_;
};

}  // namespace mvtest
