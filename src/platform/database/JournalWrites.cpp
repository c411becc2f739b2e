#include "JournalWrites.h"

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <utility>

#include "Sqlite.h"

namespace mv::engine {

namespace {

// The journal's format: https://www.sqlite.org/fileformat2.html, section 4.1. A frame is a header of 24 bytes and a
// page; bytes 4 to 7 of the header are not zero in the last frame of a commit.
constexpr int kFrameHeader = 24;
constexpr int kNowhere = -1;

// What the engine has written to a journal and what has not gone to the file. Never outlives the right to write: behind
// it another program may write at the same place.
struct Gathered {
  std::array<char, std::size_t{30} * (4096 + kFrameHeader)> bytes;  // the engine takes less than 128 KiB at once
  int used = 0;
  sqlite3_int64 end = kNowhere;  // of the last write; what is written there follows it
  bool isCommit = false;         // the frame whose header was written last ends one

  void forget() {
    used = 0;
    end = kNowhere;
    isCommit = false;
  }
};

// A file of the layer; that of the engine stands behind it in memory.
struct LayerFile : sqlite3_file {
  Gathered* gathered;   // of a database: its journal's; null without one
  LayerFile* database;  // of a journal
};

LayerFile& layerOf(sqlite3_file* file) { return *static_cast<LayerFile*>(file); }
sqlite3_file* engineOf(sqlite3_file* file) { return reinterpret_cast<sqlite3_file*>(&layerOf(file) + 1); }

// A method that is passed on.
template <auto Method>
struct Pass;
template <class Answer, class... Arguments, Answer (*sqlite3_io_methods::*Method)(sqlite3_file*, Arguments...)>
struct Pass<Method> {
  static Answer on(sqlite3_file* file, Arguments... arguments) {
    sqlite3_file* const engines = engineOf(file);
    return (engines->pMethods->*Method)(engines, arguments...);
  }
};

int flush(sqlite3_file* file) {
  Gathered& gathered = *layerOf(file).gathered;
  const int used = std::exchange(gathered.used, 0);
  if (used == 0) return SQLITE_OK;
  const int code = Pass<&sqlite3_io_methods::xWrite>::on(file, gathered.bytes.data(), used, gathered.end - used);
  if (code != SQLITE_OK) gathered.forget();
  return code;
}

// Flushes before the engine's own method, which looks at the file.
template <auto Method>
struct Flushed;
template <class... Arguments, int (*sqlite3_io_methods::*Method)(sqlite3_file*, Arguments...)>
struct Flushed<Method> {
  static int on(sqlite3_file* file, Arguments... arguments) {
    const int code = flush(file);
    layerOf(file).gathered->end = kNowhere;
    return code == SQLITE_OK ? Pass<Method>::on(file, arguments...) : code;
  }
};

// Whether the write is the last of a commit.
bool endsCommit(Gathered& gathered, const char* bytes, int count) {
  if (count != kFrameHeader) return std::exchange(gathered.isCommit, false);
  gathered.isCommit = std::any_of(bytes + 4, bytes + 8, [](char byte) { return byte != 0; });
  return false;
}

int writeJournal(sqlite3_file* file, const void* data, int count, sqlite3_int64 at) {
  Gathered& gathered = *layerOf(file).gathered;
  const auto* bytes = static_cast<const char*>(data);
  const bool isLast = endsCommit(gathered, bytes, count);
  const bool follows = at == gathered.end;
  if (!follows || gathered.used + count > std::ssize(gathered.bytes)) {
    if (const int code = flush(file); code != SQLITE_OK) return code;
  }
  gathered.end = at + count;
  // What does not follow may be the second version of a frame, with nothing to come behind it.
  if (!follows) return Pass<&sqlite3_io_methods::xWrite>::on(file, data, count, at);
  std::copy_n(bytes, count, gathered.bytes.data() + gathered.used);
  gathered.used += count;
  return isLast ? flush(file) : SQLITE_OK;
}

int closeJournal(sqlite3_file* file) {
  LayerFile& journal = layerOf(file);
  if (journal.database) journal.database->gathered = nullptr;
  delete std::exchange(journal.gathered, nullptr);
  return Pass<&sqlite3_io_methods::xClose>::on(file);
}

// The engine holds the right to write as a lock of the journal's index.
int lockJournal(sqlite3_file* file, int first, int count, int flags) {
  constexpr int kEndOfWriting = SQLITE_SHM_UNLOCK | SQLITE_SHM_EXCLUSIVE;
  Gathered* const gathered = layerOf(file).gathered;
  if (gathered && first == 0 && flags == kEndOfWriting) gathered->forget();
  return Pass<&sqlite3_io_methods::xShmLock>::on(file, first, count, flags);
}

constexpr int kMethodsVersion = 2;  // the journal's index, no mapped pages

constexpr sqlite3_io_methods kDatabaseMethods{kMethodsVersion,
                                              Pass<&sqlite3_io_methods::xClose>::on,
                                              Pass<&sqlite3_io_methods::xRead>::on,
                                              Pass<&sqlite3_io_methods::xWrite>::on,
                                              Pass<&sqlite3_io_methods::xTruncate>::on,
                                              Pass<&sqlite3_io_methods::xSync>::on,
                                              Pass<&sqlite3_io_methods::xFileSize>::on,
                                              Pass<&sqlite3_io_methods::xLock>::on,
                                              Pass<&sqlite3_io_methods::xUnlock>::on,
                                              Pass<&sqlite3_io_methods::xCheckReservedLock>::on,
                                              Pass<&sqlite3_io_methods::xFileControl>::on,
                                              Pass<&sqlite3_io_methods::xSectorSize>::on,
                                              Pass<&sqlite3_io_methods::xDeviceCharacteristics>::on,
                                              Pass<&sqlite3_io_methods::xShmMap>::on,
                                              lockJournal,
                                              Pass<&sqlite3_io_methods::xShmBarrier>::on,
                                              Pass<&sqlite3_io_methods::xShmUnmap>::on,
                                              nullptr,
                                              nullptr};

constexpr sqlite3_io_methods journalMethods() {
  sqlite3_io_methods methods = kDatabaseMethods;
  methods.xClose = closeJournal;
  methods.xRead = Flushed<&sqlite3_io_methods::xRead>::on;
  methods.xWrite = writeJournal;
  methods.xTruncate = Flushed<&sqlite3_io_methods::xTruncate>::on;
  methods.xSync = Flushed<&sqlite3_io_methods::xSync>::on;
  methods.xFileSize = Flushed<&sqlite3_io_methods::xFileSize>::on;
  return methods;
}

constexpr sqlite3_io_methods kJournalMethods = journalMethods();

sqlite3_vfs& engineFileSystem() {
  static sqlite3_vfs& system = *sqlite3_vfs_find(nullptr);
  return system;
}

int openJournal(const char* name, LayerFile& file) {
  file.gathered = new (std::nothrow) Gathered;
  if (!file.gathered) return SQLITE_NOMEM;
  file.database = &layerOf(sqlite3_database_file_object(name));
  file.database->gathered = file.gathered;
  return SQLITE_OK;
}

int openFile(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* answered) {
  sqlite3_vfs& system = engineFileSystem();
  if ((flags & (SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_WAL)) == 0) return system.xOpen(&system, name, file, flags, answered);
  LayerFile& layer = layerOf(file);
  layer.gathered = nullptr;
  layer.database = nullptr;
  layer.pMethods = nullptr;
  const int code = system.xOpen(&system, name, engineOf(file), flags, answered);
  if (code != SQLITE_OK) return code;
  const bool isJournal = (flags & SQLITE_OPEN_WAL) != 0;
  layer.pMethods = isJournal ? &kJournalMethods : &kDatabaseMethods;
  return isJournal ? openJournal(name, layer) : SQLITE_OK;
}

}  // namespace

const char* gatheringFileSystem() {
  static sqlite3_vfs layer = [] {
    sqlite3_vfs own = engineFileSystem();
    own.zName = "gathering";
    own.szOsFile += static_cast<int>(sizeof(LayerFile));
    own.xOpen = openFile;
    return own;
  }();
  static const int registered = sqlite3_vfs_register(&layer, 0);
  return registered == SQLITE_OK ? layer.zName : nullptr;
}

}  // namespace mv::engine
