// What the sources of the database engine share of its C interface. Only they include this.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/DatabaseError.h"
#include "database/Statement.h"

namespace mv::engine {

struct CloseConnection {
  void operator()(sqlite3* connection) const { sqlite3_close_v2(connection); }
};
struct FinalizeStatement {
  void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using ConnectionPtr = std::unique_ptr<sqlite3, CloseConnection>;
using StatementPtr = std::unique_ptr<sqlite3_stmt, FinalizeStatement>;

// How long a statement waits for another connection's lock.
inline constexpr int kBusyTimeoutMs = 2000;

// Everything here raises DatabaseError.
[[noreturn]] void raise(sqlite3* connection, int code, const std::string& statementName);
// "The database <path> <trouble>"
[[noreturn]] void raiseFile(long number, const std::string& path, const std::string& trouble);
[[noreturn]] void raiseNotOpen();
[[noreturn]] void raiseNoCurrentRecord(const std::string& statementName);

StatementPtr prepare(sqlite3* connection, const std::string& sql, const std::string& name, unsigned flags = 0);
// `values` must stay where they are until the bindings are cleared.
void bindValues(sqlite3_stmt* statement, std::span<const SqlValue> values, const std::string& name);
void bindValues(sqlite3_stmt* statement, std::span<const SqlArgument> values, const std::string& name);
// True when there is a row.
bool step(sqlite3_stmt* statement, const std::string& name);
void run(sqlite3* connection, const std::string& sql);
// The first field of the first row.
std::string firstText(sqlite3* connection, const std::string& sql);
std::int64_t firstNumber(sqlite3* connection, const std::string& sql);

// A statement in use: at the end it is ready for the next use and holds no lock.
class Use {
 public:
  template <class Value>
  Use(sqlite3_stmt* statement, std::span<const Value> values, const std::string& name) : statement_(statement) {
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

// `flags` and `fileSystem` as of sqlite3_open_v2.
ConnectionPtr openHandle(const std::string& path, int flags, const char* fileSystem = nullptr);
// For reading a file without leaving a trace.
std::string immutableUri(const std::string& path);
// The database holds passwords: from here on only its owner reads it, or what is beside it. Files that the engine makes
// later take over the database's permissions. Somebody else's file stays as it is.
void keepPrivate(const std::string& path);
// Removes a database and what the engine keeps beside it, as far as they are there.
void removeFiles(const std::string& path);
// The file that is open has not the connection's path any more.
bool hasMoved(sqlite3* connection);
// In bytes; -1 when there is no such file.
std::int64_t fileSize(const std::string& path);
// As the engine's own language writes a name.
std::string quotedName(std::string name);
// Everything is judged before anything is changed: the file, its tables, its content. The file is read through the
// engine only: closing any other handle of it would drop the locks of every connection of this process.
void checkDatabase(const std::string& path, const std::vector<std::string_view>& needed);

}  // namespace mv::engine
