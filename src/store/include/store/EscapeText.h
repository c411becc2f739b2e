// The reversible token escaping of link addresses and exchanged texts: quotes, line breaks and the vertical bar.
#pragma once

#include <string>
#include <string_view>

namespace mv {

inline constexpr std::string_view kRemoveQuotes = "kRemoveQuotes";
inline constexpr std::string_view kRestoreQuotes = "kRestoreQuotes";

// Changes `text` in place: kRemoveQuotes escapes, kRestoreQuotes brings back, any other mode does nothing.
// ' " LF CR | become &MV1Q &MV2Q &LF &CR &PIPE. A text that already holds a token literally does not survive the way
// back.
void escapeText(std::string_view mode, std::string& text);

}  // namespace mv
