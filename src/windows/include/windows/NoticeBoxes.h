// Message boxes for what the parts without windows have to tell.
#pragma once

namespace mv {

// From now on every notice is a message box of the main window, or of none before there is one. A critical one hides
// the main window's status indicators first.
void showNoticesInBoxes();

}  // namespace mv
