// The preferences: the one row of the table `pref`. All functions raise DatabaseError.
#pragma once

#include <cstdint>
#include <optional>

namespace mv {

struct Preferences {
  bool autoScan = false;            // start sites by themselves at start-up
  std::int64_t quitTime = 0;        // hours after such a start at which the program quits
  std::int64_t maxConnections = 0;  // how many sites may run at the same time
  bool hideProcesses = false;       // process windows of a started site are created hidden
  bool autoUpdate = false;          // fetch new form definitions at start-up
  bool helpServer = false;          // fetch help topics at start-up
  bool overwriteExisting = false;   // a download may overwrite a file of the same name
};

// Sets the process-wide settings (app/Settings.h) at start-up. With an empty table they are emptied (everything counts
// as no, gQuitTime 0) and kNoCurrentRecord is raised.
void loadPreferences();

// nullopt when the table is empty.
std::optional<Preferences> readPreferences();
// Replaces the row, but keeps the number of connections that it has, and sets those process-wide settings that do not
// wait for the next start: gHideProcesses and gOverwriteExisting. On failure the row is as it was.
void savePreferences(Preferences preferences);

// nullopt when the table is empty.
std::optional<std::int64_t> readMaxConnections();
void setMaxConnections(std::int64_t connections);

}  // namespace mv
