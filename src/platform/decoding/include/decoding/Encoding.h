// Character sets by the names that the web gives them (WHATWG Encoding Standard).
#pragma once

#include <string>
#include <string_view>

namespace mv {

// The encoding that `label` stands for, its name in lower case ("utf-8", "windows-1252", "shift_jis"); "" for none.
// Case and white space around the label do not matter. "utf-16" is little-endian, "iso-8859-1" is "windows-1252".
std::string_view encodingOf(std::string_view label);

// The name under which the decoders of this machine know an encoding, which is a name as encodingOf gives it.
const char* decoderOf(std::string_view encoding);

// What a page of this encoding puts into the query of an address: in `text`, which is UTF-8, every byte that is not
// ASCII is percent-encoded, after its character has become one of `encoding`. A character that the encoding lacks
// becomes "%26%23N%3B" with its number; UTF-16 pages write UTF-8.
std::string encodedForQuery(std::string_view text, std::string_view encoding);

}  // namespace mv
