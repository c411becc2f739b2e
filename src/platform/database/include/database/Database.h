// The relational engine: one database in one file, driven by SQL statements (see Statement.h).
//
// The constants of a statement are written in the program's own small dialect of SQL:
//   "text" and 'text'   a text, never an identifier; the delimiter doubled inside stands for itself
//   [name]              an identifier
//   everything else     as SQLite reads it
// A statement is translated and prepared once per shape and kept, so the ten-thousandth insert costs no parsing.
//
// Texts are UTF-8, paths are UTF-8 file-system paths, numbers are 64-bit.
// One thread: a Database and its Recordsets belong to the thread that opened it. Only the engine's journal is copied
// into the database by a thread of its own, which nobody waits for.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "database/DatabaseError.h"
#include "database/Statement.h"

namespace mv {

// The rows of a query as they were at the moment of the query, whatever is written meanwhile. A few are read ahead: a
// million rows cost no more memory than a hundred. A long result keeps the journal from shrinking while it is held.
// Positioned on the first row after the query. Move-only; must not outlive a close of its Database (its operations then
// raise kNotOpen).
class Recordset {
 public:
  Recordset(Recordset&&) noexcept;
  Recordset& operator=(Recordset&&) noexcept;
  ~Recordset();

  // Number of rows in all; counted by the engine on demand, the position is kept.
  std::int64_t recordCount() const;
  void moveFirst();
  // Raises kNoCurrentRecord past the last row.
  void moveNext();
  // True when there is no current row (an empty result, or past the last).
  bool endOfRows() const;

  // The current row's field, by column name, alias or qualified name as the select list wrote it ("outCount",
  // "vf.name"), without regard to case. A null value is "" or 0; a text read as a number gives its leading number, else
  // 0. Raise kItemNotFound and kNoCurrentRecord.
  std::string text(std::string_view field) const;
  std::int64_t number(std::string_view field) const;
  bool isNull(std::string_view field) const;

 private:
  friend class Database;
  struct State;
  explicit Recordset(std::unique_ptr<State> state);
  std::unique_ptr<State> state_;
};

class CommitGroup;
class Transaction;

class Database {
 public:
  Database();
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  using TableNames = std::vector<std::string_view>;

  // Opens an existing file for reading and writing. Never creates one, and leaves a file that it refuses byte for byte
  // as it was. Raises kFileNotFound, kUnrecognizedFormat (no database, damaged, without one of `neededTables`),
  // kReadOnly, kLocked; the description is a sentence with the path. A database that was open is closed first. The file
  // and what is beside it can be read by their owner only from then on.
  // Write-ahead journal; a crash of the program loses no finished statement.
  void open(const std::string& path, const TableNames& neededTables = {});
  // Closes; the journal files beside the database are gone afterwards. A closed database may be closed again. One that
  // was moved while it was open has everything that was stored.
  void close();
  bool isOpen() const;
  // The open file is no longer at its path: it was moved, deleted, or another was put in its place.
  bool hasMoved() const;

  // Every statement is a transaction of its own, unless a Transaction or a CommitGroup is open. Raise DatabaseError;
  // nothing is half done.
  Recordset query(const Statement& statement);
  void execute(const Statement& statement);
  using Arguments = std::initializer_list<SqlArgument>;
  void execute(const FixedStatement& statement, Arguments values);
  // Rows that the last execute inserted, changed or deleted.
  std::int64_t rowsAffected() const;

  // The invalidation counter of a column: stays the same as long as every value that `column` of `table` held is
  // certain to be there still, because at most rows were added. Counted is what the engine's authorizer reports of a
  // statement when it is prepared (deletes from the table, updates of the column); every statement that says REPLACE,
  // because the rows that INSERT OR REPLACE deletes do not reach the authorizer; rollbacks and failures; other
  // programs' changes; opening. Names as the table was created with. Raises DatabaseError.
  std::int64_t invalidationCount(const std::string& table, const std::string& column);

  // While a CommitGroup is open: its number, no other has it. 0 without one.
  std::int64_t openGroup() const;
  // Has the open CommitGroup do some `work` before it commits: for what would else be stored again and again.
  void beforeCommit(std::function<void()> work);

  // The `outCount` of a count query.
  std::int64_t count(const Statement& statement);
  std::int64_t count(const FixedStatement& statement, Arguments values);

  // Name and version of the engine.
  static std::string engineVersion();

  struct Connection;

 private:
  friend class CommitGroup;
  friend class Transaction;
  template <class Key, class Value>
  void change(const Key& key, std::span<const Value> values);
  // For those two: without joining the group; false when closed; how long a statement waits.
  void carryOut(const Statement& statement);
  bool isInTransaction() const;
  // Before a statement: raises kDiskError when the engine has taken back what the statement would be a part of.
  void join();
  void waitForLocks(int milliseconds);

  std::shared_ptr<Connection> connection_;
  std::int64_t openings_ = 0;
  CommitGroup* group_ = nullptr;              // the open one
  const Transaction* transaction_ = nullptr;  // likewise, without a group
  std::int64_t groups_ = 0;                   // so far
};

// One commit for all that is stored while it lives, by whoever stores it: a commit each would cost more than the work.
// The first statement that changes something takes the right to write, which other programs then wait for until
// commit(); without commit() everything is taken back. When another program has that right, it is waited for some
// milliseconds only: whoever groups does the whole again later.
//
// One at a time, for one slice of work: it ends before the event loop runs or a message box opens.
class CommitGroup {
 public:
  explicit CommitGroup(Database& database);
  ~CommitGroup();
  CommitGroup(const CommitGroup&) = delete;
  CommitGroup& operator=(const CommitGroup&) = delete;
  // Raises DatabaseError: then nothing of it is stored. Some failures of a statement, a full disk above all, have the
  // engine take everything back at once; every further change and commit() raise kDiskError then. False when there was
  // nothing to commit.
  bool commit();

 private:
  friend class Database;
  friend class Transaction;
  void join();
  bool isLost() const;

  Database& database_;
  std::int64_t number_;
  std::vector<std::function<void()>> beforeCommit_;
  bool begun_ = false;
};

// Several statements that become durable together. Without commit() they are taken back when it goes out of scope. No
// two at a time, and nothing may run meanwhile that knows nothing of it: no event loop, no message box. When the engine
// takes everything back by itself, as after a full disk, every further change and commit() raise kDiskError.
//
// While a CommitGroup is open it is a part of that: it becomes durable with the whole, and to take it back takes the
// whole back.
class Transaction {
 public:
  explicit Transaction(Database& database);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void commit();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace mv
