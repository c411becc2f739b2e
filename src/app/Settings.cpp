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

}  // namespace mv
