// Character references ("&amp;", "&#38;") in the value of an attribute.
#pragma once

#include <string>
#include <string_view>

namespace mv {

// `value` (UTF-8) with its references replaced, by the HTML standard's rules for attributes: a name without its
// semicolon counts for the old names only, and not before "=", a letter or a digit, so that "?a=1&copy=2" stays what it
// is. Names that NamedReferences.h does not list stay as they are.
std::string withoutCharacterReferences(std::string_view value);

}  // namespace mv
