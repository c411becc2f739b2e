#include "store/LinkCleaner.h"

#include <QMetaObject>

#include "app/EndProgram.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

// At ten million rows this many deletions stay below ten milliseconds.
constexpr int kRowsAtOnce = 1000;

bool siteIsThere(Id siteId) {
  return gDatabase.count("select count(*) as outCount from site where id = " + number(siteId)) > 0;
}

}  // namespace

LinkCleaner& LinkCleaner::instance() {
  static LinkCleaner cleaner;
  return cleaner;
}

void LinkCleaner::clear(Id siteId) {
  const std::int64_t newest = newestLink();
  const bool first = work_.empty();
  work_.push_back({siteId, newest});
  if (first) deleteSome();
  goOn();
}

void LinkCleaner::resume() {
  // From one site's links to the next one's by the index: as quick as there are few sites.
  for (std::optional<Id> site = nextSiteWithLinks(-1); site; site = nextSiteWithLinks(*site))
    if (!siteIsThere(*site)) clear(*site);
}

void LinkCleaner::finish() {
  while (!work_.empty()) deleteSome();
}

void LinkCleaner::deleteSome() {
  const Work now = work_.front();
  std::int64_t deleted = 0;
  try {
    deleted = deleteLinks(now.siteId, now.lastLink, kRowsAtOnce);
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
