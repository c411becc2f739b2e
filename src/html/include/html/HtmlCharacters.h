// Kinds of characters of the HTML standard, and its comparison of names without letter case (of ASCII letters only).
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace mv {

constexpr bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

constexpr bool isAsciiDigit(char c) { return c >= '0' && c <= '9'; }

// "ASCII whitespace"; a carriage return is a line feed in the standard's input stream.
constexpr bool isHtmlBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r' || c == '\f'; }

constexpr char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// `lower` is in lower case.
constexpr bool equalsFolded(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if (lowered(text[i]) != lower[i]) return false;
  return true;
}

namespace html_tables {

// Of the characters of a tag's name in lower case; 0 for those that end it.
constexpr std::array<unsigned char, 256> makeTagName() {
  std::array<unsigned char, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    const char c = static_cast<char>(i);
    const bool ends = isHtmlBlank(c) || c == '/' || c == '>';
    table[i] = ends ? 0 : c == 0 ? 0xFF : static_cast<unsigned char>(lowered(c));
  }
  return table;
}
inline constexpr std::array<unsigned char, 256> kTagName = makeTagName();

constexpr std::array<bool, 256> makeEndsAttributeName() {
  std::array<bool, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = kTagName[i] == 0 || i == '=';
  return table;
}
inline constexpr std::array<bool, 256> kEndsAttributeName = makeEndsAttributeName();

}  // namespace html_tables

constexpr unsigned char foldedTagName(char c) { return html_tables::kTagName[static_cast<unsigned char>(c)]; }

constexpr bool endsAttributeName(char c) { return html_tables::kEndsAttributeName[static_cast<unsigned char>(c)]; }

// `text` without blanks at both ends.
constexpr std::string_view withoutBlanks(std::string_view text) {
  while (!text.empty() && isHtmlBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isHtmlBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace mv
