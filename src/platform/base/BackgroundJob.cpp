#include "base/BackgroundJob.h"

#include <csignal>
#include <utility>

namespace mv {

namespace {

// While it lives, threads begin with all signals blocked: those of the program are for its main thread.
class SignalsBlocked {
 public:
  SignalsBlocked() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  SignalsBlocked(const SignalsBlocked&) = delete;
  SignalsBlocked& operator=(const SignalsBlocked&) = delete;

 private:
  sigset_t before_;
};

}  // namespace

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
  const SignalsBlocked blocked;
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
