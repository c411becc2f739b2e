#include "platform/Database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <list>
#include <new>
#include <optional>
#include <unordered_map>
#include <utility>

#include "platform/BackgroundJob.h"
#include "platform/SqlDialect.h"
#include "platform/SqlOutline.h"

namespace mv {

namespace {

constexpr int kBusyTimeoutMs = 2000;
// Holds the inner pages of indexes of ten million rows. A larger one costs more than it saves: at every split of a page
// the engine looks through all that it holds.
constexpr int kCacheKiB = 16 * 1024;
constexpr int kReaderCacheKiB = 4 * 1024;
constexpr int kCheckpointPages = 4096;    // 16 MiB of journal between two checkpoints
constexpr int kLongJournalPages = 12288;  // from here on it is seen to that it begins anew
constexpr int kCheckpointPasses = 4;
constexpr std::int64_t kJournalSizeLimit = 64 * 1024 * 1024;  // what a journal is cut back to after a large change
constexpr std::size_t kCachedStatements = 128;
constexpr const char* kCountField = "outCount";
constexpr std::size_t kRowsAhead = 64;
constexpr std::int64_t kCheckedBelowBytes = 4 * 1024 * 1024;  // files up to this size are checked page by page

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
struct FreeValue {
  void operator()(sqlite3_value* value) const { sqlite3_value_free(value); }
};
using ConnectionPtr = std::unique_ptr<sqlite3, CloseConnection>;
using StatementPtr = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;
using ValuePtr = std::unique_ptr<sqlite3_value, FreeValue>;

// ---- errors ----

long numberOfMessage(std::string_view message) {
  struct Phrase {
    std::string_view text;
    DatabaseError::Number number;
  };
  static constexpr auto kPhrases = std::to_array<Phrase>({
      {"no such table", DatabaseError::kUnknownTable},
      {"no such column", DatabaseError::kUnknownColumn},
      {"has no column named", DatabaseError::kUnknownColumn},
      {"already exists", DatabaseError::kAlreadyExists},
      {"duplicate column name", DatabaseError::kAlreadyExists},
  });
  for (const Phrase& phrase : kPhrases)
    if (message.find(phrase.text) != std::string_view::npos) return phrase.number;
  return DatabaseError::kSyntaxError;
}

long numberOfCode(int code, std::string_view message) {
  switch (code & 0xff) {
    case SQLITE_ERROR:
      return numberOfMessage(message);
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return DatabaseError::kLocked;
    case SQLITE_READONLY:
    case SQLITE_PERM:
    case SQLITE_AUTH:
      return DatabaseError::kReadOnly;
    case SQLITE_FULL:
      return DatabaseError::kDiskFull;
    case SQLITE_CONSTRAINT:
      return DatabaseError::kDuplicateKey;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return DatabaseError::kUnrecognizedFormat;
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
      return DatabaseError::kDiskError;
    default:
      return DatabaseError::kInvalidArgument;
  }
}

// The engine knows a value by its place in the statement only: near "?2".
std::string withoutPlaces(std::string message) {
  for (std::size_t start = 0; (start = message.find("\"?", start)) != std::string::npos; ++start) {
    const std::size_t end = message.find_first_not_of("0123456789", start + 2);
    if (end != std::string::npos && message[end] == '"') message.replace(start, end + 1 - start, "a value");
  }
  return message;
}

[[noreturn]] void raise(sqlite3* connection, int code, const std::string& statementName) {
  if (code == SQLITE_NOMEM) throw std::bad_alloc();
  const std::string message = withoutPlaces(sqlite3_errmsg(connection));
  throw DatabaseError(numberOfCode(code, message), statementName + ": " + message);
}

[[noreturn]] void raiseFile(long number, const std::string& path, const std::string& trouble) {
  throw DatabaseError(number, "The database " + path + ' ' + trouble);
}

[[noreturn]] void raiseNotOpen() { throw DatabaseError(DatabaseError::kNotOpen, "The database is closed."); }

[[noreturn]] void raiseNoCurrentRecord(const std::string& statementName) {
  throw DatabaseError(DatabaseError::kNoCurrentRecord, statementName + ": there is no current row.");
}

// ---- statements ----

StatementPtr prepare(sqlite3* connection, const std::string& shape, const std::string& name, unsigned flags = 0) {
  sqlite3_stmt* handle = nullptr;
  const int code =
      sqlite3_prepare_v3(connection, shape.data(), static_cast<int>(shape.size()), flags, &handle, nullptr);
  StatementPtr statement(handle);
  if (code != SQLITE_OK) raise(connection, code, name);
  return statement;
}

int bindValue(sqlite3_stmt* statement, int place, const SqlValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return sqlite3_bind_int64(statement, place, *whole);
  if (const auto* real = std::get_if<double>(&value)) return sqlite3_bind_double(statement, place, *real);
  const auto& text = std::get<std::string>(value);
  return sqlite3_bind_text64(statement, place, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

// `values` must stay where they are until the bindings are cleared.
void bindValues(sqlite3_stmt* statement, const std::vector<SqlValue>& values, const std::string& name) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int code = bindValue(statement, static_cast<int>(i) + 1, values[i]);
    if (code != SQLITE_OK) raise(sqlite3_db_handle(statement), code, name);
  }
}

// True when there is a row.
bool step(sqlite3_stmt* statement, const std::string& name) {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) raise(sqlite3_db_handle(statement), code, name);
  return code == SQLITE_ROW;
}

// A statement in use: at the end it is ready for the next use and holds no lock.
class Use {
 public:
  Use(sqlite3_stmt* statement, const std::vector<SqlValue>& values, const std::string& name) : statement_(statement) {
    bindValues(statement, values, name);
  }
  ~Use() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
  }
  Use(const Use&) = delete;
  Use& operator=(const Use&) = delete;

