// Keeps the status of a download process: what is shown of the file taken up, and what has been counted.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "DownloadQueue.h"
#include "download/DownloadStatus.h"

namespace mv {

class DownloadReport {
 public:
  // `changed` is called for every value that is another one.
  explicit DownloadReport(std::function<void()> changed) : changed_(std::move(changed)) {}

  const DownloadStatus& status() const { return status_; }

  void showNoFile() { show(status_.file, FileStatus()); }
  void showFile(const std::string& name, FileStatus::Note note) { show(status_.file, FileStatus{name, note}); }
  void showSavePath(const std::string& folder) { show(status_.savePath, folder); }
  void showSize(SizeStatus size) { show(status_.size, std::move(size)); }
  // `bytes` have come of a file of `whole`.
  void showReceived(std::int64_t bytes, std::int64_t whole);
  void showQueue(const DownloadQueue& queue);

  // The file is not wanted by its size.
  void refused(const std::string& name, SizeStatus why);
  // It was there already.
  void existing() { count(status_.counts.existing); }
  void saved(std::int64_t bytes);

 private:
  template <class T>
  void show(T& part, std::type_identity_t<T> value) {
    if (part == value) return;
    part = std::move(value);
    changed_();
  }
  void count(long& outcome) { show(outcome, outcome + 1); }

  std::function<void()> changed_;
  DownloadStatus status_;
};

}  // namespace mv
