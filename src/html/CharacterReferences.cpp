#include "CharacterReferences.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <unordered_map>

#include "NamedReferences.h"
#include "base/Text.h"
#include "decoding/TextDecoding.h"
#include "html/HtmlCharacters.h"

namespace mv {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kHighestCharacter = 0x10FFFF;

struct Named {
  char32_t character = 0;
  bool needsSemicolon = false;
};
using NamedReferences = std::unordered_map<std::string_view, Named>;

std::string_view takeWord(std::string_view& text) {
  const std::size_t end = std::min(text.find(' '), text.size());
  const std::string_view word = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return word;
}

const NamedReferences& namedReferences() {
  static const NamedReferences references = [] {
    NamedReferences result;
    for (std::string_view rest = kNamedReferences; !rest.empty();) {
      std::string_view name = takeWord(rest);
      const std::string_view digits = takeWord(rest);
      const bool needsSemicolon = name.ends_with(';');
      if (needsSemicolon) name.remove_suffix(1);
      std::uint32_t character = 0;
      std::from_chars(digits.data(), digits.data() + digits.size(), character, 16);
      result.emplace(name, Named{character, needsSemicolon});
    }
    return result;
  }();
  return references;
}

bool isAlphanumeric(char c) { return isAsciiLetter(c) || isAsciiDigit(c); }

std::size_t runOf(std::string_view text, std::size_t from, bool (*belongs)(char)) {
  std::size_t end = from;
  while (end < text.size() && belongs(text[end])) ++end;
  return end;
}

std::string utf8Of(char32_t character) {
  if (character < 0x80) return std::string(1, static_cast<char>(character));
  return toUtf8(QString::fromUcs4(&character, 1));
}

bool isHexDigit(char c) { return isAsciiDigit(c) || (lowered(c) >= 'a' && lowered(c) <= 'f'); }

// "Numeric character reference end state": what is no character is the replacement character, and the controls of 0x80
// to 0x9F are what Windows-1252 has there.
std::string numbered(std::string_view digits, int base) {
  std::uint32_t number = 0;
  const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  const bool isSurrogate = number >= 0xD800 && number <= 0xDFFF;
  if (parsed.ec != std::errc() || number == 0 || number > kHighestCharacter || isSurrogate) number = kReplacement;
  if (number >= 0x80 && number < 0xA0)
    return decodeText(std::string(1, static_cast<char>(number)), "text/html; charset=windows-1252");
  return utf8Of(number);
}

// Cuts a reference off the front of `text`, which begins with "&", and appends what it means. False: it is none.
bool takeNumeric(std::string_view& text, std::string& out) {
  const bool isHex = text.size() > 2 && lowered(text[2]) == 'x';
  const std::size_t from = isHex ? 3 : 2;
  std::size_t end = runOf(text, from, isHex ? isHexDigit : isAsciiDigit);
  if (end == from) return false;
  out += numbered(text.substr(from, end - from), isHex ? 16 : 10);
  if (end < text.size() && text[end] == ';') ++end;
  text.remove_prefix(end);
  return true;
}

bool takeNamed(std::string_view& text, std::string& out) {
  // A shorter name that this one begins with would stand before a letter or a digit, and so would not count.
  const std::size_t end = runOf(text, 1, isAlphanumeric);
  const auto found = namedReferences().find(text.substr(1, end - 1));
  if (found == namedReferences().end()) return false;
  const char next = end < text.size() ? text[end] : '\0';
  if (next != ';' && (found->second.needsSemicolon || next == '=')) return false;
  out += utf8Of(found->second.character);
  text.remove_prefix(next == ';' ? end + 1 : end);
  return true;
}

}  // namespace

std::string withoutCharacterReferences(std::string_view value) {
  std::string result;
  while (true) {
    const std::size_t reference = std::min(value.find('&'), value.size());
    result.append(value.substr(0, reference));
    value.remove_prefix(reference);
    if (value.empty()) return result;
    const bool taken = value.substr(1).starts_with('#') ? takeNumeric(value, result) : takeNamed(value, result);
    if (taken) continue;
    result += value.front();
    value.remove_prefix(1);
  }
}

}  // namespace mv
