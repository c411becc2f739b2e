// What windows and the error log say of any process.
#pragma once

#include <string>

#include "process/ProcessError.h"

namespace mv {

// The caption of a process that builds its work list.
std::string openingText(long rows);

std::string errorReasonText(const ProcessError& error);  // "Code: " + code + "  -  Reason: " + reason
std::string errorTimeText(const ProcessError& error);    // "Time: " + date and time
std::string errorCountText(const ProcessError& error);   // "Errors: " + count

}  // namespace mv
