// The scan and the download window of each site: opened, brought to the front, ended.
#pragma once

#include <cstddef>
#include <set>

#include "store/SiteStore.h"

namespace mv {

class SiteProcesses {
 public:
  // A site at work takes no further connection.
  bool mayStart(Id siteId, long most) const;

  // Of a site that is at work already the windows are brought to the front; one of them that was ended by itself is
  // opened anew. A message box of the scan may run while it starts. Raise DatabaseError.
  static void startScan(const SiteListRow& site);
  // Behind startScan(). The site counts as at work from now on.
  void startDownload(const SiteListRow& site);

  void end(const SiteListRow& site);
  // Of a site that is gone, though a rebuild has shown it off.
  void endOwn(Id siteId);
  void forget(Id siteId) { running_.erase(siteId); }

 private:
  std::set<Id> running_;  // started, and not ended through here
};

}  // namespace mv
