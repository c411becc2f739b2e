#include "Checkpoints.h"

#include <exception>
#include <utility>

namespace mv::engine {

namespace {

void syncDatabase(sqlite3* connection) {
  sqlite3_file* file = nullptr;
  const int code = sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  if (code == SQLITE_OK && file && file->pMethods) file->pMethods->xSync(file, SQLITE_SYNC_NORMAL);
}

}  // namespace

Checkpoints::Checkpoints(sqlite3* writer, std::string path) : writer_(writer), path_(std::move(path)) {
  sqlite3_wal_hook(writer, &Checkpoints::written, this);
}

Checkpoints::~Checkpoints() {
  sqlite3_wal_hook(writer_, nullptr, nullptr);
  work_.abandon();
  work_.wait();
}

int Checkpoints::written(void* self, sqlite3* /*writer*/, const char* /*database*/, int pages) noexcept {
  static_cast<Checkpoints*>(self)->journalIs(pages);
  return SQLITE_OK;
}

void Checkpoints::journalIs(int pages) noexcept {
  if (pages < pages_) requestAt_ = kPages;  // it has begun anew
  pages_ = pages;
  if (copying_) return;
  if (std::exchange(finishDue_, false)) {
    // Between two changes no one writes: the little that is left is all.
    sqlite3_wal_checkpoint_v2(writer_, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  } else if (pages >= requestAt_) {
    requestAt_ = pages + kPages;
    finishDue_ = pages >= kLongPages;
    startCopy();
  }
}

// Called from within the engine, which no exception may pass through.
void Checkpoints::startCopy() noexcept {
  copying_ = true;
  try {
    work_.start([this] { copy(); });
  } catch (const std::exception&) {
    copying_ = false;  // no memory: at the next request
  }
}

void Checkpoints::copy() {
  try {
    if (!connection_) {
      connection_ = openHandle(path_, SQLITE_OPEN_READWRITE);
      run(connection_.get(), "pragma synchronous=normal");
    }
    // What was written during a pass is left for the next one, which is shorter.
    for (int pass = 0, left = 1; pass < kPasses && left > 0; ++pass) {
      int all = 0, copied = 0;
      if (sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, &all, &copied) != SQLITE_OK)
        break;
      left = all - copied;
    }
    // The engine syncs the database when nothing is left only. While the writer goes on, that would be in its own last
    // step, and everything at once.
    syncDatabase(connection_.get());
  } catch (const std::exception&) {
    connection_.reset();
  }
  copying_ = false;
}

}  // namespace mv::engine
