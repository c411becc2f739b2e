// What windows and the error log say of any process.
#pragma once

#include <string>
#include <vector>

#include "process/ProcessError.h"
#include "process/WaitingRows.h"

namespace mv {

// The caption of a process that builds its work list.
std::string openingText(long rows);

std::string errorReasonText(const ProcessError& error);  // "Code: " + code + "  -  Reason: " + reason
std::string errorTimeText(const ProcessError& error);    // "Time: " + date and time
std::string errorCountText(const ProcessError& error);   // "Errors: " + count

// A number with what it counts, in the singular and, where it differs, in the plural.
struct CountText {
  long number;
  const char* one;
  const char* many = nullptr;
};
// Those that are not 0, joined by commas.
std::string joinedCounts(const std::vector<CountText>& counts);
// "Nothing waits.", "1 page waits.", "2 pages wait.", "At least 2 pages wait.", "More may wait."
std::string waitingText(const WaitingRows& waiting, const std::string& what);

}  // namespace mv
