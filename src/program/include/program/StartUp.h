// The start of the program, step by step: paths, database, log, preferences, upgrade, windows, automatic scanning.
#pragma once

#include <memory>
#include <string>

namespace mv {

class CookieFile;
class DatabaseWatch;
class SingleRun;
class frmDownloadManager;

// The folder that holds database, log and downloads: `executableFolder` when it holds the database and can be written;
// for an installed program (a shipped database under ../share/morvane2000, or a folder that cannot be written)
// `userFolder`, which gets a copy of the shipped database at the first start. A folder that cannot be written and holds
// the only database there is remains the answer; opening it says so. Raises std::runtime_error for a folder whose name
// is not UTF-8.
std::string findProgramFolder(const std::string& executableFolder, const std::string& userFolder);

class StartUp {
 public:
  StartUp();
  // Ends what is left of the main window and closes the database.
  ~StartUp();
  StartUp(const StartUp&) = delete;
  StartUp& operator=(const StartUp&) = delete;

  // Runs all steps; where the program is at work in that folder already it is called to the front instead, and this run
  // is ended. An error ends the remaining ones and is shown; the program stays in the state reached. False when
  // that is a state without a main window.
  bool run(const std::string& programFolder);
  // The same in the folder that findProgramFolder finds.
  bool run(const std::string& executableFolder, const std::string& userFolder);
  frmDownloadManager* mainWindow() { return main_.get(); }

  // A request of the system to end: closes the program as its close box does, at any time. While a message of the start
  // stands, it goes, and the remaining steps are left out.
  void end();
  bool isEnded() const { return ended_; }

 private:
  void openData();
  void openFrame();
  void openSites();
  void autoScan();
  void databaseLost();

  void raiseMain();

  bool ended_ = false;
  std::unique_ptr<SingleRun> single_;
  std::unique_ptr<CookieFile> cookies_;
  std::unique_ptr<DatabaseWatch> watch_;
  std::unique_ptr<frmDownloadManager> main_;
};

}  // namespace mv
