// How long, by the clock, the event loop keeps an event waiting.
#pragma once

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>
#include <QObject>
#include <algorithm>

namespace mvtest {

// While it lives: the time of each iteration of this thread's event loop, what it sleeps in a lock included, which
// LoopMeter does not see. Other programs on the machine make it longer.
class WallMeter : public QObject {
 public:
  WallMeter() {
    const QAbstractEventDispatcher* loop = QAbstractEventDispatcher::instance();
    connect(loop, &QAbstractEventDispatcher::awake, this, [this] {
      look();
      since_.start();
    });
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] {
      look();
      since_.invalidate();
    });
    since_.start();
  }

  qint64 longest = 0;  // milliseconds

 private:
  void look() {
    if (since_.isValid()) longest = std::max(longest, since_.elapsed());
  }

  QElapsedTimer since_;
};

}  // namespace mvtest
