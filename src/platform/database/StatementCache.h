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

  // Of what was prepared since the last call. Raises std::bad_alloc when there was no memory to note it.
  Invalidations take();

 private:
  static int authorize(void* self, int action, const char* first, const char* second, const char*,
                       const char*) noexcept;
  void record(int action, const std::string& first, const std::string& second);

  Invalidations invalidations_;
  bool isIncomplete_ = false;
};

// A statement ready for use.
struct Prepared {
  std::string shape;
  std::shared_ptr<const SqlTranslation> translation;
  StatementPtr statement;
  Invalidations invalidations;

  sqlite3_stmt* handle() const { return statement.get(); }
};

// The statements that were used last, by their shapes.
class StatementCache {
 public:
  explicit StatementCache(sqlite3* connection) : connection_(connection), recorder_(connection) {}

  // What it returns holds until the next call. Raises DatabaseError.
  const Prepared& get(std::string_view shape);
  // The same by the place of the shape. Such statements are few, and stay.
  const Prepared& get(const FixedStatement& statement);

 private:
  using Entries = std::list<Prepared>;

  Prepared prepareShape(std::string_view shape);

  sqlite3* connection_;
  InvalidationRecorder recorder_;
  Entries entries_;  // the last used one first
  std::unordered_map<std::string_view, Entries::iterator> byShape_;
  std::list<std::pair<const char*, Prepared>> fixed_;  // by the places of their shapes
};

}  // namespace mv::engine
