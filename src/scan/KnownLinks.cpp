#include "scan/KnownLinks.h"

#include <utility>

#include "app/Settings.h"
#include "database/Database.h"

namespace mv {

void KnownLinks::refresh() {
  std::int64_t count = -1;
  try {
    count = gDatabase.invalidationCount("link", "url");
  } catch (const DatabaseError&) {
    // Whoever reads or writes next will tell.
  }
  if (count >= 0 && count == invalidations_) return;
  invalidations_ = count;
  newer_.clear();
  older_.clear();
}

bool KnownLinks::contains(const std::string& url) {
  if (newer_.contains(url)) return true;
  if (!older_.contains(url)) return false;
  add(url);
  return true;
}

void KnownLinks::add(const std::string& url) {
  if (newer_.size() == kGeneration) {
    older_ = std::exchange(newer_, {});
  }
  newer_.insert(url);
}

}  // namespace mv
