// What keeps somebody from storing for a while: another program's lock, a full disk. He tries again and again, so
// nothing is lost; the user is told when it lasts, once, however many wait for the same.
#pragma once

#include <QElapsedTimer>
#include <chrono>
#include <exception>

namespace mv {

// One for each that tries again. All on one thread.
class StoreTrouble {
 public:
  // For the message: the window or class that it names, and what it says becomes of the work. Constants.
  StoreTrouble(const char* source, const char* consequence) : source_(source), consequence_(consequence) {}
  ~StoreTrouble() { passed(); }
  StoreTrouble(const StoreTrouble&) = delete;
  StoreTrouble& operator=(const StoreTrouble&) = delete;

  // To be caught, and tried again: what surrounds the database is at fault.
  static bool mayPass(const std::exception& error);

  // It has failed once more: to be called where the exception is caught. The answer is the pause before the next try:
  // the longer the trouble lasts, the longer.
  std::chrono::milliseconds failed();
  void passed();

 private:
  const char* source_;
  const char* consequence_;
  QElapsedTimer since_;
  bool lasts_ = false;
};

}  // namespace mv
