#include "store/LinkCleaner.h"

#include <algorithm>

#include "app/EndProgram.h"
#include "app/ReportError.h"
#include "base/TimeBudget.h"
#include "base/Turns.h"
#include "database/Database.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

constexpr int kRowsAtOnce = 100;
constexpr int kTableAtOnce = 10'000;  // rows that all go by one statement
constexpr int kMostAtOnce = 10;       // times as many in one turn

}  // namespace

LinkCleaner& LinkCleaner::instance() {
  static LinkCleaner cleaner;
  return cleaner;
}

void LinkCleaner::clear(Id siteId) { add({.of = Of::OneSite, .siteId = siteId, .lastLink = newestLink()}); }

void LinkCleaner::clearAll() {
  const Work all{.of = Of::AllSites, .firstLink = oldestLink(), .lastLink = newestLink()};
  if (all.lastLink - all.firstLink < kTableAtOnce)
    deleteAllLinks();
  else
    add(all);
}

void LinkCleaner::resume() { add({.of = Of::GoneSites, .lastLink = newestLink()}); }

void LinkCleaner::add(const Work& work) {
  const bool first = work_.empty();
  if (first) deleted_ = 0, hasFailed_ = false;
  work_.push_back(work);
  if (first) deleteSome();
  goOn();
}

void LinkCleaner::finish() {
  while (!work_.empty()) deleteSome();
}

int LinkCleaner::percent() const {
  if (work_.empty() || work_.front().of != Of::AllSites) return -1;
  const Work& now = work_.front();
  return static_cast<int>(std::min<std::int64_t>(100 * deleted_ / (now.lastLink - now.firstLink + 1), 100));
}

void LinkCleaner::deleteSome() {
  const TimeBudget budget;
  for (int i = 0; i < kMostAtOnce && (i == 0 || !budget.spent()); ++i)
    if (!deleteNext()) return;
}

std::int64_t LinkCleaner::deleteFew(const Work& work) {
  switch (work.of) {
    case Of::OneSite:
      return deleteLinks(work.siteId, work.lastLink, kRowsAtOnce);
    case Of::GoneSites:
      return deleteOrphanedLinks(work.lastLink, kRowsAtOnce);
    case Of::AllSites:
      return deleteOldestLinks(work.lastLink, kRowsAtOnce);
  }
  return 0;
}

bool LinkCleaner::deleteNext() {
  std::int64_t deleted = 0;
  try {
    deleted = deleteFew(work_.front());
    deleted_ += deleted;
  } catch (const DatabaseError&) {
    work_.pop_front();
    hasFailed_ = true;
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
