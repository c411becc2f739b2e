#include "base/TimeBudget.h"

#include <QAbstractEventDispatcher>
#include <QPointer>

namespace mv {

namespace {

constexpr std::chrono::milliseconds kTurn{5};
constexpr std::chrono::microseconds kLeastShare{250};

// What budgets have been used up of this turn of the event loop.
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

TimeBudget::TimeBudget() { Turn::current().follow(QAbstractEventDispatcher::instance()); }

TimeBudget::~TimeBudget() { Turn::current().used += used(); }

bool TimeBudget::turnIsSpent() {
  Turn::current().follow(QAbstractEventDispatcher::instance());
  return Turn::current().used > kTurn;
}

bool TimeBudget::spent() const { return used() > kLeastShare && Turn::current().used + used() > kTurn; }

}  // namespace mv
