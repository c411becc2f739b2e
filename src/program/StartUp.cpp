#include "program/StartUp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "app/ErrorLog.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Clock.h"
#include "base/Text.h"
#include "download/SaveFolders.h"
#include "program/ProgramMenus.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmWebSites.h"
#include "store/LinkCleaner.h"
#include "store/Preferences.h"
#include "store/ProgramDatabase.h"
#include "windows/NoticeBoxes.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kSecondsPerHour = 3600;
constexpr const char* kDatabaseName = "/morvane2000.mdb";
// A database is there even when a maintenance that was cut off has left it under its temporary name only.
constexpr const char* kCopyName = "/mv2000TempDB.mdb";
constexpr const char* kSharedFolder = "/../share/morvane2000";

bool holdsDatabase(const QString& folder) {
  return QFile::exists(folder + QString::fromLatin1(kDatabaseName)) ||
         QFile::exists(folder + QString::fromLatin1(kCopyName));
}

}  // namespace

std::string findProgramFolder(const std::string& executableFolder, const std::string& userFolder) {
  const QString own = toQString(executableFolder);
  const QString shipped =
      QDir::cleanPath(own + QString::fromLatin1(kSharedFolder)) + QString::fromLatin1(kDatabaseName);
  const bool writable = QFileInfo(own).isWritable();
  if (writable && (holdsDatabase(own) || !QFile::exists(shipped))) return executableFolder;

  const QString users = toQString(userFolder);
  const QString copy = users + QString::fromLatin1(kDatabaseName);
  if (QDir().mkpath(users) && !holdsDatabase(users) && QFile::copy(shipped, copy))
    QFile::setPermissions(copy, QFile::permissions(copy) | QFile::ReadOwner | QFile::WriteOwner);
  return userFolder;
}

StartUp::StartUp() { showNoticesInBoxes(); }

StartUp::~StartUp() {
  main_.reset();
  closeProgramDatabase();
}

bool StartUp::run(const std::string& programFolder) {
  guarded("main", [&] {
    openData(programFolder);
    guarded("clearSaveFolders", clearSaveFolders);
    openWindows();
  });
  return main_ != nullptr;
}

void StartUp::openData(const std::string& programFolder) {
  setProgramFolder(programFolder);
  openProgramDatabase(gDatabasePath, gProgramFolder + gTempDatabaseFileName);
  gAppClosing = false;
  logOpened();
  // Without preferences the program still starts, with everything off.
  guarded("loadPreferences", loadPreferences);
  upgradeDatabase();
  ensureIndexes();
  guarded("LinkCleaner", [] { LinkCleaner::instance().resume(); });
}

void StartUp::openWindows() {
  main_ = std::make_unique<frmDownloadManager>(programMenus());
  guarded("frmDownloadManager", [this] { main_->initWindow(); });
  main_->show();
  if (isYes(gAutoUpdate)) main_->getFormUpdates();
  if (isYes(gHelpServer)) main_->getHelp();
  auto* webSites = showSingle<frmWebSites>();
  main_->splash().showBriefly();
  if (!isYes(gAutoScan)) return;
  gQuitAt = now().addSecs(qint64{gQuitTime} * kSecondsPerHour);
  webSites->tmrQuit.start();
  webSites->autoScan();
}

}  // namespace mv
