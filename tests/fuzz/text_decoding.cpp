// The character set of a page: the header's content type, and the bytes.
#include <string>

#include "Fuzz.h"
#include "transfer/TextDecoding.h"

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string contentType(takePart(input));
  const std::string charset = mv::charsetOf(contentType);
  require(charset.find_first_of(" \t\"';,") == std::string::npos, "a charset is one word");
  require(mv::wholeUtf8(input, 0) <= input.size(), "whole characters end within the text");
  require((mv::wholeUtf8(input, 0) == input.size()) == isUtf8(input),
          "well-formed is what the library takes as well-formed");

  const std::string text = mv::decodeText(std::string(input), contentType);
  require(isUtf8(text), "a text is UTF-8");
  // Each byte of any character set is a character of at most three bytes.
  require(text.size() <= 3 * input.size() + 3, "a text grows within bounds");
}
