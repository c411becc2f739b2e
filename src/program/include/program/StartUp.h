// The start of the program, step by step: paths, database, log, preferences, upgrade, windows, automatic scanning.
#pragma once

#include <memory>
#include <string>

namespace mv {

class CookieFile;
class frmDownloadManager;

// The folder that holds database, log and downloads: `executableFolder` when it holds the database and can be written;
// for an installed program (a shipped database under ../share/morvane2000, or a folder that cannot be written)
// `userFolder`, which gets a copy of the shipped database at the first start.
std::string findProgramFolder(const std::string& executableFolder, const std::string& userFolder);

class StartUp {
 public:
  StartUp();
  // Ends what is left of the main window and closes the database.
  ~StartUp();

  // Runs all steps. An error ends the remaining ones and is shown; the program stays in the state reached. False when
  // that is a state without a main window.
  bool run(const std::string& programFolder);
  frmDownloadManager* mainWindow() { return main_.get(); }

 private:
  void openData(const std::string& programFolder);
  void openWindows();

  std::unique_ptr<CookieFile> cookies_;
  std::unique_ptr<frmDownloadManager> main_;
};

}  // namespace mv
