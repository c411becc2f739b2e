// Keeping the database file small: compaction, and forgetting all collected links.
#pragma once

#include <QObject>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>

#include "base/BackgroundWork.h"
#include "database/CompactCopy.h"
#include "database/Database.h"

namespace mv {

// A running compaction of the program's database, made by compactDatabase().
//
// The copy is written and checked on a thread of its own, with a connection of its own, while gDatabase stays open:
// whatever runs meanwhile finds a database. Only when the copy is complete gDatabase is closed, the copy put in place
// and gDatabase opened again, all in one call on the user-interface thread, between two events. When something was
// stored meanwhile, the copy is made anew.
class Compaction : public QObject {
  Q_OBJECT
 public:
  // Gives up a compaction that still runs; the database stays as it was.
  ~Compaction() override;

  // How much of the copy is there, 0 to 100, about; -1 while it is checked, which takes as long again.
  int percentWritten() const;

 Q_SIGNALS:
  // The end: `failure` is null when the compacted file is in place. gDatabase is open again, unless that is what
  // failed. Not emitted for a compaction that was given up.
  void finished(std::exception_ptr failure);

 private:
  friend std::unique_ptr<Compaction> compactDatabase(const std::string& databasePath, const std::string& tempPath);
  Compaction(std::string databasePath, std::string tempPath);

  void writeCopy();
  void copyWritten(std::exception_ptr failure);
  void replace();

  std::string databasePath_;
  std::string tempPath_;
  std::unique_ptr<CompactCopy> copy_;
  int copiesLeft_;
  BackgroundWork writing_;
  BackgroundWork deleting_;  // of what was replaced
};

// Rewrites the database at `databasePath`, the one that gDatabase has open, by way of a copy at `tempPath` (full paths
// on one drive), and returns at once. A file that stands at `tempPath` is deleted first. `databasePath` is a good
// database with all rows at every moment; what a sudden end leaves at `tempPath` goes with the next start.
std::unique_ptr<Compaction> compactDatabase(const std::string& databasePath, const std::string& tempPath);

// Deletes the stored links of every site: a small cache is gone when the call returns, of a large one LinkCleaner
// deletes the rest in later events. Raises DatabaseError.
void clearLinkCache();

// Whole megabytes of free disk space and of the database file: is there room to compact?
constexpr bool hasRoomToCompact(std::int64_t freeMegabytes, std::int64_t databaseMegabytes) {
  return freeMegabytes > 2 * databaseMegabytes;
}

}  // namespace mv
