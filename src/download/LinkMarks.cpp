#include "LinkMarks.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <utility>

#include "app/Settings.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

constexpr std::ptrdiff_t kMostAtOnce = 256;  // links of one commit, which takes milliseconds
constexpr const char* kWaiting =
    "Handled files cannot be marked now. That is tried again until it succeeds: no file is lost or fetched twice.";

}  // namespace

LinkMarks::LinkMarks(Marked marked) : marked_(std::move(marked)), trouble_("frmDownload", kWaiting) {
  retry_.setSingleShot(true);
  QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] { mark(); });
}

void LinkMarks::add(std::int64_t linkId) { add(std::vector{linkId}); }

void LinkMarks::add(const std::vector<std::int64_t>& linkIds) {
  for (const std::int64_t linkId : linkIds)
    if (held_.insert(linkId).second) waiting_.push_back(linkId);
  if (!retry_.isActive()) mark();
}

void LinkMarks::mark() {
  if (waiting_.empty()) return;
  const std::vector<std::int64_t> links(waiting_.begin(),
                                        waiting_.begin() + std::min(std::ssize(waiting_), kMostAtOnce));
  try {
    CommitGroup withoutPatience(gDatabase);
    markLinksDone(links);
    withoutPatience.commit();
  } catch (const std::exception&) {
    retry_.start(trouble_.failed());
    return;
  }
  trouble_.passed();
  if (waiting_.size() > links.size()) retry_.start(0);
  tell(links);
}

void LinkMarks::tell(const std::vector<std::int64_t>& linkIds) {
  waiting_.erase(waiting_.begin(), waiting_.begin() + std::ssize(linkIds));
  for (const std::int64_t linkId : linkIds) held_.erase(linkId);
  marked_(linkIds);
}

void LinkMarks::finish() {
  retry_.stop();
  trouble_.passed();
  if (waiting_.empty()) return;
  try {
    const std::vector<std::int64_t> links(waiting_.begin(), waiting_.end());
    markLinksDone(links);
    tell(links);
  } catch (const std::exception&) {
    // They are found again at the next start.
    waiting_.clear();
    held_.clear();
  }
}

}  // namespace mv
