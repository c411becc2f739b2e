// Texts below the windows are UTF-8 in std::string; widgets speak QString. A character is a Unicode code point.
#pragma once

#include <QString>
#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace mv {

inline QString toQString(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

inline std::string toUtf8(const QString& text) { return text.toStdString(); }

// Does `byte`, of UTF-8, belong to the character that began before it?
constexpr bool continuesCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

inline std::size_t characterCount(std::string_view utf8) {
  return utf8.size() - static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), continuesCharacter));
}

// Where the character that is `characters` behind `from` starts in valid UTF-8; the text's size when it is shorter.
inline std::size_t advanceCharacters(std::string_view utf8, std::size_t from, std::size_t characters) {
  for (; characters > 0 && from < utf8.size(); --characters) {
    ++from;
    while (from < utf8.size() && continuesCharacter(utf8[from])) ++from;
  }
  return from;
}

}  // namespace mv
