#include "testkit/ProgramFolder.h"

#include <QDir>
#include <QFile>
#include <stdexcept>

#include "app/Settings.h"
#include "base/Text.h"
#include "base/UserSettings.h"

namespace mvtest {

void copyShippedDatabase(const std::string& path) {
  const QString target = mv::toQString(path);
  if (!QFile::copy(QStringLiteral(MORVANE_SHIPPED_DATABASE), target))
    throw std::runtime_error("The shipped database cannot be copied to " + path);
  QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
}

void openProgramFolder(const std::string& folder) {
  QDir().mkpath(mv::toQString(folder));
  mv::setUserSettingsFolder(mv::toQString(userSettingsOf(folder)));
  mv::setProgramFolder(folder);
  copyShippedDatabase(mv::gDatabasePath);
  mv::gDatabase.open(mv::gDatabasePath);
}

void closeProgramFolder() {
  mv::gDatabase.close();
  mv::setUserSettingsFolder({});
}

std::string userSettingsOf(const std::string& folder) { return folder + "/user-settings"; }

ProgramFolder::ProgramFolder() { openProgramFolder(path()); }

ProgramFolder::~ProgramFolder() { closeProgramFolder(); }

std::string ProgramFolder::path() const { return mv::toUtf8(work_.path()); }

}  // namespace mvtest
