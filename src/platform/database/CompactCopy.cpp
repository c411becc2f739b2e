#include "database/CompactCopy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QScopeGuard>
#include <algorithm>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <utility>
#include <vector>

#include "Sqlite.h"

namespace mv {

using namespace engine;

namespace {

constexpr int kStepsBetweenLooks = 1000;  // of the engine's machine, between two looks at the wish to cancel

std::function<void(CompactCopy::Step)> stepHook;

void reached(CompactCopy::Step step) {
  if (stepHook) stepHook(step);
}

std::int64_t currentVersion(sqlite3* connection) { return firstNumber(connection, "pragma data_version"); }

std::vector<std::string> tableNames(sqlite3* connection) {
  std::vector<std::string> names;
  const StatementPtr tables = prepare(
      connection, "select name from sqlite_schema where type = 'table' and rootpage > 0 order by name", "compact");
  while (step(tables.get(), "compact"))
    names.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(tables.get(), 0)));
  return names;
}

std::int64_t rowCount(sqlite3* connection, const std::string& table) {
  return firstNumber(connection, "select count(*) from " + quotedName(table));
}

// What has been written to a file or a folder is on the disk afterwards.
void syncToDisk(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  const bool done = file >= 0 && fsync(file) == 0;
  if (file >= 0) close(file);
  if (!done) raiseFile(DatabaseError::kDiskError, path, "cannot be brought to the disk.");
}

// An empty file, which the engine takes for a new database: one that it makes could be read by others until the end.
void makePrivateFile(const std::string& path) {
  const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (file < 0) raiseFile(DatabaseError::kDiskError, path, "cannot be made.");
  close(file);
}

// Files that have lost their names, or will.
class OpenFiles {
 public:
  OpenFiles() = default;
  OpenFiles(const OpenFiles&) = delete;
  OpenFiles& operator=(const OpenFiles&) = delete;
  ~OpenFiles() {
    for (const int file : files_) close(file);
  }

  // As far as there is one.
  void add(const std::string& path) {
    if (const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC); file >= 0) files_.push_back(file);
  }

 private:
  std::vector<int> files_;
};

}  // namespace

struct CompactCopy::Private {
  std::string source;
  std::string target;
  std::atomic<bool> cancelled = false;
  std::atomic<bool> checking = false;
  std::atomic<std::int64_t> expected = 0;  // bytes
  ConnectionPtr connection;                // to the source, from write() to the end
  std::mutex interrupting;                 // guards the next one
  sqlite3* interruptible = nullptr;        // the connection that write() is using
  std::int64_t version = 0;                // of the source, as write() read it
  bool made = false;                       // `target` is ours

  ConnectionPtr openWatched(const std::string& path, int flags) {
    ConnectionPtr opened = openHandle(path, flags);
    sqlite3_progress_handler(
        opened.get(), kStepsBetweenLooks,
        [](void* self) {
          reached(Step::Writing);
          return static_cast<Private*>(self)->cancelled ? 1 : 0;
        },
        this);
    return opened;
  }

  // The progress handler is not asked during the engine's long steps, the walk of the integrity check above all.
  void makeInterruptible(sqlite3* used) {
    const std::lock_guard lock(interrupting);
    interruptible = used;
  }

  void rewrite() {
    makeInterruptible(connection.get());
    const auto done = qScopeGuard([this] { makeInterruptible(nullptr); });
    // What is brought into the file now need not be when everybody waits for the source to close.
    run(connection.get(), "pragma wal_checkpoint(passive)");
    version = currentVersion(connection.get());
    expected =
        (firstNumber(connection.get(), "pragma page_count") - firstNumber(connection.get(), "pragma freelist_count")) *
        firstNumber(connection.get(), "pragma page_size");
    const StatementPtr statement = prepare(connection.get(), "vacuum into ?1", "compact");
    sqlite3_bind_text64(statement.get(), 1, target.data(), target.size(), SQLITE_STATIC, SQLITE_UTF8);
    step(statement.get(), "compact");
    reached(Step::Written);
  }

