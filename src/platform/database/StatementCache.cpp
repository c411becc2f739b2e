#include "StatementCache.h"

#include <new>

namespace mv::engine {

namespace {

constexpr std::size_t kCachedStatements = 128;

}  // namespace

Invalidations InvalidationRecorder::take() {
  if (std::exchange(isIncomplete_, false)) throw std::bad_alloc();
  return std::exchange(invalidations_, {});
}

// No exception may pass through the engine.
int InvalidationRecorder::authorize(void* self, int action, const char* first, const char* second, const char*,
                                    const char*) noexcept {
  auto& recorder = *static_cast<InvalidationRecorder*>(self);
  try {
    recorder.record(action, first ? first : "", second ? second : "");
  } catch (const std::bad_alloc&) {
    recorder.isIncomplete_ = true;
  }
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

const Prepared& StatementCache::get(std::string_view shape) {
  if (const auto known = byShape_.find(shape); known != byShape_.end()) {
    entries_.splice(entries_.begin(), entries_, known->second);
    return entries_.front();
  }
  entries_.push_front(prepareShape(shape));
  byShape_.emplace(entries_.front().shape, entries_.begin());
  if (entries_.size() > kCachedStatements) {
    byShape_.erase(entries_.back().shape);
    entries_.pop_back();
  }
  return entries_.front();
}

const Prepared& StatementCache::get(const FixedStatement& statement) {
  const char* const place = statement.shape().data();
  for (const auto& [known, prepared] : fixed_)
    if (known == place) return prepared;
  return fixed_.emplace_back(place, prepareShape(statement.shape())).second;
}

Prepared StatementCache::prepareShape(std::string_view shape) {
  recorder_.take();
  auto translation = std::make_shared<const SqlTranslation>(translateShape(shape));
  StatementPtr statement = prepare(connection_, translation->sql, translation->name, SQLITE_PREPARE_PERSISTENT);
  if (!statement) throw DatabaseError(DatabaseError::kSyntaxError, "There is no statement.");
  Invalidations invalidations = recorder_.take();
  // The rows that INSERT OR REPLACE and UPDATE OR REPLACE delete do not reach the authorizer.
  if (translation->saysReplace) invalidations.emplace_back();
  return {std::string(shape), std::move(translation), std::move(statement), std::move(invalidations)};
}

}  // namespace mv::engine
