#include "store/LinkCleaner.h"

#include "app/EndProgram.h"
#include "app/ReportError.h"
#include "base/TimeBudget.h"
#include "base/Turns.h"
#include "database/Database.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

constexpr int kRowsAtOnce = 100;
constexpr int kMostAtOnce = 10;  // times as many in one turn

}  // namespace

LinkCleaner& LinkCleaner::instance() {
  static LinkCleaner cleaner;
  return cleaner;
}

void LinkCleaner::clear(Id siteId) { add(siteId); }

void LinkCleaner::resume() { add(std::nullopt); }

void LinkCleaner::add(std::optional<Id> siteId) {
  const std::int64_t newest = newestLink();
  const bool first = work_.empty();
  work_.push_back({siteId, newest});
  if (first) deleteSome();
  goOn();
}

void LinkCleaner::finish() {
  while (!work_.empty()) deleteSome();
}

void LinkCleaner::deleteSome() {
  const TimeBudget budget;
  for (int i = 0; i < kMostAtOnce && (i == 0 || !budget.spent()); ++i)
    if (!deleteNext()) return;
}

bool LinkCleaner::deleteNext() {
  const Work now = work_.front();
  std::int64_t deleted = 0;
  try {
    deleted = now.siteId ? deleteLinks(*now.siteId, now.lastLink, kRowsAtOnce)
                         : deleteOrphanedLinks(now.lastLink, kRowsAtOnce);
  } catch (const DatabaseError&) {
    work_.pop_front();
    throw;
  }
  if (deleted == kRowsAtOnce) return true;
  work_.pop_front();
  return false;
}

void LinkCleaner::goOn() {
  if (scheduled_ || work_.empty()) return;
  scheduled_ = true;
  takeTurn(this, [this] {
    scheduled_ = false;
    guarded("LinkCleaner", [this] {
      if (!work_.empty()) deleteSome();
    });
    goOn();
  });
}

void finishClearing() {
  guarded("LinkCleaner", [] { LinkCleaner::instance().finish(); });
}

void clearAndEndProgram() {
  finishClearing();
  endProgramNow();
}

}  // namespace mv
