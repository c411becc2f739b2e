#include "windows/Totals.h"

#include "LoadedWindows.h"
#include "windows/ChildWindow.h"

namespace mv {

namespace {

Totals& ended() {
  static Totals totals;
  return totals;
}

}  // namespace

Totals& Totals::operator+=(const Totals& other) {
  sites += other.sites;
  waiting += other.waiting;
  moreWait = moreWait || other.moreWait;
  saved += other.saved;
  failed += other.failed;
  bytes += other.bytes;
  return *this;
}

Totals allTotals() {
  Totals all = ended();
  for (const ChildWindow* window : loadedWindows())
    if (const auto* counted = dynamic_cast<const Counted*>(window)) all += counted->totals();
  return all;
}

void keepTotals(const Totals& totals) {
  Totals left = totals;
  left.sites = left.waiting = 0;
  left.moreWait = false;
  ended() += left;
}

}  // namespace mv
