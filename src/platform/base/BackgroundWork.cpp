#include "base/BackgroundWork.h"

#include <QMetaObject>
#include <QObject>
#include <QScopeGuard>
#include <QThreadPool>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <mutex>

namespace mv {

// What the owner shares with the threads, which may outlive it.
struct BackgroundWork::Shared {
  std::mutex mutex;  // guards the others
  std::condition_variable ended;
  int running = 0;
  std::int64_t last = 0;  // the newest work's number; higher when it was abandoned
  QObject* receiver = nullptr;

  bool isLast(std::int64_t number) {
    const std::lock_guard lock(mutex);
    return number == last;
  }

  static void work(const std::shared_ptr<Shared>& shared, std::int64_t number, const std::function<void()>& work,
                   std::function<void()> done) {
    if (shared->isLast(number)) work();
    const std::lock_guard lock(shared->mutex);
    --shared->running;
    shared->ended.notify_all();
    if (number != shared->last || !done) return;
    QMetaObject::invokeMethod(
        shared->receiver,
        [shared, number, done = std::move(done)] {
          if (shared->isLast(number)) done();
        },
        Qt::QueuedConnection);
  }
};

BackgroundWork::BackgroundWork() : receiver_(std::make_unique<QObject>()), shared_(std::make_shared<Shared>()) {
  shared_->receiver = receiver_.get();
}

BackgroundWork::~BackgroundWork() { abandon(); }

void BackgroundWork::run(std::function<void()> work, std::function<void()> done) {
  std::int64_t number = 0;
  {
    const std::lock_guard lock(shared_->mutex);
    ++shared_->running;
    number = ++shared_->last;
  }
  // The program's signals are for its main thread: others begin with all of them blocked.
  sigset_t all, before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  const auto restore = qScopeGuard([&before] { pthread_sigmask(SIG_SETMASK, &before, nullptr); });
  // Without memory it does not begin, and nobody may wait for its end.
  auto neverBegun = qScopeGuard([this] {
    const std::lock_guard lock(shared_->mutex);
    --shared_->running;
  });
  QThreadPool::globalInstance()->start([shared = shared_, number, work = std::move(work), done = std::move(done)] {
    // Long work does not count against the number of the pool's threads, so that nothing waits for its end.
    QThreadPool::globalInstance()->releaseThread();
    const auto counted = qScopeGuard([] { QThreadPool::globalInstance()->reserveThread(); });
    Shared::work(shared, number, work, done);
  });
  neverBegun.dismiss();
}

void BackgroundWork::abandon() {
  const std::lock_guard lock(shared_->mutex);
  ++shared_->last;
}

bool BackgroundWork::wait(int milliseconds) {
  std::unique_lock lock(shared_->mutex);
  const auto none = [this] { return shared_->running == 0; };
  if (milliseconds >= 0) return shared_->ended.wait_for(lock, std::chrono::milliseconds(milliseconds), none);
  shared_->ended.wait(lock, none);
  return true;
}

}  // namespace mv
