#include "testkit/FlushGate.h"

#include "app/Events.h"
#include "files/OpenFile.h"

namespace mvtest {

FlushGate::FlushGate() {
  mv::OpenFile::setBeforeFlush([this] { return pass(); });
}

FlushGate::~FlushGate() {
  open();
  Q_EMIT mv::events().programEnding();  // waits for the flushes that are under way
  mv::OpenFile::setBeforeFlush({});
}

void FlushGate::open() {
  const std::lock_guard lock(mutex_);
  open_ = true;
  opened_.notify_all();
}

void FlushGate::failWith(int error, int times) {
  const std::lock_guard lock(mutex_);
  error_ = error;
  failures_ = times;
}

int FlushGate::waiting() {
  const std::lock_guard lock(mutex_);
  return waiting_;
}

int FlushGate::pass() {
  std::unique_lock lock(mutex_);
  ++waiting_;
  opened_.wait(lock, [this] { return open_; });
  --waiting_;
  return failures_-- > 0 ? error_ : 0;
}

}  // namespace mvtest
