// The error log: a plain text file beside the program, "MV2Errors.txt", lines ended by CR LF, appended to, never
// truncated, opened and closed again by each entry.
#pragma once

#include <string>
#include <vector>

namespace mv {

// Appends whole lines in one write. Raises FileError.
void appendToErrorLog(const std::vector<std::string>& lines);
// The same for writers that lose an entry rather than stop: a failure is ignored.
void tryAppendToErrorLog(const std::vector<std::string>& lines) noexcept;

// A record is made of whole lines, whatever an address or a feed's text holds: line breaks and other control characters
// become blanks.
std::string asOneLine(std::string text);

// The stamps of start and end: a line and the current date and time. Raise FileError.
void logOpened();
void logClosed();

std::string errorLogPath();

}  // namespace mv
