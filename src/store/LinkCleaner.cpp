#include "store/LinkCleaner.h"

#include <QTimer>
#include <algorithm>

#include "app/EndProgram.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/TimeBudget.h"
#include "base/Turns.h"
#include "database/Database.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

constexpr int kRowsAtOnce = 100;
constexpr std::uint64_t kTableAtOnce = 10'000;  // rows that all go by one statement
constexpr int kMostAtOnce = 10;                 // times as many in one turn
constexpr const char* kSource = "LinkCleaner";
constexpr const char* kWaiting = "Links cannot be deleted now. The clearing waits, and goes on by itself.";

}  // namespace

LinkCleaner::LinkCleaner() : trouble_(kSource, kWaiting) {}

LinkCleaner& LinkCleaner::instance() {
  static LinkCleaner cleaner;
  return cleaner;
}

void LinkCleaner::clear(Id siteId) { add({.of = Of::OneSite, .siteId = siteId, .lastLink = newestLink()}); }

void LinkCleaner::clearAll() {
  const Work all{.of = Of::AllSites, .firstLink = oldestLink(), .lastLink = newestLink()};
  if (all.span() < kTableAtOnce)
    deleteAllLinks();
  else
    add(all);
}

void LinkCleaner::resume() { add({.of = Of::GoneSites, .lastLink = newestLink()}); }

void LinkCleaner::add(const Work& work) {
  const bool first = work_.empty();
  if (first) deleted_ = 0, hasFailed_ = false;
  work_.push_back(work);
  if (first) deleteOrDrop();
  goOn();
}

void LinkCleaner::finish() {
  while (!work_.empty()) deleteOrDrop();
}

int LinkCleaner::percent() const {
  if (work_.empty() || work_.front().of != Of::AllSites) return -1;
  const Work& now = work_.front();
  return static_cast<int>(std::min(100 * static_cast<double>(deleted_) / (static_cast<double>(now.span()) + 1), 100.0));
}

void LinkCleaner::deleteOrDrop() {
  try {
    deleteSome(Locks::Awaited);
  } catch (const DatabaseError&) {
    drop();
    throw;
  }
}

void LinkCleaner::drop() {
  work_.pop_front();
  hasFailed_ = true;
}

void LinkCleaner::deleteSome(Locks locks) {
  const TimeBudget budget;
  for (int i = 0; i < kMostAtOnce && (i == 0 || !budget.spent()); ++i)
    if (!deleteNext(locks)) return;
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

std::int64_t LinkCleaner::deleteFewAtOnce(const Work& work) {
  CommitGroup withoutPatience(gDatabase);
  const std::int64_t deleted = deleteFew(work);
  withoutPatience.commit();
  return deleted;
}

bool LinkCleaner::deleteNext(Locks locks) {
  const Work& work = work_.front();
  const std::int64_t deleted = locks == Locks::Awaited ? deleteFew(work) : deleteFewAtOnce(work);
  deleted_ += deleted;
  if (deleted == kRowsAtOnce) return true;
  work_.pop_front();
  return false;
}

void LinkCleaner::goOn() {
  if (scheduled_ || work_.empty()) return;
  scheduled_ = true;
  takeTurn(this, [this] { takePiece(); });
}

void LinkCleaner::takePiece() {
  scheduled_ = false;
  try {
    if (!work_.empty()) deleteSome(Locks::NotAwaited);
    trouble_.passed();
  } catch (const std::exception& error) {
    if (StoreTrouble::mayPass(error)) {
      scheduled_ = true;
      QTimer::singleShot(trouble_.failed(), this, [this] { takePiece(); });
      return;
    }
    drop();
    reportException(error, kSource);
  }
  goOn();
}

void finishClearing() {
  guarded(kSource, [] { LinkCleaner::instance().finish(); });
}

void clearAndEndProgram() {
  finishClearing();
  endProgramNow();
}

}  // namespace mv