 private:
  sqlite3_stmt* statement_;
};

void run(sqlite3* connection, const std::string& sql) {
  const int code = sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) raise(connection, code, sql.substr(0, sql.find(' ')));
}

// The first field of the first row.
std::string firstText(sqlite3* connection, const std::string& sql) {
  const StatementPtr statement = prepare(connection, sql, sql.substr(0, sql.find(' ')));
  if (!step(statement.get(), sql)) return {};
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
  return text ? text : "";
}

std::int64_t firstNumber(sqlite3* connection, const std::string& sql) {
  return std::strtoll(firstText(connection, sql).c_str(), nullptr, 10);
}

// What a statement may take away: the rows of a "table", the values of a "table.column", with "" anything.
using Losses = std::vector<std::string>;

// Hears from the engine what the statements do that it prepares.
class LossRecorder {
 public:
  explicit LossRecorder(sqlite3* connection) { sqlite3_set_authorizer(connection, &LossRecorder::authorize, this); }
  LossRecorder(const LossRecorder&) = delete;
  LossRecorder& operator=(const LossRecorder&) = delete;

  // Of what was prepared since the last call.
  Losses take() { return std::exchange(losses_, {}); }

 private:
  static int authorize(void* self, int action, const char* first, const char* second, const char*, const char*) {
    static_cast<LossRecorder*>(self)->record(action, first ? first : "", second ? second : "");
    return SQLITE_OK;
  }

  void record(int action, const std::string& first, const std::string& second) {
    const bool transaction = action == SQLITE_TRANSACTION || action == SQLITE_SAVEPOINT;
    const bool change = action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE;
    if ((transaction && first == "ROLLBACK") || (change && first == "sqlite_master"))
      losses_.emplace_back();
    else if (action == SQLITE_DELETE)
      losses_.push_back(first);
    else if (action == SQLITE_UPDATE)
      losses_.push_back(first + '.' + second);
  }

  Losses losses_;
};

// A statement ready for use, with what it was made from.
struct Prepared {
  std::shared_ptr<const SqlPattern> pattern;
  sqlite3_stmt* handle = nullptr;  // owned by the cache
  const Losses* losses = nullptr;  // likewise
};

// The statements that were prepared last, by their outline; by their shape where the outline does not tell all.
class StatementCache {
 public:
  explicit StatementCache(sqlite3* connection) : connection_(connection), recorder_(connection) {}

