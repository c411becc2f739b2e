#include "store/LinkCleaner.h"

#include <QMetaObject>

#include "app/EndProgram.h"
#include "app/ReportError.h"
#include "database/Database.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

// At ten million rows this many deletions stay below ten milliseconds.
constexpr int kRowsAtOnce = 1000;

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
  const Work now = work_.front();
  std::int64_t deleted = 0;
  try {
    deleted = now.siteId ? deleteLinks(*now.siteId, now.lastLink, kRowsAtOnce)
                         : deleteOrphanedLinks(now.lastLink, kRowsAtOnce);
  } catch (const DatabaseError&) {
    work_.pop_front();
    throw;
  }
  if (deleted < kRowsAtOnce) work_.pop_front();
}

void LinkCleaner::goOn() {
  if (scheduled_ || work_.empty()) return;
  scheduled_ = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        scheduled_ = false;
        guarded("LinkCleaner", [this] {
          if (!work_.empty()) deleteSome();
        });
        goOn();
      },
      Qt::QueuedConnection);
}

void finishClearing() {
  guarded("LinkCleaner", [] { LinkCleaner::instance().finish(); });
}

void clearAndEndProgram() {
  finishClearing();
  endProgramNow();
}

}  // namespace mv
