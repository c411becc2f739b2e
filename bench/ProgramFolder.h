// A fresh program folder with the shipped database, which is open in gDatabase while this lives.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <stdexcept>
#include <string>

#include "app/Settings.h"
#include "store/ProgramDatabase.h"

namespace mvbench {

// Puts a pristine database into `folder`, which has none, and makes it the program folder; the database is open.
inline void openFolder(const std::string& folder) {
  QDir().mkpath(QString::fromStdString(folder));
  mv::setProgramFolder(folder);
  const QString database = QString::fromStdString(mv::gDatabasePath);
  if (!QFile::copy(QStringLiteral(MORVANE_SHIPPED_DATABASE), database))
    throw std::runtime_error("The database cannot be copied to " + mv::gDatabasePath);
  QFile::setPermissions(database, QFile::ReadOwner | QFile::WriteOwner);
  mv::openProgramDatabase(mv::gDatabasePath);
}

class ProgramFolder {
 public:
  ProgramFolder() { openFolder(path()); }
  ~ProgramFolder() { mv::gDatabase.close(); }
  ProgramFolder(const ProgramFolder&) = delete;
  ProgramFolder& operator=(const ProgramFolder&) = delete;

  std::string path() const { return folder_.path().toStdString(); }

 private:
  QTemporaryDir folder_;
};

}  // namespace mvbench
