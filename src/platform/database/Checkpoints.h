// Keeps the write-ahead journal short.
#pragma once

#include <atomic>
#include <string>

#include "Sqlite.h"
#include "base/BackgroundWork.h"

namespace mv::engine {

// Copies the journal's pages into the database while the program goes on writing to the journal: the disk may take its
// time. When all of them are copied the journal begins anew.
class Checkpoints {
 public:
  // `writer` outlives this.
  Checkpoints(sqlite3* writer, std::string path);
  ~Checkpoints();
  Checkpoints(const Checkpoints&) = delete;
  Checkpoints& operator=(const Checkpoints&) = delete;

 private:
  static constexpr int kPages = 2048;  // 8 MiB of journal between two checkpoints: a longer one takes longer to search
  static constexpr int kLongPages = 12288;  // from here on it is seen to that it begins anew
  static constexpr int kPasses = 4;

  static int written(void* self, sqlite3* writer, const char* database, int pages) noexcept;
  void journalIs(int pages) noexcept;
  void startCopy() noexcept;
  // Runs beside the others. What fails here is tried again at the next request.
  void copy();

  sqlite3* writer_;
  std::string path_;
  int pages_ = 0;  // of the journal
  int requestAt_ = kPages;
  bool finishDue_ = false;
  std::atomic<bool> copying_ = false;
  ConnectionPtr connection_;  // of the copying thread
  BackgroundWork work_;
};

}  // namespace mv::engine
