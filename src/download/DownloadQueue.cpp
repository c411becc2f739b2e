#include "DownloadQueue.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "net/Address.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

WorkRow workRow(LinkRow link) {
  WorkRow row;
  row.linkId = link.id;
  row.userName = std::move(link.userName);
  row.password = std::move(link.password);
  row.fileName = lastSegment(link.url.restored());
  row.fileType = std::move(link.fileType);
  row.url = std::move(link.url);
  return row;
}

}  // namespace

void DownloadQueue::clear(const Test& keep) {
  taken_ = 0;
  std::vector<WorkRow> kept;
  for (int i = 0; i < list_.count(); ++i)
    if (keep(list_.row(i).linkId)) kept.push_back(list_.row(i));
  if (std::ssize(kept) == list_.count()) return;
  list_.clear();
  list_.append(std::move(kept));
}

long DownloadQueue::build(Id siteId, std::int64_t most, const Test& passOver) {
  LinkRows links = unfinishedFiles(siteId);
  std::vector<WorkRow> rows;
  for (std::int64_t passed = 0; std::ssize(rows) < std::min(most, left()) && passed < most;) {
    std::optional<LinkRow> link = links.next();
    if (!link) break;
    if (passOver(link->id))
      ++passed;
    else
      rows.push_back(workRow(std::move(*link)));
  }
  isCut_ = !links.atEnd();
  const auto count = static_cast<long>(rows.size());
  list_.append(std::move(rows));
  return count;
}

WaitingRows DownloadQueue::waiting() const { return {list_.waitingCount(), isCut_ || list_.count() > 0}; }

void DownloadQueue::takeUp(int index) {
  list_.setState(index, RowState::Working);
  ++taken_;
}

bool DownloadQueue::settle(std::int64_t linkId, RowState outcome) {
  const int row = list_.findLink(linkId);
  if (row >= 0) list_.setState(row, outcome);
  return row >= 0;
}

void DownloadQueue::fileIsAt(std::int64_t linkId, const std::string& path) {
  if (const int row = list_.findLink(linkId); row >= 0) list_.setSavedPath(row, path);
}

}  // namespace mv
