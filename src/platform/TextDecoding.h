// Bytes of a page to UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mv {

// The charset that a Content-Type value names, in lower case; "" when it names none.
std::string charsetOf(std::string_view contentType);

// `bytes` as UTF-8: from the charset named in `contentType`; without one, or with one that is not known, as UTF-8 when
// that is what they are, else as Windows-1252. A byte order mark is removed. Always valid UTF-8; NUL characters stay.
// In a page that says UTF-8 but is not wholly so, each stray byte is read as Windows-1252.
std::string decodeText(std::string bytes, std::string_view contentType);

// Where the character that is `characters` behind `from` starts in valid UTF-8; the text's size when it is shorter.
std::size_t advanceCharacters(std::string_view utf8, std::size_t from, std::size_t characters);

}  // namespace mv
