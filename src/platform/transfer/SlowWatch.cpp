#include "SlowWatch.h"

#include <algorithm>

namespace mv {

SlowWatch::SlowWatch(long spanMs, long bytesPerSecond, const std::function<void()>& giveUp)
    : spanMs_(spanMs), enough_(static_cast<std::uint64_t>(std::max(1L, spanMs / 1000 * bytesPerSecond))) {
  timer_.setSingleShot(true);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this, giveUp] {
    const qint64 left = spanMs_ - span_.elapsed();
    if (left > 0)
      timer_.start(static_cast<int>(left));
    else
      giveUp();
  });
}

void SlowWatch::start() {
  beginSpan();
  timer_.start(static_cast<int>(spanMs_));
}

}  // namespace mv
