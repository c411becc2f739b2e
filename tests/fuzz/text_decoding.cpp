// The character set of a page: the header's content type, and the bytes; decoded at once and piece by piece.
#include <algorithm>
#include <string>

#include "Fuzz.h"
#include "decoding/Encoding.h"
#include "decoding/TextDecoding.h"
#include "decoding/Unpacker.h"

namespace {

using mvfuzz::require;

std::string decodedByPieces(std::string_view input, const std::string& contentType) {
  mv::TextDecoder decoder(contentType);
  for (std::size_t size = 1; !input.empty(); size = size * 2 + 1) {
    const auto piece = input.substr(0, std::min(size, input.size()));
    decoder.append(piece);
    input.remove_prefix(piece.size());
  }
  decoder.finish();
  require(mv::encodingOf(decoder.encoding()) == decoder.encoding(), "an encoding is known by its own name");
  return decoder.text();
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string contentType(takePart(input));
  require(mv::wholeUtf8(input, 0) <= input.size(), "whole characters end within the text");
  require((mv::wholeUtf8(input, 0) == input.size()) == isUtf8(input),
          "well-formed is what the library takes as well-formed");

  const std::string text = mv::decodeText(input, contentType);
  require(isUtf8(text), "a text is UTF-8");
  // Each byte of any character set is a character of at most three bytes.
  require(text.size() <= 3 * input.size() + 3, "a text grows within bounds");
  require(text == decodedByPieces(input, contentType), "a text is the same however it comes in");

  const std::string query = mv::encodedForQuery(text, mv::encodingOf(contentType));
  require(std::all_of(query.begin(), query.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; }),
          "a query is ASCII");
  mv::Unpacker unpacker(contentType);
  unpacker.append(input, [](std::string_view) { return true; });
}
