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
constexpr int kForever = -1;

double threadMs() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// When the condition is looked at.
enum class Look { EveryIteration, EveryFewMs };

bool run(const std::function<bool()>& condition, Look look, int milliseconds) {
  QElapsedTimer clock;
  clock.start();
  // What another thread brings about raises no event here: look again every few milliseconds.
  QTimer wake;
  bool due = true;
  QObject::connect(&wake, &QTimer::timeout, [&] { due = true; });
  wake.start(kWakeMs);
  while (!((due || look == Look::EveryIteration) && condition())) {
    if (clock.hasExpired(milliseconds)) return false;
    due = false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

}  // namespace

bool waitFor(const std::function<bool()>& condition, int milliseconds) {
  return run(condition, Look::EveryIteration, milliseconds);
}

void runUntil(const std::function<bool()>& condition) { run(condition, Look::EveryFewMs, kForever); }

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
