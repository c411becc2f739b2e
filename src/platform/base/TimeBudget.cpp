#include "base/TimeBudget.h"

#include <QAbstractEventDispatcher>
#include <QPointer>

namespace mv {

namespace {

constexpr std::chrono::milliseconds kIteration{5};
constexpr std::chrono::microseconds kLeastShare{250};

// What budgets have used up of this iteration of the event loop.
class Iteration : public QObject {
 public:
  static Iteration& current() {
    static Iteration iteration;
    return iteration;
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

TimeBudget::TimeBudget() { Iteration::current().follow(QAbstractEventDispatcher::instance()); }

TimeBudget::~TimeBudget() { Iteration::current().used += used(); }

bool TimeBudget::iterationIsSpent() {
  Iteration::current().follow(QAbstractEventDispatcher::instance());
  return Iteration::current().used > kIteration;
}

bool TimeBudget::spent() const { return used() > kLeastShare && Iteration::current().used + used() > kIteration; }

}  // namespace mv
