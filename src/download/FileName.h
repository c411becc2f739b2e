// File names made from addresses.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// `name` as a file system takes it and a list shows it: control characters and separators become "_"; the characters
// that turn the direction of a text (Unicode's Bidi_Control), which would show another name than the file has, go; ".",
// ".." and the names that file systems reserve (CON, NUL, COM1, ...; with any extension) get "_" in front; over 255
// bytes it is cut before the extension, never inside a character, and "~" and a hash of the whole name tell it from
// others that begin alike. Everything else, a query part included, stays. "" stays "".
std::string cleanFileName(std::string_view name);

// The full path of a file of that name, which is cleaned.
std::string filePath(const std::string& folder, std::string_view name);
// Is there a file of that path? Folders do not count.
bool fileExists(const std::string& path);

}  // namespace mv
