// How long a thread keeps its events waiting.
#pragma once

#include <QTimer>
#include <algorithm>
#include <ctime>

namespace mvtest {

// While it lives: the most processor time of this thread between two turns of its event loop, in milliseconds.
class LongestTurn : public QTimer {
 public:
  LongestTurn() {
    connect(this, &QTimer::timeout, this, [this] {
      const double now = threadMs();
      longest = std::max(longest, now - last_);
      last_ = now;
    });
    start(0);
  }
  double longest = 0;

 private:
  static double threadMs() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  }
  double last_ = threadMs();
};

}  // namespace mvtest
