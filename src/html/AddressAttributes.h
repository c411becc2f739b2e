// Attributes that hold more than an address. Texts are what is left when character references are replaced.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mv {

// Of the image candidates of a `srcset` attribute (HTML standard, "Parsing a srcset attribute") the address of the
// widest; where none has a width, of the densest. The first of several; "" when there is none. A view into `text`.
std::string_view largestCandidate(std::string_view text);

// Where `content` of <meta http-equiv="refresh"> leads (HTML standard, "shared declarative refresh steps"); "" when it
// only tells a time. A view into `content`.
std::string_view refreshTarget(std::string_view content);

// The next address in a CSS `url(...)` (CSS Syntax Module Level 3, "Consume a url token"), without its quotes, which in
// an attribute may be character references; `text` begins behind it afterwards. What stands in a comment, is an @import
// or @namespace, or has an escape is none. nullopt when no further one follows; linear, however often it is called.
std::optional<std::string_view> takeStyleAddress(std::string_view& text);

}  // namespace mv
