#include "StateReporter.h"

namespace mv {

void StateReporter::beginHop() {
  if (last_ < kRequesting) return;
  if (last_ >= kReceivingResponse) raise(kResponseReceived);
  raiseDisconnected();
  last_ = 0;
}

void StateReporter::raise(TransferState state) {
  if (state <= last_) return;
  last_ = state;
  raise_(state);
}

void StateReporter::raiseDisconnected() {
  if (closed_ && last_ >= kRequesting) {
    raise(kDisconnecting);
    raise(kDisconnected);
  }
  closed_ = false;
}

}  // namespace mv
