#include "program/StartUp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QShortcut>
#include <stdexcept>

#include "app/DatabaseWatch.h"
#include "app/ErrorLog.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "app/UserNotice.h"
#include "base/Clock.h"
#include "base/SingleRun.h"
#include "base/Text.h"
#include "download/SaveFolders.h"
#include "net/CookieFile.h"
#include "program/ProgramMenus.h"
#include "shell/frmDownloadManager.h"
#include "shell/frmSplash.h"
#include "sites_windows/frmWebSites.h"
#include "store/LinkCleaner.h"
#include "store/Preferences.h"
#include "store/ProgramDatabase.h"
#include "store/SiteStore.h"
#include "store/WindowPlaces.h"
#include "transfer/SiteLocation.h"
#include "windows/NoticeBoxes.h"
#include "windows/WindowRegistry.h"

namespace mv {

namespace {

constexpr int kSecondsPerHour = 3600;
constexpr const char* kDatabaseName = "/morvane2000.mdb";
// A database is there even when a maintenance that was cut off has left it under its temporary name only.
constexpr const char* kCopyName = "/mv2000TempDB.mdb";
constexpr const char* kCookieFile = "/cookies.txt";
constexpr const char* kSharedFolder = "/../share/morvane2000";

constexpr const char* kLostText =
    " has been moved, deleted or replaced while the program was running.\r\n\r\nAll web sites have been stopped, and "
    "nothing "
    "is stored any more. Please put the file back in its place and start the program again.";

bool holdsDatabase(const QString& folder) {
  return QFile::exists(folder + QString::fromLatin1(kDatabaseName)) ||
         QFile::exists(folder + QString::fromLatin1(kCopyName));
}

// Whichever site is started first: none may ask by http what another has to ask by https.
void announceSites() {
  for (const SiteListRow& site : listSites()) SiteLocation(site.name).announce();
}

// A name with bytes that are no character cannot be kept in the database, nor shown and typed.
void requireText(const QString& folder) {
  if (!folder.contains(QChar::ReplacementCharacter) || QFileInfo::exists(folder)) return;
  throw std::runtime_error(
      "The name of the folder " + toUtf8(folder) +
      " is not valid UTF-8, so that the program cannot keep its data there. Please rename the folder.");
}

}  // namespace

std::string findProgramFolder(const std::string& executableFolder, const std::string& userFolder) {
  const QString own = toQString(executableFolder);
  const QString shipped =
      QDir::cleanPath(own + QString::fromLatin1(kSharedFolder)) + QString::fromLatin1(kDatabaseName);
  const QString users = toQString(userFolder);
  requireText(own);
  const bool isInstalled = QFile::exists(shipped);
  const bool mayHoldData = holdsDatabase(own) || !isInstalled;
  if (mayHoldData && QFileInfo(own).isWritable()) return executableFolder;
  if (holdsDatabase(own) && !isInstalled && !holdsDatabase(users)) return executableFolder;

  requireText(users);
  const QString copy = users + QString::fromLatin1(kDatabaseName);
  if (QDir().mkpath(users) && !holdsDatabase(users) && QFile::copy(shipped, copy))
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
  return userFolder;
}

StartUp::StartUp() { showNoticesInBoxes(); }

StartUp::~StartUp() {
  watch_.reset();
  main_.reset();
  if (!single_ || single_->isFirst()) closeProgramDatabase();
}

bool StartUp::run(const std::string& executableFolder, const std::string& userFolder) {
  std::string folder;
  return guarded("main", [&] { folder = findProgramFolder(executableFolder, userFolder); }) && run(folder);
}

bool StartUp::run(const std::string& programFolder) {
  setProgramFolder(programFolder);
  single_ = std::make_unique<SingleRun>(gProgramFolder);
  if (!single_->isFirst()) {
    single_->callFirst();
    ended_ = true;
    return false;
  }
  guarded("main", [&] {
    for (const auto step : {&StartUp::openData, &StartUp::openFrame, &StartUp::openSites, &StartUp::autoScan})
      if (!ended_) (this->*step)();
  });
  return main_ != nullptr;
}

void StartUp::end() {
  ended_ = true;
  if (main_) main_->close();
  // Ends the loops of message boxes, too, and those of the boxes that were still to come.
  QCoreApplication::exit();
}

void StartUp::openData() {
  openProgramDatabase(gDatabasePath, gProgramFolder + gTempDatabaseFileName);
  gAppClosing = false;
  logOpened();
  // Without preferences the program still starts, with everything off.
  guarded("loadPreferences", loadPreferences);
  upgradeDatabase();
  ensureIndexes();
  guarded("maskPasswordsOfWindowPositions", maskPasswordsOfWindowPositions);
  guarded("listSites", announceSites);
  cookies_ = std::make_unique<CookieFile>(gProgramFolder + kCookieFile);
  guarded("LinkCleaner", [] { LinkCleaner::instance().resume(); });
  guarded("clearSaveFolders", clearSaveFolders);
  if (ended_) logClosed();
}

void StartUp::openFrame() {
  main_ = std::make_unique<frmDownloadManager>(programMenus());
  guarded("frmDownloadManager", [this] { main_->initWindow(); });
  main_->show();
  single_->onCall([this] { raiseMain(); });
  watch_ = std::make_unique<DatabaseWatch>();
  QObject::connect(watch_.get(), &DatabaseWatch::lost, watch_.get(), [this] { databaseLost(); });
  if (isYes(gAutoUpdate)) main_->getFormUpdates();
  if (isYes(gHelpServer)) main_->getHelp();
}

void StartUp::raiseMain() {
  main_->setWindowState(main_->windowState() & ~Qt::WindowMinimized);
  main_->show();
  main_->raise();
  main_->activateWindow();
}

void StartUp::openSites() {
  showSingle<frmWebSites>();
  const auto* newSite = new QShortcut(QKeySequence::New, main_.get());
  QObject::connect(newSite, &QShortcut::activated, newSite, [] { showSingle<frmWebSites>()->newSite(); });
  main_->splash().showBriefly();
}

void StartUp::autoScan() {
  if (!isYes(gAutoScan)) return;
  gQuitAt = now().addSecs(qint64{gQuitTime} * kSecondsPerHour);
  auto* webSites = showSingle<frmWebSites>();
  webSites->tmrQuit.start();
  webSites->autoScan();
}

// What was stored until now is in the file, wherever it is; nothing is stored in it any more.
void StartUp::databaseLost() {
  guarded("DatabaseWatch", [] {
    if (auto* webSites = WindowRegistry::instance().find<frmWebSites>()) webSites->closeAllWebSites();
    for (ChildWindow* window : processWindows()) closeProcess(*window);
  });
  closeProgramDatabase();
  notifyUser({{}, "The database " + gDatabasePath + kLostText, NoticeIcon::Critical});
}

}  // namespace mv
