// A fresh program folder with the shipped database, which is open in gDatabase while this lives.
#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <string>

#include "app/Settings.h"
#include "store/ProgramDatabase.h"

namespace mvbench {

class ProgramFolder {
 public:
  ProgramFolder() {
    mv::setProgramFolder(path());
    QFile::copy(QStringLiteral(MORVANE_SHIPPED_DATABASE), QString::fromStdString(mv::gDatabasePath));
    mv::openProgramDatabase(mv::gDatabasePath);
  }
  ~ProgramFolder() { mv::gDatabase.close(); }
  ProgramFolder(const ProgramFolder&) = delete;
  ProgramFolder& operator=(const ProgramFolder&) = delete;

  std::string path() const { return folder_.path().toStdString(); }

 private:
  QTemporaryDir folder_;
};

}  // namespace mvbench
