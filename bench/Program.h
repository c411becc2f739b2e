// The real program with its windows, in a folder of its own and without a display, as the benchmarks run it.
#pragma once

#include <QApplication>
#include <string>
#include <vector>

#include "download_windows/frmDownload.h"
#include "program/StartUp.h"
#include "scan_windows/frmScan.h"
#include "store/Id.h"
#include "testkit/EventLoop.h"
#include "testkit/ProgramFolder.h"

namespace mvbench {

// A site in the open database that files of every type and size are fetched from, and that starts with the program.
// Returns its id.
mv::Id addSite(const std::string& location);

// A QApplication that needs no display.
class Application {
 public:
  Application();

 private:
  int argc_ = 1;
  char name_[8] = "bench";
  char* argv_[2] = {name_, nullptr};
  QApplication application_;
};

// Starts the program in the folder that is open: main window, web sites, and every site that starts with it.
class Program {
 public:
  Program();
  ~Program();

  std::vector<mv::frmScan*> scans() const;
  std::vector<mv::frmDownload*> downloads() const;
  // No timer waits any more.
  void unpace();

 private:
  mv::StartUp startUp_;
};

}  // namespace mvbench
