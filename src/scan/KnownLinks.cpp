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

bool KnownLinks::contains(std::string_view link) {
  if (newer_.contains(link)) return true;
  const auto found = older_.find(link);
  if (found == older_.end()) return false;
  add(std::move(older_.extract(found).value()));
  return true;
}

void KnownLinks::add(std::string link) {
  if (newer_.size() == kGeneration) older_ = std::exchange(newer_, {});
  newer_.insert(std::move(link));
}

}  // namespace mv
