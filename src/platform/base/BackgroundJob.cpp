#include "base/BackgroundJob.h"

#include <QScopeGuard>
#include <csignal>
#include <utility>

namespace mv {

BackgroundJob::BackgroundJob(std::function<void()> job) : job_(std::move(job)) {}

BackgroundJob::~BackgroundJob() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_one();
  thread_.join();
}

void BackgroundJob::request() {
  {
    const std::lock_guard lock(mutex_);
    requested_ = true;
  }
  changed_.notify_one();
  if (thread_.joinable()) return;
  // A thread begins with the signal mask of its maker: the program's signals are for its main thread.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const auto restored = qScopeGuard([&before] { pthread_sigmask(SIG_SETMASK, &before, nullptr); });
  thread_ = std::thread([this] { work(); });
}

void BackgroundJob::work() {
  std::unique_lock lock(mutex_);
  while (true) {
    changed_.wait(lock, [this] { return requested_ || ending_; });
    if (ending_) return;
    requested_ = false;
    lock.unlock();
    job_();
    lock.lock();
  }
}

}  // namespace mv
