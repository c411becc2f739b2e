// Window places, kept in the table `win_pos` by the window's title. Lengths are in twips. All functions raise
// DatabaseError.
#pragma once

#include <string>

namespace mv {

// Out values stay untouched when nothing is stored.
void readWindowPosition(const std::string& name, long& top, long& left, long& height, long& width);
// Updates the row of `name`, or inserts one.
void saveWindowPosition(const std::string& name, long top, long left, long height, long width);
// Titles held a site's password once: a place that is kept under one is kept under the title as it is shown now, or
// forgotten when that has its own.
void maskPasswordsOfWindowPositions();
// Forgets all of them.
void clearWindowPositions();

}  // namespace mv
