#include "scan/ScanQueue.h"

#include <utility>
#include <vector>

#include "base/TimeBudget.h"
#include "scan/clsLinkParser.h"

namespace mv {

void ScanQueue::beginRound(Id siteId) {
  list_.clear();
  limits_ = loadScanLimits(siteId);
  pagesProcessed_ = 0;
}

void ScanQueue::build(Id siteId, const std::string& startPage) {
  WorkRow row;
  row.linkId = kStartPageLinkId;
  row.url = startPage;
  row.tagged = false;
  list_.append(std::move(row));
  rowsAdded_ = 1;
  waiting_.emplace(waitingPages(siteId));
}

bool ScanQueue::fill() {
  const TimeBudget budget;
  std::vector<WorkRow> rows;
  std::optional<LinkRow> link;
  while (hasRoom() && !budget.spent() && (link = waiting_->next())) {
    WorkRow& row = rows.emplace_back();
    row.linkId = link->id;
    row.url = link->url.restored();
    ++rowsAdded_;
  }
  list_.append(std::move(rows));
  if (hasRoom() && !waiting_->atEnd()) return false;
  waiting_.reset();
  return true;
}

void ScanQueue::store(clsLinkParser& parser) {
  if (parser.isKnown() || list_.holdsAddress(parser.URL)) return;
  parser.AddLinkToDatabase();
  if (!parser.Flag || parser.LinkType == kFileLink || !hasRoom()) return;
  WorkRow& row = stored_.emplace_back();
  row.linkId = parser.LinkID;
  row.url = parser.storedAddress();
  ++rowsAdded_;
}

void ScanQueue::keepStored() { list_.append(std::exchange(stored_, {})); }

void ScanQueue::takeBackStored() {
  rowsAdded_ -= static_cast<long>(stored_.size());
  stored_.clear();
}

void ScanQueue::takeUp(int index) {
  list_.setState(index, RowState::Working);
  ++pagesProcessed_;
}

void ScanQueue::finish(std::int64_t linkId, bool failed) {
  setState(linkId, failed ? RowState::Error : RowState::Done);
  markLinkDone(linkId);
}

void ScanQueue::giveUp(std::int64_t linkId) { setState(linkId, RowState::Error); }

void ScanQueue::putBack(std::int64_t linkId) {
  setState(linkId, RowState::Waiting);
  --pagesProcessed_;
}

void ScanQueue::setState(std::int64_t linkId, RowState state) {
  const int row = list_.findLink(linkId);
  if (row >= 0) list_.setState(row, state);
}

}  // namespace mv
