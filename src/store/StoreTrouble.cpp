#include "store/StoreTrouble.h"

#include <QCoreApplication>
#include <algorithm>
#include <new>
#include <utility>

#include "app/ReportError.h"
#include "database/Database.h"

namespace mv {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kUntold{2000};
constexpr milliseconds kShortestPause{10};
constexpr milliseconds kLongestPause{500};

int lasting = 0;  // of all there are: while one lasts, the user has been told

// In an event of its own: the work goes on while the message box stands, and nothing of it is held by the box.
void tell(const std::exception_ptr& failure, const char* source, const char* consequence) {
  const auto show = [failure, source, consequence] {
    try {
      std::rethrow_exception(failure);
    } catch (const std::exception& error) {
      reportException(error, source, consequence);
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
  if (!since_.isValid()) since_.start();
  const milliseconds lasted(since_.elapsed());
  if (!lasts_ && lasted >= kUntold) {
    lasts_ = true;
    if (++lasting == 1) tell(std::current_exception(), source_, consequence_);
  }
  return std::clamp(lasted / 2, kShortestPause, kLongestPause);
}

void StoreTrouble::passed() {
  since_.invalidate();
  if (std::exchange(lasts_, false)) --lasting;
}

}  // namespace mv
