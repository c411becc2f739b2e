// Window places, kept in the table `win_pos` by the window's title.
#pragma once

#include <string>

namespace mv {

// Values in twips. Out values stay untouched when nothing is stored. Raises DatabaseError.
void readWindowPosition(const std::string& name, long& top, long& left, long& height, long& width);
// Updates the row of `name`, or inserts one. Raises DatabaseError.
void saveWindowPosition(const std::string& name, long top, long left, long height, long width);

}  // namespace mv
