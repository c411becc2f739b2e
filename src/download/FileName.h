// File names made from addresses.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// `name` as a file system takes it: control characters and separators become "_"; ".", ".." and the names that file
// systems reserve (CON, NUL, COM1, ...; with any extension) get "_" in front; over 255 bytes it is cut before the
// extension, never inside a character. Everything else, a query part included, stays. "" stays "".
std::string cleanFileName(std::string_view name);

}  // namespace mv
