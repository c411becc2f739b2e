// Long work on the user-interface thread stays within a time budget: a loop tests spent() and goes on in a later event
// when the time is up. All budgets of one iteration of the event loop share the time that an iteration may take, so
// that ten workers keep the user waiting no longer than one; each gets a little of it.
#pragma once

#include <chrono>

namespace mv {

class TimeBudget {
 public:
  TimeBudget();
  ~TimeBudget();
  TimeBudget(const TimeBudget&) = delete;
  TimeBudget& operator=(const TimeBudget&) = delete;
  bool spent() const;
  // Work that has not begun is better left to the next iteration.
  static bool iterationIsSpent();

 private:
  std::chrono::steady_clock::duration used() const { return std::chrono::steady_clock::now() - start_; }

  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace mv
