// Statements are translated and prepared once and kept, together with what they may take away.
#pragma once

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "SqlOutline.h"
#include "Sqlite.h"

namespace mv::engine {

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
  static int authorize(void* self, int action, const char* first, const char* second, const char*, const char*);
  void record(int action, const std::string& first, const std::string& second);

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
  Prepared get(std::string_view sql, std::vector<SqlValue>& values);

 private:
  static constexpr char kShapeMark = '\0';  // no outline begins like this
  struct Entry {
    std::string key;
    std::shared_ptr<const SqlPattern> pattern;
    StatementPtr statement;
    Losses losses;
  };
  using Entries = std::list<Entry>;

  const Entry* find(std::string_view key);
  StatementPtr prepare(const SqlPattern& pattern);
  const Entry& add(const std::string& key, std::shared_ptr<const SqlPattern> pattern, StatementPtr statement);

  sqlite3* connection_;
  LossRecorder recorder_;
  SqlOutline outline_;
  Entries entries_;  // the last used one first
  std::unordered_map<std::string_view, Entries::iterator> byKey_;
};

}  // namespace mv::engine
