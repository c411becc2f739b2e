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
// `checked`: so many first bytes are known to be whole UTF-8 characters, see wholeUtf8.
std::string decodeText(std::string bytes, std::string_view contentType, std::size_t checked = 0);

// The end of the well-formed UTF-8 characters that begin at `from`: the text's size when all of it is UTF-8.
std::size_t wholeUtf8(std::string_view text, std::size_t from);

}  // namespace mv
