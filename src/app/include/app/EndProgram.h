// Ending the program at once: no window is closed or asked, no place is stored, the error log gets no closing line.
#pragma once

#include <functional>

namespace mv {

// Tells Events::programEnding, closes the database and leaves the process. Does not return, unless setEndProgram
// installed something else.
void endProgramNow();

// For tests: what endProgramNow calls instead. An empty function brings the real end back.
void setEndProgram(std::function<void()> end);

}  // namespace mv
