#include "StatementCache.h"

namespace mv::engine {

namespace {

constexpr std::size_t kCachedStatements = 128;

}  // namespace

int InvalidationRecorder::authorize(void* self, int action, const char* first, const char* second, const char*,
                                    const char*) {
  static_cast<InvalidationRecorder*>(self)->record(action, first ? first : "", second ? second : "");
  return SQLITE_OK;
}

void InvalidationRecorder::record(int action, const std::string& first, const std::string& second) {
  const bool transaction = action == SQLITE_TRANSACTION || action == SQLITE_SAVEPOINT;
  const bool change = action == SQLITE_INSERT || action == SQLITE_UPDATE || action == SQLITE_DELETE;
  if ((transaction && first == "ROLLBACK") || (change && first == "sqlite_master"))
    invalidations_.emplace_back();
  else if (action == SQLITE_DELETE)
    invalidations_.push_back(first);
  else if (action == SQLITE_UPDATE)
    invalidations_.push_back(first + '.' + second);
}

Prepared StatementCache::get(const std::string& shape) {
  if (const auto known = byShape_.find(shape); known != byShape_.end())
    entries_.splice(entries_.begin(), entries_, known->second);
  else
    add(shape);
  const Entry& entry = entries_.front();
  return {entry.translation, entry.statement.get(), &entry.invalidations};
}

void StatementCache::add(const std::string& shape) {
  recorder_.take();
  auto translation = std::make_shared<const SqlTranslation>(translateShape(shape));
  StatementPtr statement = prepare(connection_, translation->sql, translation->name, SQLITE_PREPARE_PERSISTENT);
  if (!statement) throw DatabaseError(DatabaseError::kSyntaxError, "There is no statement.");
  Invalidations invalidations = recorder_.take();
  // The rows that INSERT OR REPLACE and UPDATE OR REPLACE delete do not reach the authorizer.
  if (translation->saysReplace) invalidations.emplace_back();
  entries_.push_front({shape, std::move(translation), std::move(statement), std::move(invalidations)});
  byShape_.emplace(entries_.front().shape, entries_.begin());
  if (entries_.size() <= kCachedStatements) return;
  byShape_.erase(entries_.back().shape);
  entries_.pop_back();
}

}  // namespace mv::engine
