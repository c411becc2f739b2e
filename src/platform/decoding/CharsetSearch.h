// What a page says about its own character set.
#pragma once

#include <string_view>

namespace mv {

// The text behind "charset=" in the value of a Content-Type header or of a meta element's `content`, without quotes; ""
// when there is none.
std::string_view charsetIn(std::string_view contentType);

// The encoding, as encodingOf names it, that the first meta element with one or an XML declaration declares in `start`,
// the first bytes of a page; "" for none. By the HTML standard's "prescan a byte stream to determine its encoding".
std::string_view declaredEncoding(std::string_view start);

}  // namespace mv
