#include "store/LinkCleaner.h"

#include <QMetaObject>

#include "app/EndProgram.h"
#include "app/ReportError.h"
#include "app/Settings.h"

namespace mv {

namespace {

// At ten million rows this many deletions stay below ten milliseconds.
constexpr int kRowsAtOnce = 1000;

}  // namespace

LinkCleaner& LinkCleaner::instance() {
  static LinkCleaner cleaner;
  return cleaner;
}

void LinkCleaner::clear(std::int32_t siteId) {
  const std::int64_t newest = gDatabase.query("select max(id) as newest from link").number("newest");
  const bool first = work_.empty();
  work_.push_back({siteId, newest});
  if (first) deleteSome();
  goOn();
}

void LinkCleaner::resume() {
  // From one site's links to the next one's by the index: as quick as there are few sites.
  std::int64_t last = -1;
  while (true) {
    const Recordset next = gDatabase.query("select min(site_id) as next from link where site_id > " + number(last));
    if (next.isNull("next")) return;
    last = next.number("next");
    if (gDatabase.count("select count(*) as outCount from site where id = " + number(last)) == 0)
      clear(static_cast<std::int32_t>(last));
  }
}

void LinkCleaner::finish() {
  while (!work_.empty()) deleteSome();
}

void LinkCleaner::deleteSome() {
  const Work now = work_.front();
  try {
    gDatabase.execute("delete from link where id in (select id from link where site_id = " + number(now.siteId) +
                      " and id <= " + number(now.lastLink) + " limit " + number(kRowsAtOnce) + ")");
  } catch (const DatabaseError&) {
    work_.pop_front();
    throw;
  }
  if (gDatabase.rowsAffected() < kRowsAtOnce) work_.pop_front();
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
