// Notices a response that trickles: libcurl's own limit lets a byte a second go on for ever.
#pragma once

#include <QElapsedTimer>
#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace mv {

class SlowWatch {
 public:
  // `giveUp` is called from the event loop when fewer than `bytesPerSecond` have come in over `spanMs` milliseconds.
  SlowWatch(long spanMs, long bytesPerSecond, const std::function<void()>& giveUp);

  void start();
  void stop() { timer_.stop(); }
  void received(std::size_t bytes) {
    bytes_ += bytes;
    if (bytes_ >= enough_) beginSpan();
  }

 private:
  void beginSpan() {
    bytes_ = 0;
    span_.start();
  }

  long spanMs_;
  std::uint64_t enough_;     // bytes within a span
  std::uint64_t bytes_ = 0;  // of this span
  QElapsedTimer span_;
  QTimer timer_;  // not moved with every piece that comes in: when it fires it looks how old the span is
};

}  // namespace mv
