#include "scan/StoreTrouble.h"

#include <QCoreApplication>
#include <algorithm>
#include <new>

#include "app/ReportError.h"
#include "database/Database.h"

namespace mv {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kUntold{2000};
constexpr milliseconds kShortestPause{10};
constexpr milliseconds kLongestPause{500};

constexpr const char* kWaiting =
    "Links cannot be stored now. The scan waits, and goes on by itself at the same place: no link is lost.";

// In an event of its own: the scan goes on while the message box stands, and nothing of it is held by the box.
void tell(const std::exception_ptr& failure) {
  const auto show = [failure] {
    try {
      std::rethrow_exception(failure);
    } catch (const std::exception& error) {
      reportException(error, "frmScan", kWaiting);
    }
  };
  QMetaObject::invokeMethod(QCoreApplication::instance(), show, Qt::QueuedConnection);
}

}  // namespace

bool StoreTrouble::mayPass(const std::exception& error) {
  const auto* database = dynamic_cast<const DatabaseError*>(&error);
  return database ? database->mayPass() : dynamic_cast<const std::bad_alloc*>(&error) != nullptr;
}

milliseconds StoreTrouble::failed() {
  if (!since_.isValid()) {
    since_.start();
    told_ = false;
  }
  const milliseconds lasted(since_.elapsed());
  if (!told_ && lasted >= kUntold) {
    told_ = true;
    tell(std::current_exception());
  }
  return std::clamp(lasted / 2, kShortestPause, kLongestPause);
}

}  // namespace mv
