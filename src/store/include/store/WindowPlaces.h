// Window places, kept in the table `win_pos` by the window's title. Lengths are in twips. All functions raise
// DatabaseError.
#pragma once

#include <string>

namespace mv {

// Out values stay untouched when nothing is stored.
void readWindowPosition(const std::string& name, long& top, long& left, long& height, long& width);
// Updates the row of `name`, or inserts one.
void saveWindowPosition(const std::string& name, long top, long left, long height, long width);
// Forgets all of them.
void clearWindowPositions();

}  // namespace mv
