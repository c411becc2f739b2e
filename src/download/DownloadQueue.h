// The work list of a download process: which files of a site it takes up, in rounds of the site's queue size.
#pragma once

#include <cstdint>
#include <functional>

#include "process/WaitingRows.h"
#include "process/WorkList.h"
#include "store/Id.h"
#include "store/ProcessData.h"

namespace mv {

class DownloadQueue {
 public:
  using Test = std::function<bool(std::int64_t linkId)>;

  explicit DownloadQueue(WorkList& list) : list_(list) {}

  // The site's limits as they are now. Raises DatabaseError.
  void loadLimits(Id siteId) { limits_ = loadDownloadLimits(siteId); }
  const DownloadLimits& limits() const { return limits_; }

  // Ends the round: empties the list but for the rows that are to be kept.
  void clear(const Test& keep);
  // Appends the files that nobody has handled, up to `most` and what the round may still take up; not those that are
  // passed over, and when there are `most` of those, no further ones. How many they are. Raises DatabaseError.
  long build(Id siteId, std::int64_t most, const Test& passOver);
  // Row `index` is being worked on.
  void takeUp(int index);
  // What became of a file, where its row is still listed. False when it is not.
  bool settle(std::int64_t linkId, RowState outcome);
  // The same: the file is at `path`.
  void fileIsAt(std::int64_t linkId, const std::string& path);

  // Until the list is built anew nobody knows what the scan has added.
  WaitingRows waiting() const;

  // Files that this round may still take up, and has taken up.
  std::int64_t left() const { return limits_.queueSize - taken_; }
  std::int64_t taken() const { return taken_; }

 private:
  WorkList& list_;
  DownloadLimits limits_;
  std::int64_t taken_ = 0;
  bool isCut_ = false;  // the last build() has left files out
};

}  // namespace mv
