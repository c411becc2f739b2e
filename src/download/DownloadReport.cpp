#include "DownloadReport.h"

namespace mv {

void DownloadReport::showReceived(std::int64_t bytes, std::int64_t whole) {
  show(status_.received, bytes);
  show(status_.left, whole - bytes);
}

void DownloadReport::showQueue(const DownloadQueue& queue) {
  show(status_.queue, queue.left());
  show(status_.processed, queue.taken());
  show(status_.waiting, queue.waiting());
}

void DownloadReport::refused(const std::string& name, SizeStatus why) {
  using Verdict = SizeStatus::Verdict;
  const Verdict verdict = why.verdict;
  showSize(std::move(why));
  if (verdict == Verdict::Unknown) count(status_.counts.unknownSize);
  if (verdict == Verdict::TooSmall) {
    count(status_.counts.tooSmall);
    showFile(name, FileStatus::Note::TooSmall);
  }
  if (verdict == Verdict::TooBig) {
    count(status_.counts.tooBig);
    showFile(name, FileStatus::Note::TooBig);
  }
}

void DownloadReport::saved(std::int64_t bytes) {
  count(status_.counts.saved);
  status_.counts.bytes += bytes;
}

}  // namespace mv
