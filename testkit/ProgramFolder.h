// A folder that the program runs in, with a database of its own.
#pragma once

#include <QTemporaryDir>
#include <string>

namespace mvtest {

// Copies the shipped database to `path`, to be written to.
void copyShippedDatabase(const std::string& path);

// Makes `folder`, which is created where it is missing and has no database yet, the program folder: a copy of the
// shipped database is open in gDatabase, and the per-user settings are kept in the folder.
void openProgramFolder(const std::string& folder);

// Closes gDatabase; the per-user settings are the user's own again.
void closeProgramFolder();

// Where they are kept meanwhile.
std::string userSettingsOf(const std::string& folder);

// One that is open while this lives, and is removed with it.
class ProgramFolder {
 public:
  ProgramFolder();
  ~ProgramFolder();
  ProgramFolder(const ProgramFolder&) = delete;
  ProgramFolder& operator=(const ProgramFolder&) = delete;

  std::string path() const;

 private:
  QTemporaryDir work_;
};

}  // namespace mvtest
