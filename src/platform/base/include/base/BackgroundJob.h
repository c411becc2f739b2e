// One piece of housekeeping that is done again and again on a thread of its own, so that nobody waits for the disk.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace mv {

class BackgroundJob {
 public:
  // `job` runs on the thread; it must not throw and shares nothing with the caller that is not guarded.
  explicit BackgroundJob(std::function<void()> job);
  // Waits for a running job; one that was only requested is not begun.
  ~BackgroundJob();
  BackgroundJob(const BackgroundJob&) = delete;
  BackgroundJob& operator=(const BackgroundJob&) = delete;

  // Has the job done once more. Requests that come while it runs are one. The first one starts the thread.
  void request();

 private:
  void work();

  std::function<void()> job_;
  std::mutex mutex_;
  std::condition_variable changed_;
  bool requested_ = false;
  bool ending_ = false;
  std::thread thread_;
};

}  // namespace mv
