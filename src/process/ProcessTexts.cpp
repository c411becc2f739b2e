#include "process/ProcessTexts.h"

#include "base/Clock.h"

namespace mv {

std::string openingText(long rows) { return "Opening. Please wait..." + std::to_string(rows); }

std::string errorReasonText(const ProcessError& error) {
  return "Code: " + std::to_string(error.code) + "  -  Reason: " + error.reason;
}

std::string errorTimeText(const ProcessError& error) { return "Time: " + dateTimeText(error.time); }

std::string errorCountText(const ProcessError& error) { return "Errors: " + std::to_string(error.count); }

}  // namespace mv
