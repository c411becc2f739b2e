#include "database/Database.h"

#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include "CellBuffer.h"
#include "Checkpoints.h"
#include "JournalWrites.h"
#include "SqlDialect.h"
#include "Sqlite.h"
#include "StatementCache.h"

namespace mv {

using namespace engine;

namespace {

// Holds the inner pages of indexes of ten million rows. A larger one costs more than it saves: at every split of a page
// the engine looks through all that it holds.
constexpr int kCacheKiB = 16 * 1024;
constexpr int kReaderCacheKiB = 4 * 1024;
constexpr std::int64_t kJournalSizeLimit = 64 * 1024 * 1024;  // what a journal is cut back to after a large change
constexpr const char* kCountField = "outCount";
constexpr std::size_t kRowsAhead = 64;

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

template <class Value>
std::int64_t firstNumberOf(const Prepared& prepared, std::span<const Value> values) {
  const std::string& name = prepared.translation->name;
  const Use use(prepared.handle(), values, name);
  if (!step(prepared.handle(), name)) raiseNoCurrentRecord(name);
  return sqlite3_column_int64(prepared.handle(), 0);
}

}  // namespace

struct Database::Connection {
  explicit Connection(const std::string& databasePath)
      : path(databasePath), main(openHandle(databasePath, SQLITE_OPEN_READWRITE, gatheringFileSystem())) {
    setUp(main.get(), path);
    statements = std::make_unique<StatementCache>(main.get());
    checkpoints = std::make_unique<Checkpoints>(main.get(), path);
    // The engine ends a transaction by itself after some failures, of a statement that only reads, too.
    sqlite3_rollback_hook(
        main.get(), [](void* self) { static_cast<Connection*>(self)->invalidateAll(); }, this);
  }

