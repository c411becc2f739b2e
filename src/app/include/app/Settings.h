// Process-wide settings: one instance for the whole run, set at start-up. Yes/no values are the texts "yes" and "no" as
// stored; every test compares with "yes", anything else counts as no.
#pragma once

#include <QDateTime>
#include <string>
#include <string_view>

#include "database/Database.h"

namespace mv {

inline std::string gProgramFolder;         // without a trailing separator
inline std::string gDatabasePath;          // full path of the database file
inline std::string gDatabaseFileName;      // its name part, with the leading separator
inline std::string gTempDatabaseFileName;  // name of the copy that compaction goes through, likewise
inline Database gDatabase;                 // the one connection
inline std::string gDownloadFolder;        // default download folder; created when the first file is saved

inline std::string gAutoScan;           // start sites by themselves at start-up
inline int gQuitTime = 0;               // hours after start-up at which the program quits; with gAutoScan only
inline std::string gHideProcesses;      // process windows of a started site are created hidden
inline std::string gAutoUpdate;         // fetch new form definitions at start-up
inline std::string gHelpServer;         // fetch help topics at start-up
inline std::string gOverwriteExisting;  // a download may overwrite a file of the same name
inline QDateTime gQuitAt;               // the moment at which the program quits

inline bool gAppClosing = false;        // the whole program is closing
inline bool gClosingProcesses = false;  // a process window that is unloaded now really unloads
inline std::string gDragKind;           // what a running drag carries: kDropFilter or ""

inline std::string gLastSavedFile;  // full path of the file that a download saved last; "" when none yet

inline constexpr std::string_view kDropFilter = "kDropFilter";

// What the captions of process windows begin with; the site's name follows.
inline constexpr const char* kScanTitle = "Scan: ";
inline constexpr const char* kDownloadTitle = "Download: ";

inline bool isYes(std::string_view value) { return value == "yes"; }
inline std::string yesNo(bool value) { return value ? "yes" : "no"; }

// Sets the paths above from the program folder.
void setProgramFolder(const std::string& folder);

}  // namespace mv
