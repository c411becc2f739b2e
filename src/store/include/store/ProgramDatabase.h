// Opening the program's own database and bringing an older one up to the current layout.
#pragma once

#include <string>

namespace mv {

// Opens `path` into gDatabase after a check, on the untouched file, that it holds the program's tables. Raises
// DatabaseError with a description that the user can act on: no such file, not a database or damaged, a database of
// another program. The file is then byte for byte as it was.
void openProgramDatabase(const std::string& path);

// The same at the start of the program, when a maintenance that was cut off may have left a copy at `tempPath`. Where
// there is no file at `path`, a whole copy takes its place; beside a database that opens, the copy is deleted.
void openProgramDatabase(const std::string& path, const std::string& tempPath);

// Closes gDatabase; harmless when it is closed.
void closeProgramDatabase();

// A database of the previous layout gets the columns `unique_names` and `base_name` of `site` and the sequence
// "filename_id"; what of them is there already stays as it is. Any other database stays as it is; failures of the probe
// are ignored.
void upgradeDatabase();

// Adds the indexes that this version's statements rely on, where they are missing.
void ensureIndexes();

}  // namespace mv
