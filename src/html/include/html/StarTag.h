// A search string with a star, "<element * attribute=": a start tag of that element with that attribute, wherever it
// stands in the tag and however both are spelled. Any other search string is plain text, found as it is written.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mv {

struct StarTag {
  std::string element;    // in lower case
  std::string attribute;  // in lower case

  // None when `text` is no such string.
  static std::optional<StarTag> parse(std::string_view text);
};

// Why `text`, which has a star as such a string has, is none: a sentence for the user. "" when it is one, and for a
// plain text.
const char* starTagProblem(std::string_view text);

}  // namespace mv
