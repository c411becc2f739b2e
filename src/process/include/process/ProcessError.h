// What went wrong in a process, last and how often.
#pragma once

#include <QDateTime>
#include <string>

namespace mv {

// A failure as the error panel shows it.
struct ProcessError {
  std::string subject;  // what it happened to, as it is shown
  std::string reason;
  long code = 0;
  QDateTime time;  // null: there was none yet
  long count = 0;  // of failures, this one included
};

}  // namespace mv
