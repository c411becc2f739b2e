// The pages of one round of a scan: the start page, the stored ones that wait, and those found on the way. A round
// takes so many pages as the site's limit allows.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "process/WorkList.h"
#include "store/Id.h"
#include "store/LinkStore.h"
#include "store/ProcessData.h"

namespace mv {

class clsLinkParser;

class ScanQueue {
 public:
  static constexpr long kLimit = 10000;                // rows
  static constexpr std::int64_t kStartPageLinkId = 1;  // the sequence of link ids begins behind it

  // The queue is `list`, which outlives it.
  explicit ScanQueue(WorkList& list) : list_(list) {}

  // A new round: empties the list and reads the site's limits. Raises DatabaseError.
  void beginRound(Id siteId);
  // Adds the start page and asks for the links that wait. Raises DatabaseError.
  void build(Id siteId, const std::string& startPage);
  // Adds waiting links until the time budget is spent. True when the queue is complete. Raises DatabaseError.
  bool fill();
  // Between build() and the last fill().
  bool isFilling() const { return waiting_.has_value(); }
  void stopFilling() { waiting_.reset(); }

  // Has the link that `parser` has resolved stored, unless a row bears its address, and queues it when it is a page, is
  // new, and has room: its row comes with keepStored(). What AddLinkToDatabase raises is raised.
  void store(clsLinkParser& parser);
  // What was stored since the last of these calls is there to stay, or has been taken back.
  void keepStored();
  void takeBackStored();

  // Row `index` is fetched now.
  void takeUp(int index);
  // The page is worked through, or its request has failed. Raises DatabaseError; may be called again then.
  void finish(std::int64_t linkId, bool failed);
  // The page's links are not all stored: it waits for the next round.
  void giveUp(std::int64_t linkId);
  // The page is fetched once more.
  void putBack(std::int64_t linkId);

  bool alternateMatchpath() const { return limits_.alternateMatchpath; }
  // The round takes no further page up.
  bool isFull() const { return !hasRoom(); }
  long rowsAdded() const { return rowsAdded_; }
  long pagesLeft() const { return static_cast<long>(limits_.pagesToScan) - pagesProcessed_; }
  long pagesProcessed() const { return pagesProcessed_; }

 private:
  bool hasRoom() const { return rowsAdded_ < kLimit && rowsAdded_ < pagesLeft(); }
  void setState(std::int64_t linkId, RowState state);

  WorkList& list_;
  ScanLimits limits_;
  std::optional<LinkRows> waiting_;
  std::vector<WorkRow> stored_;  // not certain yet
  long rowsAdded_ = 0;           // in this round, those included
  long pagesProcessed_ = 0;
};

}  // namespace mv
