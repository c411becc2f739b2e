#include "process/ProcessTexts.h"

#include "base/Clock.h"

namespace mv {

std::string openingText(long rows) { return "Opening. Please wait..." + std::to_string(rows); }

std::string errorReasonText(const ProcessError& error) {
  return "Code: " + std::to_string(error.code) + "  -  Reason: " + error.reason;
}

std::string errorTimeText(const ProcessError& error) { return "Time: " + dateTimeText(error.time); }

std::string errorCountText(const ProcessError& error) { return "Errors: " + std::to_string(error.count); }

std::string joinedCounts(const std::vector<CountText>& counts) {
  std::string text;
  for (const auto& [number, one, many] : counts) {
    if (number == 0) continue;
    if (!text.empty()) text += ", ";
    text += std::to_string(number) + " " + (many && number != 1 ? many : one);
  }
  return text;
}

std::string waitingText(const WaitingRows& waiting, const std::string& what) {
  if (waiting.listed == 0) return waiting.mayBeMore ? "More may wait." : "Nothing waits.";
  return (waiting.mayBeMore ? "At least " : "") + std::to_string(waiting.listed) + " " + what +
         (waiting.listed == 1 ? " waits." : "s wait.");
}

}  // namespace mv