  // `values` becomes those of `sql`.
  Prepared get(std::string_view sql, std::vector<SqlValue>& values) {
    const bool outlined = outline_.read(sql);
    const Entry* const known = outlined ? find(outline_.key()) : nullptr;
    if (known && known->pattern->valuesOf(outline_, values))
      return {known->pattern, known->statement.get(), &known->losses};

    SqlStatement translated = translateSql(sql);
    values = translated.values;
    auto pattern = std::make_shared<const SqlPattern>(std::move(translated), outlined ? outline_ : SqlOutline());
    const bool byOutline = outlined && !known && pattern->isReusable();
    const std::string key = byOutline ? outline_.key() : kShapeMark + pattern->statement().shape;
    const Entry* entry = byOutline ? nullptr : find(key);
    if (!entry) entry = &add(key, pattern, prepare(*pattern));
    return {pattern, entry->statement.get(), &entry->losses};
  }

 private:
  static constexpr char kShapeMark = '\0';  // no outline begins like this
  struct Entry {
    std::string key;
    std::shared_ptr<const SqlPattern> pattern;
    StatementPtr statement;
    Losses losses;
  };
  using Entries = std::list<Entry>;

  const Entry* find(std::string_view key) {
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) return nullptr;
    entries_.splice(entries_.begin(), entries_, found->second);
    return &entries_.front();
  }

  StatementPtr prepare(const SqlPattern& pattern) {
    recorder_.take();
    const SqlStatement& sql = pattern.statement();
    StatementPtr statement = mv::prepare(connection_, sql.shape, sql.name, SQLITE_PREPARE_PERSISTENT);
    if (!statement) throw DatabaseError(DatabaseError::kSyntaxError, "There is no statement.");
    return statement;
  }

  const Entry& add(const std::string& key, std::shared_ptr<const SqlPattern> pattern, StatementPtr statement) {
    // Rows that give way to an inserted one are not announced.
    Losses losses = recorder_.take();
    if (holdsWord(pattern->statement().shape, "replace")) losses.emplace_back();
    entries_.push_front({key, std::move(pattern), std::move(statement), std::move(losses)});
    byKey_.emplace(entries_.front().key, entries_.begin());
    if (entries_.size() > kCachedStatements) {
      byKey_.erase(entries_.back().key);
      entries_.pop_back();
    }
    return entries_.front();
  }

  static bool holdsWord(std::string_view text, std::string_view word) {
    const auto same = [](char a, char b) { return lowerSqlLetter(a) == b; };
    return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end();
  }

  sqlite3* connection_;
  LossRecorder recorder_;
  SqlOutline outline_;
  Entries entries_;  // the last used one first
  std::unordered_map<std::string_view, Entries::iterator> byKey_;
};

// ---- opening ----

ConnectionPtr openHandle(const std::string& path, int flags) {
  sqlite3* handle = nullptr;
  const int code = sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  ConnectionPtr connection(handle);
  if (!connection) throw std::bad_alloc();
  if (code != SQLITE_OK) raise(handle, code, "open");
  sqlite3_busy_timeout(handle, kBusyTimeoutMs);
  // A text between double quotes must never be read as a name, nor a misspelt name as a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  return connection;
}

std::string immutableUri(const std::string& path) {
  std::string uri = path.substr(0, 1) == "/" ? "file://" : "file:";
  for (const char c : path) {
    char code[4];
    std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
    const bool plain = std::string_view("%?#").find(c) == std::string_view::npos;
    uri += plain ? std::string(1, c) : std::string(code);
  }
  return uri + "?immutable=1";
}

std::int64_t fileSize(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<std::int64_t>(status.st_size) : -1;
}

// What can be told without the engine: existence, access, the first bytes, the length.
void checkFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) raiseFile(DatabaseError::kFileNotFound, path, "does not exist.");
  if (!S_ISREG(status.st_mode)) raiseFile(DatabaseError::kUnrecognizedFormat, path, "is not a file.");
  const std::string folder = std::filesystem::path(path).parent_path().string();
  if (access(path.c_str(), R_OK | W_OK) != 0) raiseFile(DatabaseError::kReadOnly, path, "cannot be written to.");
  if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0)
    raiseFile(DatabaseError::kReadOnly, path, "lies in a folder that cannot be written to.");

  static constexpr std::string_view kMagic("SQLite format 3\0", 16);
  std::array<char, 100> header{};
  std::ifstream(path, std::ios::binary).read(header.data(), header.size());
  if (std::string_view(header.data(), kMagic.size()) != kMagic)
    raiseFile(DatabaseError::kUnrecognizedFormat, path, "is not a database, or it is damaged.");
}

