#include "platform/Slice.h"

#include <QAbstractEventDispatcher>
#include <QPointer>

namespace mv {

namespace {

constexpr std::chrono::milliseconds kTurn{5};
constexpr std::chrono::microseconds kLeastSlice{250};

// What slices have used of this turn of the event loop.
class Turn : public QObject {
 public:
  static Turn& current() {
    static Turn turn;
    return turn;
  }
  void follow(QAbstractEventDispatcher* loop) {
    if (loop_ == loop) return;
    loop_ = loop;
    if (!loop) return;
    connect(loop, &QAbstractEventDispatcher::awake, this, [this] { used = {}; });
    connect(loop, &QAbstractEventDispatcher::aboutToBlock, this, [this] { used = {}; });
  }
  std::chrono::steady_clock::duration used{};

 private:
  QPointer<QAbstractEventDispatcher> loop_;
};

}  // namespace

Slice::Slice() { Turn::current().follow(QAbstractEventDispatcher::instance()); }

Slice::~Slice() { Turn::current().used += used(); }

bool Slice::turnIsSpent() {
  Turn::current().follow(QAbstractEventDispatcher::instance());
  return Turn::current().used > kTurn;
}

bool Slice::spent() const { return used() > kLeastSlice && Turn::current().used + used() > kTurn; }

}  // namespace mv
