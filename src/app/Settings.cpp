#include "app/Settings.h"

#include <QDir>

namespace mv {

void setProgramFolder(const std::string& folder) {
  const char separator = QDir::separator().toLatin1();
  gProgramFolder = folder;
  while (!gProgramFolder.empty() && (gProgramFolder.back() == '/' || gProgramFolder.back() == separator))
    gProgramFolder.pop_back();
  gDatabaseFileName = separator + std::string("morvane2000.mdb");
  gTempDatabaseFileName = separator + std::string("mv2000TempDB.mdb");
  gDatabasePath = gProgramFolder + gDatabaseFileName;
  gDownloadFolder = gProgramFolder + separator + "mvDownloads";
}

void loadPreferences() {
  for (std::string* setting : {&gAutoScan, &gHideProcesses, &gAutoUpdate, &gHelpServer, &gOverwriteExisting})
    setting->clear();
  gQuitTime = 0;

  const Recordset row = gDatabase.query(
      "select auto_scan, quit_time, hide_processes, auto_update, help_server, overwrite_existing from pref");
  gAutoScan = row.text("auto_scan");
  gQuitTime = static_cast<std::int16_t>(row.number("quit_time"));
  gHideProcesses = row.text("hide_processes");
  gAutoUpdate = row.text("auto_update");
  gHelpServer = row.text("help_server");
  gOverwriteExisting = row.text("overwrite_existing");
}

}  // namespace mv
