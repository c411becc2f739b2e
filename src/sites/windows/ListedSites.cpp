#include "ListedSites.h"

#include <algorithm>

namespace mv {

void ListedSites::keep(const SiteListRow& site) {
  const auto place = std::ranges::lower_bound(sites_, site.id, {}, &SiteListRow::id);
  if (place == sites_.end() || place->id != site.id)
    sites_.insert(place, site);
  else
    *place = site;
}

SiteListRow ListedSites::find(Id id) const {
  const auto found = std::ranges::lower_bound(sites_, id, {}, &SiteListRow::id);
  return found == sites_.end() || found->id != id ? SiteListRow() : *found;
}

}  // namespace mv