void checkTables(sqlite3* connection, const std::string& path, const Database::TableNames& needed) {
  const StatementPtr find =
      prepare(connection, "select 1 from sqlite_schema where type = 'table' and name = ?1 collate nocase", "check");
  for (const std::string_view table : needed) {
    sqlite3_bind_text64(find.get(), 1, table.data(), table.size(), SQLITE_STATIC, SQLITE_UTF8);
    if (!step(find.get(), "check"))
      raiseFile(DatabaseError::kUnrecognizedFormat, path,
                "belongs to another program: it has no table \"" + std::string(table) + "\".");
    sqlite3_reset(find.get());
  }
}

// As the engine's own language writes a name.
std::string quotedName(std::string name) {
  for (std::size_t at = 0; (at = name.find('"', at)) != std::string::npos; at += 2) name.insert(at, 1, '"');
  return '"' + name + '"';
}

// Reads what a damaged file would fail at: every table's first page, all pages of a small file, the length.
void checkContent(sqlite3* connection, std::int64_t bytes, bool wholeFile) {
  const StatementPtr tables =
      prepare(connection, "select name from sqlite_schema where type = 'table' and rootpage > 0", "check");
  while (step(tables.get(), "check")) {
    const std::string table = reinterpret_cast<const char*>(sqlite3_column_text(tables.get(), 0));
    firstText(connection, "select 1 from " + quotedName(table) + " limit 1");
  }
  const std::int64_t expected =
      firstNumber(connection, "pragma page_count") * firstNumber(connection, "pragma page_size");
  const bool shortened = wholeFile && expected > bytes;
  if (shortened || (bytes <= kCheckedBelowBytes && firstText(connection, "pragma quick_check(1)") != "ok"))
    throw DatabaseError(DatabaseError::kUnrecognizedFormat, "damaged");
}