  void check() {
    checking = true;
    const ConnectionPtr copy = openWatched(immutableUri(target), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    makeInterruptible(copy.get());
    const auto done = qScopeGuard([this] { makeInterruptible(nullptr); });
    // The whole check also looks every row up in every index, which takes five times as long as writing the copy.
    bool same = firstText(copy.get(), "pragma quick_check(1)") == "ok" &&
                tableNames(copy.get()) == tableNames(connection.get());
    if (same)
      for (const std::string& table : tableNames(copy.get()))
        same = same && rowCount(copy.get(), table) == rowCount(connection.get(), table);
    // Rows stored meanwhile are no fault of the copy; isCurrent() will tell.
    if (!same && currentVersion(connection.get()) == version)
      raiseFile(DatabaseError::kUnrecognizedFormat, target, "was not written correctly.");
    reached(Step::Checked);
  }
};

CompactCopy::CompactCopy(std::string source, std::string target) : d(std::make_unique<Private>()) {
  d->source = std::move(source);
  d->target = std::move(target);
}

CompactCopy::~CompactCopy() {
  // A copy whose source is gone is the only database left.
  if (d->made && fileSize(d->source) >= 0) removeFiles(d->target);
}

void CompactCopy::write() {
  if (fileSize(d->target) >= 0)
    throw DatabaseError(DatabaseError::kAlreadyExists, "The file " + d->target + " already exists.");
  checkDatabase(d->source, {});
  makePrivateFile(d->target);
  d->made = true;
  d->connection = d->openWatched(d->source, SQLITE_OPEN_READWRITE);
  d->rewrite();
  d->check();
  // Here nobody waits for it; replaceSource() has little left to do.
  syncToDisk(d->target);
}

void CompactCopy::cancel() {
  d->cancelled = true;
  const std::lock_guard lock(d->interrupting);
  if (d->interruptible) sqlite3_interrupt(d->interruptible);
}

int CompactCopy::percentWritten() const {
  if (d->checking) return -1;
  const std::int64_t expected = std::max<std::int64_t>(d->expected, 1);
  return static_cast<int>(std::clamp<std::int64_t>(fileSize(d->target) * 100 / expected, 0, 100));
}

bool CompactCopy::isCurrent() { return d->connection && currentVersion(d->connection.get()) == d->version; }

CompactCopy::ReplacedFiles CompactCopy::replaceSource() {
  const auto replaced = std::make_shared<OpenFiles>();
  replaced->add(d->source + "-wal");  // in which the engine keeps no locks
  // The last one to close a database takes its journal away.
  d->connection.reset();
  if (fileSize(d->source + "-wal") >= 0 || fileSize(d->source + "-journal") > 0)
    raiseFile(DatabaseError::kLocked, d->source, "is in use by another program.");
  reached(Step::Closed);
  syncToDisk(d->target);
  reached(Step::Synced);
  replaced->add(d->source);  // which nobody has locked any more
  std::error_code error;
  // A link to the database stays one.
  const std::filesystem::path place = std::filesystem::canonical(d->source, error);
  if (!error) std::filesystem::rename(d->target, place, error);
  if (error)
    raiseFile(DatabaseError::kDiskError, d->source, "cannot be replaced by its compacted copy: " + error.message());
  d->made = false;
  reached(Step::Replaced);
  // Not every file system can; the old file and the new one are equally good.
  try {
    syncToDisk(place.parent_path().string());
  } catch (const DatabaseError&) {
  }
  return replaced;
}

void CompactCopy::removeFiles(const std::string& path) { engine::removeFiles(path); }

bool CompactCopy::isWhole(const std::string& path, const Database::TableNames& neededTables) try {
  checkDatabase(path, neededTables);
  return firstText(openHandle(path, SQLITE_OPEN_READWRITE).get(), "pragma integrity_check(1)") == "ok";
} catch (const DatabaseError&) {
  return false;
}

void CompactCopy::setStepHook(std::function<void(Step)> hook) { stepHook = std::move(hook); }

}  // namespace mv
