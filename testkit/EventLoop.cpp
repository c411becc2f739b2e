#include "testkit/EventLoop.h"

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <ctime>

namespace mvtest {

namespace {

constexpr int kWakeMs = 5;

double threadMs() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

}  // namespace

bool waitFor(const std::function<bool()>& condition, int milliseconds) {
  QElapsedTimer clock;
  clock.start();
  // What another thread brings about raises no event here: look again every few milliseconds.
  QTimer wake;
  wake.start(kWakeMs);
  while (!condition()) {
    if (clock.hasExpired(milliseconds)) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

// The loop that the program runs in, and nothing beside it that would be counted as the program's.
void runUntil(const std::function<bool()>& condition) {
  if (condition()) return;
  QEventLoop loop;
  QTimer wake;
  QObject::connect(&wake, &QTimer::timeout, &loop, [&] {
    if (condition()) loop.quit();
  });
  wake.start(kWakeMs);
  loop.exec();
}

LoopMeter::LoopMeter() : last_(threadMs()) {
  connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this, [this] { next(); });
}

void LoopMeter::next() {
  const double now = threadMs();
  longest = std::max(longest, now - last_);
  last_ = now;
  ++iterations;
}

}  // namespace mvtest
