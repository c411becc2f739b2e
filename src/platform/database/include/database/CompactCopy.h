// Rewrites a database without its free pages, by way of a copy. The source may be open and in use meanwhile: the copy
// shows it at one moment, and isCurrent() tells whether that is still how it is.
//
// write() may run on a thread of its own; all other calls, cancel() and percentWritten() excepted, are for the time
// when it does not run.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "database/Database.h"

namespace mv {

class CompactCopy {
 public:
  // What has been reached, for tests of a sudden end.
  enum class Step { Writing, Written, Checked, Closed, Synced, Replaced };

  // Full paths on one drive. Nothing is done yet.
  CompactCopy(std::string source, std::string target);
  // Removes `target`, unless write() did not make it, replaceSource() has put it in place, or the source is gone.
  ~CompactCopy();
  CompactCopy(const CompactCopy&) = delete;
  CompactCopy& operator=(const CompactCopy&) = delete;

  // Writes `target`, which must not exist (kAlreadyExists), and checks it: its structure, and that every table has as
  // many rows as the source. Raises DatabaseError.
  void write();
  // Has a running write() raise soon. From any thread. One that comes between two statements may be overheard by the
  // second: to be repeated until write() has ended.
  void cancel();
  // How much of `target` is there, 0 to 100, about; -1 while it is checked. From any thread.
  int percentWritten() const;

  // Nothing has been stored in the source since write() read it. Raises DatabaseError.
  bool isCurrent();
  // Deleting a large file takes its time, but not before the last one who has it open closes it.
  using ReplacedFiles = std::shared_ptr<const void>;
  // Gives the copy, safely on the disk, the source's name in one step. Everybody else must have closed the source:
  // kLocked when that is not so. Raises DatabaseError, and then nothing has changed. The result holds the replaced
  // files open: to be dropped where nobody waits for it, on any thread.
  ReplacedFiles replaceSource();

  // Removes a database file together with its journals, as far as they are there.
  static void removeFiles(const std::string& path);
  // Whether the file is a database with all these tables and without a fault, read from end to end.
  static bool isWhole(const std::string& path, const Database::TableNames& neededTables);
  // For tests: called at every step, `Writing` many times. An empty function ends that.
  static void setStepHook(std::function<void(Step)> hook);

 private:
  struct Private;
  std::unique_ptr<Private> d;
};

}  // namespace mv
