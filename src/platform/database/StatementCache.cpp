#include "StatementCache.h"

#include <algorithm>

#include "SqlDialect.h"

namespace mv::engine {

namespace {

constexpr std::size_t kCachedStatements = 128;

bool holdsWord(std::string_view text, std::string_view word) {
  const auto same = [](char a, char b) { return lowerSqlLetter(a) == b; };
  return std::search(text.begin(), text.end(), word.begin(), word.end(), same) != text.end();
}

}  // namespace

int LossRecorder::authorize(void* self, int action, const char* first, const char* second, const char*, const char*) {
  static_cast<LossRecorder*>(self)->record(action, first ? first : "", second ? second : "");
  return SQLITE_OK;
}

void LossRecorder::record(int action, const std::string& first, const std::string& second) {
  const bool transaction = action == SQLITE_TRANSACTION || action == SQLITE_SAVEPOINT;
  const bool change = action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE;
  if ((transaction && first == "ROLLBACK") || (change && first == "sqlite_master"))
    losses_.emplace_back();
  else if (action == SQLITE_DELETE)
    losses_.push_back(first);
  else if (action == SQLITE_UPDATE)
    losses_.push_back(first + '.' + second);
}

Prepared StatementCache::get(std::string_view sql, std::vector<SqlValue>& values) {
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

const StatementCache::Entry* StatementCache::find(std::string_view key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return nullptr;
  entries_.splice(entries_.begin(), entries_, found->second);
  return &entries_.front();
}

StatementPtr StatementCache::prepare(const SqlPattern& pattern) {
  recorder_.take();
  const SqlStatement& sql = pattern.statement();
  StatementPtr statement = engine::prepare(connection_, sql.shape, sql.name, SQLITE_PREPARE_PERSISTENT);
  if (!statement) throw DatabaseError(DatabaseError::kSyntaxError, "There is no statement.");
  return statement;
}

const StatementCache::Entry& StatementCache::add(const std::string& key, std::shared_ptr<const SqlPattern> pattern,
                                                 StatementPtr statement) {
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

}  // namespace mv::engine
