// Puts what libcurl tells of a request into the order of its states.
#pragma once

#include <functional>

#include "transfer/TransferTypes.h"

namespace mv {

// A request goes through one hop or several: a redirect, an answered challenge and a second attempt on a fresh
// connection start the states over. Within a hop each state is raised once, and none after a later one.
class StateReporter {
 public:
  using Raise = std::function<void(TransferState)>;

  // `raise` is called from inside the functions below.
  explicit StateReporter(Raise raise) : raise_(std::move(raise)) {}

  // To be called at every event that a hop can begin with. Ends the one before, if its request was under way.
  void beginHop();
  // Another body is to come of a response whose end has been told.
  void reopenResponse() { last_ = kRequestSent; }
  void raise(TransferState state);
  // This hop's connection is gone; told when the hop is over.
  void noteClosed() { closed_ = true; }
  void raiseDisconnected();
  bool isLast(TransferState state) const { return last_ == state; }

 private:
  Raise raise_;
  int last_ = 0;         // of this hop
  bool closed_ = false;  // this hop's connection
};

}  // namespace mv