// Everything is judged before anything is changed. Reading "immutable" leaves no trace; it must not be used where a
// journal may hold pages that the file has not: after a killed run, or beside another one.
void checkDatabase(const std::string& path, const Database::TableNames& needed) {
  checkFile(path);
  const bool rollBack = fileSize(path + "-journal") > 0;
  const bool journal = rollBack || fileSize(path + "-wal") >= 0;
  try {
    // Only a connection that may write can take back a change that was interrupted.
    const int access = rollBack ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    const ConnectionPtr probe =
        journal ? openHandle(path, access) : openHandle(immutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    sqlite3_db_config(probe.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    checkTables(probe.get(), path, needed);
    checkContent(probe.get(), fileSize(path), !journal);
  } catch (const DatabaseError& error) {
    if (error.number() == DatabaseError::kLocked) raiseFile(error.number(), path, "is in use by another program.");
    // A statement of the check that is refused for its wording can only come from a file with a foreign or broken
    // schema.
    const bool ours = error.description().find(path) != std::string::npos;
    if (ours || error.number() == DatabaseError::kDiskError) throw;
    raiseFile(DatabaseError::kUnrecognizedFormat, path, "is damaged, or it is not a database.");
  }
}

void setUp(sqlite3* connection, const std::string& path) {
  try {
    if (firstText(connection, "pragma journal_mode=wal") != "wal")
      raiseFile(DatabaseError::kReadOnly, path, "lies where no journal can be kept.");
  } catch (const DatabaseError& error) {
    if (error.number() == DatabaseError::kLocked) raiseFile(error.number(), path, "is in use by another program.");
    throw;
  }
  run(connection, "pragma synchronous=normal");
  run(connection, "pragma cache_size=-" + std::to_string(kCacheKiB));
  // Deleted rows are overwritten where their page is written anyway; to write pages for that alone would make emptying
  // a table of a million rows four times as slow.
  run(connection, "pragma secure_delete=fast");
  run(connection, "pragma journal_size_limit=" + std::to_string(kJournalSizeLimit));
}

// Copies the journal's pages into the database while the program goes on writing to the journal: the disk may take its
// time. When all of them are copied the journal begins anew.
class Checkpoints {
 public:
  Checkpoints(sqlite3* writer, const std::string& path) : writer_(writer), path_(path) {
    sqlite3_wal_hook(writer, &Checkpoints::written, this);
  }
  ~Checkpoints() { sqlite3_wal_hook(writer_, nullptr, nullptr); }
  Checkpoints(const Checkpoints&) = delete;
  Checkpoints& operator=(const Checkpoints&) = delete;

 private:
  static int written(void* self, sqlite3* /*writer*/, const char* /*database*/, int pages) {
    static_cast<Checkpoints*>(self)->journalIs(pages);
    return SQLITE_OK;
  }

  void journalIs(int pages) {
    if (pages < pages_) requestAt_ = kCheckpointPages;  // it has begun anew
    pages_ = pages;
    if (copying_) return;
    if (std::exchange(finishDue_, false)) {
      // Between two changes no one writes: the little that is left is all.
      sqlite3_wal_checkpoint_v2(writer_, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    } else if (pages >= requestAt_) {
      requestAt_ = pages + kCheckpointPages;
      finishDue_ = pages >= kLongJournalPages;
      copying_ = true;
      job_.request();
    }
  }

  // Runs on the job's thread. What fails here is tried again at the next request.
  void copy() {
    try {
      if (!connection_) {
        connection_ = openHandle(path_, SQLITE_OPEN_READWRITE);
        run(connection_.get(), "pragma synchronous=normal");
      }
      // What was written during a pass is left for the next one, which is shorter.
      for (int pass = 0, left = 1; pass < kCheckpointPasses && left > 0; ++pass) {
        int all = 0, copied = 0;
        if (sqlite3_wal_checkpoint_v2(connection_.get(), nullptr, SQLITE_CHECKPOINT_PASSIVE, &all, &copied) !=
            SQLITE_OK)
          break;
        left = all - copied;
      }
    } catch (const std::exception&) {
      connection_.reset();
    }
    copying_ = false;
  }

  sqlite3* writer_;
  std::string path_;
  int pages_ = 0;  // of the journal
  int requestAt_ = kCheckpointPages;
  bool finishDue_ = false;
  std::atomic<bool> copying_ = false;
  ConnectionPtr connection_;  // the thread's
  BackgroundJob job_{[this] { copy(); }};
};

// A connection of its own for a long result: it keeps seeing the rows of the moment of the query, whatever the program
// writes meanwhile.
struct Reader {
  ConnectionPtr connection;
  StatementPtr statement;
};

ConnectionPtr openReader(const std::string& path) {
  ConnectionPtr connection = openHandle(path, SQLITE_OPEN_READWRITE);
  run(connection.get(), "pragma query_only=1");
  run(connection.get(), "pragma cache_size=-" + std::to_string(kReaderCacheKiB));
  return connection;
}

}  // namespace

DatabaseError::DatabaseError(long number, std::string description, std::string source)
    : std::runtime_error(description),
      number_(number),
      description_(std::move(description)),
      source_(std::move(source)) {}

std::string quoted(std::string_view text) {
  std::string literal;
  literal.reserve(text.size() + 2);
  literal += '"';
  for (const char c : text) literal.append(c == '"' ? 2 : 1, c);
  return literal += '"';
}

// ---- connection ----

struct Database::Connection {
  explicit Connection(const std::string& databasePath)
      : path(databasePath), main(openHandle(databasePath, SQLITE_OPEN_READWRITE)) {
    setUp(main.get(), path);
    statements = std::make_unique<StatementCache>(main.get());
    checkpoints = std::make_unique<Checkpoints>(main.get(), path);
  }

  // The others go first, so that the last connection to close is the one that ends the journal.
  ~Connection() {
    checkpoints.reset();
    idleReader.reset();
    for (const std::weak_ptr<Reader>& weak : readers)
      if (const std::shared_ptr<Reader> reader = weak.lock()) {
        reader->statement.reset();
        reader->connection.reset();
      }
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  std::shared_ptr<Reader> takeReader() {
    std::erase_if(readers, [](const std::weak_ptr<Reader>& weak) { return weak.expired(); });
    auto reader = std::make_shared<Reader>();
    reader->connection = idleReader ? std::move(idleReader) : openReader(path);
    run(reader->connection.get(), "begin");
    readers.push_back(reader);
    return reader;
  }

  void giveBack(Reader& reader) {
    reader.statement.reset();
    if (idleReader || !reader.connection) return;
    if (sqlite3_exec(reader.connection.get(), "rollback", nullptr, nullptr, nullptr) == SQLITE_OK)
      idleReader = std::move(reader.connection);
  }

  std::string path;
  ConnectionPtr main;
  std::unique_ptr<Checkpoints> checkpoints;
  std::unique_ptr<StatementCache> statements;
  ConnectionPtr idleReader;
  std::vector<std::weak_ptr<Reader>> readers;
  std::int64_t rowsAffected = 0;

  void lose(const Losses& losses) {
    for (const std::string& name : losses) ++lossCounts[name];
  }
  void loseAnything() { ++lossCounts[""]; }
  std::unordered_map<std::string, std::int64_t> lossCounts;
  std::int64_t dataVersion = 0;  // other programs' changes
};

// ---- recordset ----

// A short result is read whole at once. A long one is read through a reader, kRowsAhead rows at a time.
struct Recordset::State {
  std::weak_ptr<Database::Connection> owner;
  std::shared_ptr<const SqlPattern> pattern;
  std::vector<SqlValue> values;
  std::vector<std::string> engineFields;  // where the statement's own do not tell
  std::size_t columns = 0;
  std::vector<ValuePtr> cells;  // of the rows at hand, row by row
  std::size_t rows = 0;         // at hand
  std::size_t row = 0;          // the current one
  bool complete = true;         // nothing comes after the rows at hand
  std::shared_ptr<Reader> reader;

  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() {
    const auto connection = owner.lock();
    if (reader && connection) connection->giveBack(*reader);
  }

  const SqlStatement& sql() const { return pattern->statement(); }
  const std::vector<std::string>& fields() const {
    return sql().fields.size() == columns ? sql().fields : engineFields;
  }

  void takeNames(sqlite3_stmt* statement) {
    columns = static_cast<std::size_t>(sqlite3_column_count(statement));
    engineFields.clear();
    if (sql().fields.size() == columns) return;
    for (std::size_t i = 0; i < columns; ++i)
      engineFields.emplace_back(sqlite3_column_name(statement, static_cast<int>(i)));
  }

  // Replaces the rows at hand by the next ones, at most `limit`.
  void readRows(sqlite3_stmt* statement, std::size_t limit) {
    cells.clear();
    rows = row = 0;
    complete = true;
    bool more = step(statement, sql().name);
    // Not before the first step: it is the one that notices a column added meanwhile.
    takeNames(statement);
    while (more) {
      takeRow(statement);
      if (++rows == limit) {
        complete = false;
        return;
      }
      more = step(statement, sql().name);
    }
  }

  void takeRow(sqlite3_stmt* statement) {
    for (std::size_t i = 0; i < columns; ++i) {
      cells.emplace_back(sqlite3_value_dup(sqlite3_column_value(statement, static_cast<int>(i))));
      if (!cells.back()) throw std::bad_alloc();
    }
  }

  void readThrough(std::shared_ptr<Reader> longReader) {
    reader = std::move(longReader);
    reader->statement = prepare(reader->connection.get(), sql().shape, sql().name);
    bindValues(reader->statement.get(), values, sql().name);
    readRows(reader->statement.get(), kRowsAhead);
  }

  void checkOpen() const {
    if (owner.expired()) raiseNotOpen();
  }

  std::size_t column(std::string_view field) const {
    std::optional<std::size_t> byLastPart;
    for (std::size_t i = 0; i < columns; ++i) {
      const std::string_view name = fields()[i];
      if (sameSqlName(name, field)) return i;
      const std::size_t dot = name.rfind('.');
      if (dot == std::string_view::npos || !sameSqlName(name.substr(dot + 1), field)) continue;
      if (byLastPart) raiseItemNotFound(field);
      byLastPart = i;
    }
    if (!byLastPart) raiseItemNotFound(field);
    return *byLastPart;
  }

  [[noreturn]] void raiseItemNotFound(std::string_view field) const {
    throw DatabaseError(DatabaseError::kItemNotFound,
                        sql().name + ": the result has no field \"" + std::string(field) + "\".");
  }

  sqlite3_value* cell(std::string_view field) const {
    checkOpen();
    const std::size_t at = column(field);
    if (row >= rows) raiseNoCurrentRecord(sql().name);
    return cells[row * columns + at].get();
  }
};

Recordset::Recordset(std::unique_ptr<State> state) : state_(std::move(state)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

std::int64_t Recordset::recordCount() const {
  state_->checkOpen();
  if (!state_->reader) return static_cast<std::int64_t>(state_->rows);
  const SqlStatement& sql = state_->sql();
  const StatementPtr counter =
      prepare(state_->reader->connection.get(), "select count(*) from (" + sql.shape + ')', sql.name);
  bindValues(counter.get(), state_->values, sql.name);
  step(counter.get(), sql.name);
  return sqlite3_column_int64(counter.get(), 0);
}

void Recordset::moveFirst() {
  state_->checkOpen();
  if (!state_->reader) {
    state_->row = 0;
    return;
  }
  sqlite3_reset(state_->reader->statement.get());
  state_->readRows(state_->reader->statement.get(), kRowsAhead);
}

void Recordset::moveNext() {
  if (endOfRows()) raiseNoCurrentRecord(state_->sql().name);
  if (++state_->row == state_->rows && !state_->complete) state_->readRows(state_->reader->statement.get(), kRowsAhead);
}

bool Recordset::endOfRows() const {
  state_->checkOpen();
  return state_->row >= state_->rows;
}

std::string Recordset::text(std::string_view field) const {
  sqlite3_value* const value = state_->cell(field);
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  return text ? std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string();
}

std::int64_t Recordset::number(std::string_view field) const { return sqlite3_value_int64(state_->cell(field)); }

bool Recordset::isNull(std::string_view field) const { return sqlite3_value_type(state_->cell(field)) == SQLITE_NULL; }

// ---- database ----

Database::Database() = default;
Database::~Database() = default;

void Database::open(const std::string& path, const TableNames& neededTables) {
  close();
  checkDatabase(path, neededTables);
  connection_ = std::make_shared<Connection>(path);
}

void Database::close() { connection_.reset(); }

bool Database::isOpen() const { return connection_ != nullptr; }

Recordset Database::query(std::string_view sql) {
  if (!connection_) raiseNotOpen();
  auto state = std::make_unique<Recordset::State>();
  state->owner = connection_;
  const Prepared statement = connection_->statements->get(sql, state->values);
  state->pattern = statement.pattern;
  connection_->lose(*statement.losses);
  {
    const Use use(statement.handle, state->values, state->sql().name);
    // Rows that only an open transaction knows cannot be seen by a reader.
    const bool readable = state->sql().isSelect && sqlite3_get_autocommit(connection_->main.get()) != 0;
    state->readRows(statement.handle, readable ? kRowsAhead : SIZE_MAX);
  }
  if (!state->complete) state->readThrough(connection_->takeReader());
  return Recordset(std::move(state));
}

void Database::execute(std::string_view sql) {
  if (!connection_) raiseNotOpen();
  std::vector<SqlValue> values;
  const Prepared statement = connection_->statements->get(sql, values);
  const std::string& name = statement.pattern->statement().name;
  connection_->lose(*statement.losses);
  try {
    const Use use(statement.handle, values, name);
    while (step(statement.handle, name)) continue;
  } catch (...) {
    connection_->loseAnything();  // it may have ended its transaction
    throw;
  }
  connection_->rowsAffected = sqlite3_changes64(connection_->main.get());
}

std::int64_t Database::rowsAffected() const { return connection_ ? connection_->rowsAffected : 0; }

std::int64_t Database::lossMark(const std::string& table, const std::string& column) {
  const std::int64_t version = query("pragma data_version").number("data_version");
  if (std::exchange(connection_->dataVersion, version) != version) connection_->loseAnything();
  auto& counts = connection_->lossCounts;
  return counts[""] + counts[table] + counts[table + '.' + column];
}

std::int64_t Database::count(std::string_view sql) {
  if (!connection_) raiseNotOpen();
  std::vector<SqlValue> values;
  const Prepared statement = connection_->statements->get(sql, values);
  const SqlStatement& translated = statement.pattern->statement();
  if (translated.fields.size() != 1 || !sameSqlName(translated.fields.front(), kCountField))
    return query(sql).number(kCountField);
  const Use use(statement.handle, values, translated.name);
  if (!step(statement.handle, translated.name)) raiseNoCurrentRecord(translated.name);
  return sqlite3_column_int64(statement.handle, 0);
}

Transaction::Transaction(Database& database) : database_(database) { database_.execute("begin"); }

Transaction::~Transaction() {
  if (!open_) return;
  try {
    database_.execute("rollback");
  } catch (const DatabaseError&) {
    // After some failures, a full disk above all, the engine has done so already.
  }
}

void Transaction::commit() {
  database_.execute("commit");
  open_ = false;
}

// ---- compaction ----

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

}  // namespace

struct CompactCopy::Private {
  std::string source;
  std::string target;
  std::atomic<bool> cancelled = false;
  std::atomic<bool> checking = false;
  std::atomic<std::int64_t> expected = 0;  // bytes
  ConnectionPtr connection;                // to the source, from write() to the end
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

  void rewrite() {
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
    bool same = firstText(copy.get(), "pragma integrity_check(1)") == "ok" &&
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
  if (d->made) removeFiles(d->target);
}

void CompactCopy::write() {
  if (fileSize(d->target) >= 0)
    throw DatabaseError(DatabaseError::kAlreadyExists, "The file " + d->target + " already exists.");
  checkDatabase(d->source, {});
  d->made = true;
  d->connection = d->openWatched(d->source, SQLITE_OPEN_READWRITE);
  // What is brought into the file now need not be when everybody waits for the source to close.
  run(d->connection.get(), "pragma wal_checkpoint(passive)");
  d->version = currentVersion(d->connection.get());
  d->rewrite();
  d->check();
}

void CompactCopy::cancel() { d->cancelled = true; }

int CompactCopy::percentWritten() const {
  if (d->checking) return -1;
  const std::int64_t expected = std::max<std::int64_t>(d->expected, 1);
  return static_cast<int>(std::clamp<std::int64_t>(fileSize(d->target) * 100 / expected, 0, 100));
}

bool CompactCopy::isCurrent() { return d->connection && currentVersion(d->connection.get()) == d->version; }

void CompactCopy::replaceSource() {
  // The last one to close a database takes its journal away.
  d->connection.reset();
  if (fileSize(d->source + "-wal") >= 0 || fileSize(d->source + "-journal") > 0)
    raiseFile(DatabaseError::kLocked, d->source, "is in use by another program.");
  reached(Step::Closed);
  struct stat status {};
  if (stat(d->source.c_str(), &status) == 0) chmod(d->target.c_str(), status.st_mode & 07777);
  syncToDisk(d->target);
  reached(Step::Synced);
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
}

void CompactCopy::removeFiles(const std::string& path) {
  std::error_code ignored;
  for (const char* suffix : {"", "-journal", "-wal", "-shm"}) std::filesystem::remove(path + suffix, ignored);
}

bool CompactCopy::isWhole(const std::string& path, const Database::TableNames& neededTables) try {
  checkDatabase(path, neededTables);
  return firstText(openHandle(path, SQLITE_OPEN_READWRITE).get(), "pragma integrity_check(1)") == "ok";
} catch (const DatabaseError&) {
  return false;
}

void CompactCopy::setStepHook(std::function<void(Step)> hook) { stepHook = std::move(hook); }

}  // namespace mv
