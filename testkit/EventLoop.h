// Running the event loop until something holds, and how long it keeps an event waiting.
#pragma once

#include <QObject>
#include <functional>

namespace mvtest {

// Runs the event loop until `condition` holds, which is looked at behind every iteration. False when it does not within
// the deadline.
bool waitFor(const std::function<bool()>& condition, int milliseconds = 20'000);

// The same without a deadline, for conditions that cost: looked at every few milliseconds only.
void runUntil(const std::function<bool()>& condition);

// While it lives: the processor time of this thread in each iteration of its event loop, which is what an event can be
// kept waiting.
class LoopMeter : public QObject {
 public:
  LoopMeter();

  double longest = 0;  // milliseconds
  long iterations = 0;

 private:
  void next();

  double last_;
};

}  // namespace mvtest