  // The others go first, so that the last connection to close is the one that ends the journal.
  ~Connection() {
    // Closing takes back what is open, and nobody is left to be told.
    sqlite3_rollback_hook(main.get(), nullptr, nullptr);
    checkpoints.reset();
    idleReader.reset();
    for (const std::weak_ptr<Reader>& weak : readers)
      if (const std::shared_ptr<Reader> reader = weak.lock()) {
        reader->statement.reset();
        reader->connection.reset();
      }
    if (engine::hasMoved(main.get())) takeJournalAlong();
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

  // The engine would leave the journal behind, in a place where it must not meet another database.
  void takeJournalAlong() {
    statements.reset();
    sqlite3_wal_checkpoint_v2(main.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
    if (fileSize(path) < 0) removeFiles(path);
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

  // `key`: as the cache knows the statement.
  template <class Key, class Value>
  void carryOut(const Key& key, std::span<const Value> arguments) {
    const Prepared& prepared = statements->get(key);
    const std::string& name = prepared.translation->name;
    invalidate(prepared.invalidations);
    const Use use(prepared.handle(), arguments, name);
    while (step(prepared.handle(), name)) continue;
  }

  void invalidate(const Invalidations& names) {
    for (const std::string& name : names) ++(name.empty() ? everything : invalidations[name]);
  }
  // Called from within the engine, which no exception may pass through.
  void invalidateAll() noexcept { ++everything; }
  std::int64_t everything = 0;
  std::unordered_map<std::string, std::int64_t> invalidations;
  std::int64_t dataVersion = 0;  // other programs' changes
};

// ---- recordset ----

// A short result is read whole at once. A long one is read through a reader, kRowsAhead rows at a time.
struct Recordset::State {
  std::weak_ptr<Database::Connection> owner;
  std::shared_ptr<const SqlTranslation> translation;
  std::vector<SqlValue> values;           // of a long result
  std::vector<std::string> engineFields;  // where the statement's own do not tell
  std::size_t columns = 0;
  CellBuffer cells;      // of the rows at hand
  std::size_t rows = 0;  // at hand
  std::size_t row = 0;   // the current one
  bool complete = true;  // nothing comes after the rows at hand
  std::shared_ptr<Reader> reader;

  State() = default;
  State(const State&) = delete;
  State& operator=(const State&) = delete;
  ~State() {
    const auto connection = owner.lock();
    if (reader && connection) connection->giveBack(*reader);
  }

  const std::string& name() const { return translation->name; }
  const std::vector<std::string>& fields() const {
    return translation->fields.size() == columns ? translation->fields : engineFields;
  }

  void takeNames(sqlite3_stmt* statement) {
    columns = static_cast<std::size_t>(sqlite3_column_count(statement));
    engineFields.clear();
    if (translation->fields.size() == columns) return;
    for (std::size_t i = 0; i < columns; ++i)
      engineFields.emplace_back(sqlite3_column_name(statement, static_cast<int>(i)));
  }

  // Replaces the rows at hand by the next ones, at most `limit`.
  void readRows(sqlite3_stmt* statement, std::size_t limit) {
    cells.clear();
    rows = row = 0;
    complete = true;
    bool more = step(statement, name());
    // Not before the first step: it is the one that notices a column added meanwhile.
    takeNames(statement);
    while (more) {
      cells.takeRow(statement, static_cast<int>(columns));
      if (++rows == limit) {
        complete = false;
        return;
      }
      more = step(statement, name());
    }
  }

  void readThrough(std::shared_ptr<Reader> longReader, const std::vector<SqlValue>& boundValues) {
    reader = std::move(longReader);
    values = boundValues;
    reader->statement = prepare(reader->connection.get(), translation->sql, name());
    bindValues(reader->statement.get(), std::span<const SqlValue>(values), name());
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
                        name() + ": the result has no field \"" + std::string(field) + "\".");
  }

  // Which of `cells`.
  std::size_t cell(std::string_view field) const {
    checkOpen();
    const std::size_t at = column(field);
    if (row >= rows) raiseNoCurrentRecord(name());
    return row * columns + at;
  }
};

Recordset::Recordset(std::unique_ptr<State> state) : state_(std::move(state)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

std::int64_t Recordset::recordCount() const {
  state_->checkOpen();
  if (!state_->reader) return static_cast<std::int64_t>(state_->rows);
  const std::string sql = "select count(*) from (" + state_->translation->sql + ')';
  const StatementPtr counter = prepare(state_->reader->connection.get(), sql, state_->name());
  bindValues(counter.get(), std::span<const SqlValue>(state_->values), state_->name());
  step(counter.get(), state_->name());
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
  if (endOfRows()) raiseNoCurrentRecord(state_->name());
  if (++state_->row == state_->rows && !state_->complete) state_->readRows(state_->reader->statement.get(), kRowsAhead);
}

bool Recordset::endOfRows() const {
  state_->checkOpen();
  return state_->row >= state_->rows;
}

std::string Recordset::text(std::string_view field) const { return state_->cells.text(state_->cell(field)); }

std::int64_t Recordset::number(std::string_view field) const { return state_->cells.number(state_->cell(field)); }

bool Recordset::isNull(std::string_view field) const { return state_->cells.isNull(state_->cell(field)); }

// ---- database ----

Database::Database() = default;
Database::~Database() = default;

void Database::open(const std::string& path, const TableNames& neededTables) {
  close();
  checkDatabase(path, neededTables);
  keepPrivate(path);
  connection_ = std::make_shared<Connection>(path);
  ++openings_;
}

std::string Database::engineVersion() { return std::string("SQLite ") + sqlite3_libversion(); }

void Database::close() { connection_.reset(); }

bool Database::isOpen() const { return connection_ != nullptr; }

bool Database::hasMoved() const { return connection_ && engine::hasMoved(connection_->main.get()); }

Recordset Database::query(const Statement& statement) {
  if (!connection_) raiseNotOpen();
  auto state = std::make_unique<Recordset::State>();
  state->owner = connection_;
  const Prepared& prepared = connection_->statements->get(statement.shape());
  state->translation = prepared.translation;
  connection_->invalidate(prepared.invalidations);
  {
    const Use use(prepared.handle(), std::span(statement.values()), state->name());
    // Rows that only an open transaction knows cannot be seen by a reader.
    const bool readable = state->translation->isSelect && sqlite3_get_autocommit(connection_->main.get()) != 0;
    state->readRows(prepared.handle(), readable ? kRowsAhead : SIZE_MAX);
  }
  if (!state->complete) state->readThrough(connection_->takeReader(), statement.values());
  return Recordset(std::move(state));
}

void Database::execute(const Statement& statement) { change(statement.shape(), std::span(statement.values())); }

void Database::execute(const FixedStatement& statement, Arguments values) { change(statement, std::span(values)); }

template <class Key, class Value>
void Database::change(const Key& key, std::span<const Value> values) {
  if (!connection_) raiseNotOpen();
  join();
  connection_->carryOut(key, values);
  connection_->rowsAffected = sqlite3_changes64(connection_->main.get());
}

void Database::carryOut(const Statement& statement) {
  if (!connection_) raiseNotOpen();
  connection_->carryOut(statement.shape(), std::span(statement.values()));
}

std::int64_t Database::rowsAffected() const { return connection_ ? connection_->rowsAffected : 0; }

std::int64_t Database::invalidationCount(const std::string& table, const std::string& column) {
  const std::int64_t version = query("pragma data_version").number("data_version");
  if (std::exchange(connection_->dataVersion, version) != version) connection_->invalidateAll();
  auto& counts = connection_->invalidations;
  return (openings_ << 40) + connection_->everything + counts[table] + counts[table + '.' + column];
}

std::int64_t Database::count(const Statement& statement) {
  if (!connection_) raiseNotOpen();
  const Prepared& prepared = connection_->statements->get(statement.shape());
  if (prepared.translation->fields.size() != 1 || !sameSqlName(prepared.translation->fields.front(), kCountField))
    return query(statement).number(kCountField);
  return firstNumberOf(prepared, std::span(statement.values()));
}

std::int64_t Database::count(const FixedStatement& statement, Arguments values) {
  if (!connection_) raiseNotOpen();
  return firstNumberOf(connection_->statements->get(statement), std::span(values));
}

// ---- for the groups of statements ----

bool Database::isInTransaction() const { return connection_ && sqlite3_get_autocommit(connection_->main.get()) == 0; }

void Database::waitForLocks(int milliseconds) { sqlite3_busy_timeout(connection_->main.get(), milliseconds); }

}  // namespace mv
