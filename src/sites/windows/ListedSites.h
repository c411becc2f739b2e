// The web sites that the list shows, as they are stored: its rows hide the passwords of addresses.
#pragma once

#include <utility>
#include <vector>

#include "store/SiteStore.h"

namespace mv {

class ListedSites {
 public:
  // In place of those that there are; in the order of their ids.
  void replace(std::vector<SiteListRow> sites) { sites_ = std::move(sites); }
  // In place of the one with its id, if there is one.
  void keep(const SiteListRow& site);
  // One without an id when there is none.
  SiteListRow find(Id id) const;
  const std::vector<SiteListRow>& all() const { return sites_; }

 private:
  std::vector<SiteListRow> sites_;
};

}  // namespace mv
