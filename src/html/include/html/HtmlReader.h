// A place in a page that is read in pieces, and how to get on from it. Everything is inline: it runs for every
// character.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "html/HtmlCharacters.h"

namespace mv {

// The members are as public as those of an iterator: who reads moves it.
struct HtmlReader {
  std::string_view page;
  std::size_t at = 0;
  std::size_t stop = 0;  // of the piece; never before `at`

  // The next piece, of about `bytes`, of the same page.
  void begin(std::string_view wholePage, std::size_t bytes) {
    page = wholePage;
    stop = at + std::min(bytes, page.size() - at);
  }

  // From here to the end of the page, beyond the piece.
  std::string_view rest() const { return page.substr(at); }
  std::string_view since(std::size_t start) const { return page.substr(start, at - start); }
  // NUL behind the end: no character that a tag could go on with.
  char peek(std::size_t distance) const { return distance < page.size() - at ? page[at + distance] : '\0'; }

  // Goes to the first character that `belongs` does not hold for; false when the piece ends first.
  template <class Belongs>
  bool skip(Belongs belongs);
  bool skipBlanks() { return skip(isHtmlBlank); }

  // Goes to the next `c`; false when the piece ends first. Mostly it is near, and memchr is for what is far.
  bool findNext(char c) {
    if (at >= stop) return false;
    for (std::size_t words = 0; words < kNearWords && stop - at >= sizeof(std::uint64_t); ++words) {
      const std::size_t distance = placeInWord(page.data() + at, c);
      at += distance;
      if (distance < sizeof(std::uint64_t)) return true;
    }
    const void* found = std::memchr(page.data() + at, c, stop - at);
    at = found ? static_cast<std::size_t>(static_cast<const char*>(found) - page.data()) : stop;
    return found != nullptr;
  }

  // Is here `opening`, then `name` in any case of letters and the end of a name?
  bool tagStands(std::string_view opening, std::string_view name) const {
    const std::string_view here = rest();
    const std::size_t end = opening.size() + name.size();
    return here.size() > end && here.starts_with(opening) && foldedTagName(here[end]) == 0 &&
           equalsFolded(here.substr(opening.size(), name.size()), name);
  }

 private:
  // Words of eight bytes; what placeInWord does needs the first byte in the lowest place.
  static constexpr std::size_t kNearWords = std::endian::native == std::endian::little ? 3 : 0;

  // Where the first `c` of eight bytes is; 8 for none. A byte that is `c` becomes zero, and only zeros borrow from
  // their own highest bit; what is wrong about bytes behind the first does not matter.
  static std::size_t placeInWord(const char* bytes, char c) {
    constexpr std::uint64_t kOnes = 0x0101010101010101U;
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, sizeof word);
    word ^= kOnes * static_cast<unsigned char>(c);
    const std::uint64_t zeros = (word - kOnes) & ~word & kHighBits;
    return static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
  }
};

// Not declared inline, so that the compiler keeps its allowance for the states that call it.
template <class Belongs>
bool HtmlReader::skip(Belongs belongs) {
  const char* const end = page.data() + stop;
  const char* here = page.data() + at;
  while (here < end && belongs(*here)) ++here;
  at = static_cast<std::size_t>(here - page.data());
  return here < end;
}

}  // namespace mv
