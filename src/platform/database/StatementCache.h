// Statements are translated and prepared once per shape and kept, together with the values that they may remove.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "SqlDialect.h"
#include "Sqlite.h"

namespace mv::engine {

// What a statement may remove or change: the rows of a "table", the values of a "table.column", with "" anything.
using Invalidations = std::vector<std::string>;

// Hears from the engine (as its authorizer) what the statements do that it prepares.
class InvalidationRecorder {
 public:
  explicit InvalidationRecorder(sqlite3* connection) {
    sqlite3_set_authorizer(connection, &InvalidationRecorder::authorize, this);
  }
  InvalidationRecorder(const InvalidationRecorder&) = delete;
  InvalidationRecorder& operator=(const InvalidationRecorder&) = delete;

  // Of what was prepared since the last call.
  Invalidations take() { return std::exchange(invalidations_, {}); }

 private:
  static int authorize(void* self, int action, const char* first, const char* second, const char*, const char*);
  void record(int action, const std::string& first, const std::string& second);

  Invalidations invalidations_;
};

// A statement ready for use.
struct Prepared {
  std::shared_ptr<const SqlTranslation> translation;
  sqlite3_stmt* handle = nullptr;                // owned by the cache
  const Invalidations* invalidations = nullptr;  // likewise
};

// The statements that were used last, by their shapes.
class StatementCache {
 public:
  explicit StatementCache(sqlite3* connection) : connection_(connection), recorder_(connection) {}

  // What it returns holds until the next call. Raises DatabaseError.
  Prepared get(const std::string& shape);

 private:
  struct Entry {
    std::string shape;
    std::shared_ptr<const SqlTranslation> translation;
    StatementPtr statement;
    Invalidations invalidations;
  };
  using Entries = std::list<Entry>;

  void add(const std::string& shape);

  sqlite3* connection_;
  InvalidationRecorder recorder_;
  Entries entries_;  // the last used one first
  std::unordered_map<std::string_view, Entries::iterator> byShape_;
};

}  // namespace mv::engine
