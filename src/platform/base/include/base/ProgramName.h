// The program's name: title of its main window and of boxes without one of their own, application of its user settings.
#pragma once

namespace mv {

inline constexpr const char* kProgramName = "Morvane2000";

}  // namespace mv
