// A disk that takes its time: while it lives and until it is opened, no file that is to be saved gets there.
#pragma once

#include <condition_variable>
#include <mutex>

namespace mvtest {

class FlushGate {
 public:
  // Closed.
  FlushGate();
  // Opens, and waits for what download processes save. Others must have ended their flushes.
  ~FlushGate();
  FlushGate(const FlushGate&) = delete;
  FlushGate& operator=(const FlushGate&) = delete;

  // From now on nothing waits.
  void open();
  // The next `times` flushes fail with that error of the system.
  void failWith(int error, int times);
  // Flushes that stand before it now.
  int waiting();

 private:
  int pass();

  std::mutex mutex_;  // guards the others
  std::condition_variable opened_;
  bool open_ = false;
  int waiting_ = 0;
  int error_ = 0;
  int failures_ = 0;
};

}  // namespace mvtest
