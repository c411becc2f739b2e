// The menu bar of the program: every entry, in its order, and the window that it opens.
#pragma once

#include <vector>

#include "shell/Menu.h"

namespace mv {

// The addresses of the vendor's pages are those that the user's settings name now.
std::vector<Menu> programMenus();

}  // namespace mv
