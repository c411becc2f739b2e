#include "Sqlite.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <string_view>

namespace mv::engine {

namespace {

// A database and what the engine keeps beside it: what their names add to the database's.
constexpr const char* kFileSuffixes[] = {"", "-journal", "-wal", "-shm"};
constexpr std::int64_t kCheckedBelowBytes = 4 * 1024 * 1024;  // files up to this size are checked page by page

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

int bindValue(sqlite3_stmt* statement, int place, const SqlArgument& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) return sqlite3_bind_int64(statement, place, *whole);
  const auto& text = std::get<std::string_view>(value);
  // Without a place the text would be null.
  return sqlite3_bind_text64(statement, place, text.data() ? text.data() : "", text.size(), SQLITE_STATIC, SQLITE_UTF8);
}

int bindValue(sqlite3_stmt* statement, int place, const SqlValue& value) {
  return std::visit([&](const auto& held) { return bindValue(statement, place, SqlArgument(held)); }, value);
}

template <class Value>
void bindAll(sqlite3_stmt* statement, std::span<const Value> values, const std::string& name) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    const int code = bindValue(statement, static_cast<int>(i) + 1, values[i]);
    if (code != SQLITE_OK) raise(sqlite3_db_handle(statement), code, name);
  }
}

}  // namespace

void raise(sqlite3* connection, int code, const std::string& statementName) {
  if (code == SQLITE_NOMEM) throw std::bad_alloc();
  const std::string message = withoutPlaces(sqlite3_errmsg(connection));
  throw DatabaseError(numberOfCode(code, message), statementName + ": " + message);
}

void raiseFile(long number, const std::string& path, const std::string& trouble) {
  throw DatabaseError(number, "The database " + path + ' ' + trouble);
}

void raiseNotOpen() { throw DatabaseError(DatabaseError::kNotOpen, "The database is closed."); }

void raiseNoCurrentRecord(const std::string& statementName) {
  throw DatabaseError(DatabaseError::kNoCurrentRecord, statementName + ": there is no current row.");
}

StatementPtr prepare(sqlite3* connection, const std::string& sql, const std::string& name, unsigned flags) {
  sqlite3_stmt* handle = nullptr;
  const int code = sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()), flags, &handle, nullptr);
  StatementPtr statement(handle);
  if (code != SQLITE_OK) raise(connection, code, name);
  return statement;
}

void bindValues(sqlite3_stmt* statement, std::span<const SqlValue> values, const std::string& name) {
  bindAll(statement, values, name);
}

void bindValues(sqlite3_stmt* statement, std::span<const SqlArgument> values, const std::string& name) {
  bindAll(statement, values, name);
}

bool step(sqlite3_stmt* statement, const std::string& name) {
  const int code = sqlite3_step(statement);
  if (code != SQLITE_ROW && code != SQLITE_DONE) raise(sqlite3_db_handle(statement), code, name);
  return code == SQLITE_ROW;
}

void run(sqlite3* connection, const std::string& sql) {
  const int code = sqlite3_exec(connection, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) raise(connection, code, sql.substr(0, sql.find(' ')));
}

std::string firstText(sqlite3* connection, const std::string& sql) {
  const StatementPtr statement = prepare(connection, sql, sql.substr(0, sql.find(' ')));
  if (!step(statement.get(), sql)) return {};
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
  return text ? text : "";
}

std::int64_t firstNumber(sqlite3* connection, const std::string& sql) {
  return std::strtoll(firstText(connection, sql).c_str(), nullptr, 10);
}

ConnectionPtr openHandle(const std::string& path, int flags, const char* fileSystem) {
  sqlite3* handle = nullptr;
  const int code =
      sqlite3_open_v2(path.c_str(), &handle, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, fileSystem);
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

void keepPrivate(const std::string& path) {
  for (const char* suffix : kFileSuffixes) chmod((path + suffix).c_str(), S_IRUSR | S_IWUSR);
}

void removeFiles(const std::string& path) {
  for (const char* suffix : kFileSuffixes) unlink((path + suffix).c_str());
}

bool hasMoved(sqlite3* connection) {
  int moved = 0;
  return sqlite3_file_control(connection, "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

std::int64_t fileSize(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? static_cast<std::int64_t>(status.st_size) : -1;
}

std::string quotedName(std::string name) {
  for (std::size_t at = 0; (at = name.find('"', at)) != std::string::npos; at += 2) name.insert(at, 1, '"');
  return '"' + name + '"';
}

namespace {

// What can be told without opening it: existence and access.
void checkFile(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) raiseFile(DatabaseError::kFileNotFound, path, "does not exist.");
  if (!S_ISREG(status.st_mode)) raiseFile(DatabaseError::kUnrecognizedFormat, path, "is not a file.");
  const std::string folder = std::filesystem::path(path).parent_path().string();
  if (access(path.c_str(), R_OK | W_OK) != 0) raiseFile(DatabaseError::kReadOnly, path, "cannot be written to.");
  if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0)
    raiseFile(DatabaseError::kReadOnly, path, "lies in a folder that cannot be written to.");
}

// The database file format of SQLite 3: https://www.sqlite.org/fileformat.html, section 1.3.
void checkHeader(sqlite3* connection, const std::string& path) {
  static constexpr std::string_view kMagic("SQLite format 3\0", 16);
  constexpr std::size_t kWriteVersion = 18, kReadVersion = 19, kSchemaFormat = 47;
  constexpr unsigned kNewestVersion = 2, kNewestSchemaFormat = 4;
  std::array<char, 100> header{};
  sqlite3_file* file = nullptr;
  sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
  // A shorter file fills the rest with zeros.
  if (file && file->pMethods) file->pMethods->xRead(file, header.data(), header.size(), 0);
  if (std::string_view(header.data(), kMagic.size()) != kMagic)
    raiseFile(DatabaseError::kUnrecognizedFormat, path, "is not a database, or it is damaged.");
  const auto number = [&header](std::size_t at) -> unsigned { return static_cast<unsigned char>(header[at]); };
  if (number(kWriteVersion) > kNewestVersion || number(kReadVersion) > kNewestVersion ||
      number(kSchemaFormat) > kNewestSchemaFormat)
    raiseFile(DatabaseError::kUnrecognizedFormat, path,
              "has a newer file format than this program knows. Please use the program that wrote it.");
}

void checkTables(sqlite3* connection, const std::string& path, const std::vector<std::string_view>& needed) {
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

}  // namespace

// Reading "immutable" leaves no trace; it must not be used where a
// journal may hold pages that the file has not: after a killed run, or beside another one.
void checkDatabase(const std::string& path, const std::vector<std::string_view>& needed) {
  checkFile(path);
  const bool rollBack = fileSize(path + "-journal") > 0;
  const bool journal = rollBack || fileSize(path + "-wal") >= 0;
  try {
    // Only a connection that may write can take back a change that was interrupted.
    const int access = rollBack ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    const ConnectionPtr probe =
        journal ? openHandle(path, access) : openHandle(immutableUri(path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    sqlite3_db_config(probe.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    checkHeader(probe.get(), path);
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

}  // namespace mv::engine
