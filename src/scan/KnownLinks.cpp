#include "scan/KnownLinks.h"

#include <utility>

#include "store/LinkStore.h"

namespace mv {

void KnownLinks::refresh() {
  const std::optional<std::int64_t> mark = linkLossMark();
  if (mark && mark == mark_) return;
  mark_ = mark;
  newer_.clear();
  older_.clear();
}

bool KnownLinks::contains(const EscapedAddress& url) {
  if (newer_.contains(url)) return true;
  if (!older_.contains(url)) return false;
  add(url);
  return true;
}

void KnownLinks::add(const EscapedAddress& url) {
  if (newer_.size() == kGeneration) {
    older_ = std::exchange(newer_, {});
  }
  newer_.insert(url);
}

}  // namespace mv
