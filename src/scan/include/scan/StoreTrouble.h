// What keeps a process from storing for a while: another program's lock, a full disk. The process tries again and
// again, so nothing is lost; the user is told when it lasts, once.
#pragma once

#include <QElapsedTimer>
#include <chrono>
#include <exception>

namespace mv {

class StoreTrouble {
 public:
  // To be caught, and tried again: what surrounds the database is at fault.
  static bool mayPass(const std::exception& error);

  // It has failed once more: to be called where the exception is caught. The answer is the pause before the next try:
  // the longer the trouble lasts, the longer.
  std::chrono::milliseconds failed();
  void passed() { since_.invalidate(); }

 private:
  QElapsedTimer since_;
  bool told_ = false;
};

}  // namespace mv
