#include "transfer/TextDecoding.h"

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <cstring>

#include "base/Text.h"

namespace mv {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// Windows-1252 of 0x80 to 0x9F; the five bytes without a character stand for the control of the same number.
constexpr std::array<char16_t, 32> kWindows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

unsigned byteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

// Length of the well-formed character at `at`; 0 when there is none.
std::size_t characterLength(std::string_view text, std::size_t at) {
  const auto lead = byteAt(text, at);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() - at < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!continuesCharacter(text[at + i])) return 0;
  }
  // Overlong forms, surrogates and what lies beyond the last character.
  const auto second = byteAt(text, at + 1);
  const bool malformed = (lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) ||
                         (lead == 0xF0 && second < 0x90) || (lead == 0xF4 && second > 0x8F);
  return malformed ? 0 : length;
}

// The first byte from `at` on that is not ASCII, or one up to seven before it.
std::size_t skipAscii(std::string_view text, std::size_t at) {
  std::uint64_t eight = 0;
  for (; text.size() - at >= sizeof eight; at += sizeof eight) {
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if ((eight & 0x8080808080808080U) != 0) break;
  }
  return at;
}

void appendWindows1252(std::string& out, unsigned byte) {
  const unsigned character = byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte;
  if (character < 0x80) {
    out += static_cast<char>(character);
  } else if (character < 0x800) {
    out += static_cast<char>(0xC0U | (character >> 6U));
    out += static_cast<char>(0x80U | (character & 0x3FU));
  } else {
    out += static_cast<char>(0xE0U | (character >> 12U));
    out += static_cast<char>(0x80U | ((character >> 6U) & 0x3FU));
    out += static_cast<char>(0x80U | (character & 0x3FU));
  }
}

std::string fromWindows1252(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t at = 0; at < bytes.size(); ++at) appendWindows1252(result, byteAt(bytes, at));
  return result;
}

std::string repairedUtf8(std::string_view bytes) {
  std::string result;
  result.reserve(bytes.size() + bytes.size() / 8);
  for (std::size_t at = 0; at < bytes.size();) {
    const auto length = characterLength(bytes, at);
    if (length == 0) {
      appendWindows1252(result, byteAt(bytes, at++));
    } else {
      result.append(bytes.substr(at, length));
      at += length;
    }
  }
  return result;
}

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// On the web these all mean Windows-1252, which holds every character of theirs.
bool meansWindows1252(std::string_view charset) {
  return isOneOf(charset, {"windows-1252", "cp1252", "x-cp1252", "iso-8859-1", "iso8859-1", "iso_8859-1", "latin1",
                           "latin-1", "us-ascii", "ascii"});
}

std::string withoutUtf8Mark(std::string bytes) {
  if (bytes.starts_with(kUtf8Mark)) bytes.erase(0, kUtf8Mark.size());
  return bytes;
}

}  // namespace

std::string charsetOf(std::string_view contentType) {
  std::string lower(contentType);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  constexpr std::string_view kParameter = "charset=";
  const auto parameter = lower.find(kParameter);
  if (parameter == std::string::npos) return {};
  const auto start = lower.find_first_not_of(" \t\"'", parameter + kParameter.size());
  if (start == std::string::npos) return {};
  return lower.substr(start, lower.find_first_of(" \t\"';,", start) - start);
}

std::size_t wholeUtf8(std::string_view text, std::size_t from) {
  auto at = skipAscii(text, from);
  while (at < text.size()) {
    const auto length = characterLength(text, at);
    if (length == 0) return at;
    at += length;
    if (length == 1) at = skipAscii(text, at);
  }
  return at;
}

std::string decodeText(std::string bytes, std::string_view contentType, std::size_t checked) {
  const auto charset = charsetOf(contentType);
  if (meansWindows1252(charset)) return fromWindows1252(bytes);
  const bool saysUtf8 = isOneOf(charset, {"utf-8", "utf8"}) || bytes.starts_with(kUtf8Mark);
  if (!charset.empty() && !saysUtf8) {
    QStringDecoder decoder(charset.c_str());
    if (decoder.isValid()) {
      const QString text = decoder(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
      return text.toStdString();
    }
  }
  if (wholeUtf8(bytes, checked) == bytes.size()) return withoutUtf8Mark(std::move(bytes));
  return saysUtf8 ? repairedUtf8(withoutUtf8Mark(std::move(bytes))) : fromWindows1252(bytes);
}

}  // namespace mv
