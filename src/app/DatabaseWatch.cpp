#include "app/DatabaseWatch.h"

#include "app/Settings.h"

namespace mv {

namespace {

constexpr int kLookInterval = 1000;  // milliseconds
// A network folder may be away for a moment.
constexpr int kLooksUntilLost = 3;

}  // namespace

DatabaseWatch::DatabaseWatch() {
  connect(&timer_, &QTimer::timeout, this, &DatabaseWatch::look);
  timer_.start(kLookInterval);
}

void DatabaseWatch::look() {
  missed_ = gDatabase.hasMoved() ? missed_ + 1 : 0;
  if (missed_ < kLooksUntilLost) return;
  timer_.stop();
  Q_EMIT lost();
}

}  // namespace mv
