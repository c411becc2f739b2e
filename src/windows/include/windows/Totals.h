// What the running processes have done, for the foot of the main window.
#pragma once

#include <cstdint>

namespace mv {

struct Totals {
  long sites = 0;    // running
  long waiting = 0;  // files
  bool moreWait = false;
  long saved = 0;   // files
  long failed = 0;  // pages and files
  std::int64_t bytes = 0;

  Totals& operator+=(const Totals& other);
};

// A child window that shows a process.
class Counted {
 public:
  virtual Totals totals() const = 0;

 protected:
  ~Counted() = default;
};

// Of the loaded windows, and of those that have ended since the program was started.
Totals allTotals();
// What an ended process leaves.
void keepTotals(const Totals& totals);

}  // namespace mv
