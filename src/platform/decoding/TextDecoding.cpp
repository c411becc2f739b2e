#include "decoding/TextDecoding.h"

#include <QByteArrayView>
#include <QString>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include "CharsetSearch.h"
#include "base/Text.h"
#include "decoding/Encoding.h"

namespace mv {

namespace {

constexpr std::string_view kUtf8 = "utf-8";
constexpr std::string_view kUtf16Big = "utf-16be";
constexpr std::string_view kUtf16Little = "utf-16le";
constexpr std::string_view kWindows = "windows-1252";
constexpr std::string_view kLatin10Name = "iso-8859-16";
constexpr std::string_view kReplacementCharacter = "\xEF\xBF\xBD";
constexpr std::size_t kDeclaredWithin = 1024;  // bytes, by the HTML standard
constexpr std::size_t kLongestCharacter = 4;   // bytes of UTF-8
// So many bytes of UTF-8, from the first character on that is not ASCII, are no chance. To read more of a page anew, at
// its last byte perhaps, would hold the thread.
constexpr std::size_t kCertain = std::size_t{1} << 18;

// Windows-1252 of 0x80 to 0x9F; the five bytes without a character stand for the control of the same number.
constexpr std::array<char16_t, 32> kWindows1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

unsigned byteAt(std::string_view text, std::size_t at) { return static_cast<unsigned char>(text[at]); }

std::size_t lengthBy(unsigned lead) { return lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2; }

// Length of the well-formed character at `at`; 0 when there is none.
std::size_t characterLength(std::string_view text, std::size_t at) {
  const auto lead = byteAt(text, at);
  if (lead < 0x80) return 1;
  const std::size_t length = lengthBy(lead);
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

void appendCharacter(std::string& out, unsigned character) {
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

void appendWindows1252(std::string& out, unsigned byte) {
  appendCharacter(out, byte >= 0x80 && byte < 0xA0 ? kWindows1252[byte - 0x80] : byte);
}

// ISO 8859-16 from 0xA0 on, which the library does not have.
constexpr std::u16string_view kLatin10 =
    u"\u00A0\u0104\u0105\u0141\u20AC\u201E\u0160\u00A7\u0161\u00A9\u0218\u00AB\u0179\u00AD\u017A\u017B"
    u"\u00B0\u00B1\u010C\u0142\u017D\u201D\u00B6\u00B7\u017E\u010D\u0219\u00BB\u0152\u0153\u0178\u017C"
    u"\u00C0\u00C1\u00C2\u0102\u00C4\u0106\u00C6\u00C7\u00C8\u00C9\u00CA\u00CB\u00CC\u00CD\u00CE\u00CF"
    u"\u0110\u0143\u00D2\u00D3\u00D4\u0150\u00D6\u015A\u0170\u00D9\u00DA\u00DB\u00DC\u0118\u021A\u00DF"
    u"\u00E0\u00E1\u00E2\u0103\u00E4\u0107\u00E6\u00E7\u00E8\u00E9\u00EA\u00EB\u00EC\u00ED\u00EE\u00EF"
    u"\u0111\u0144\u00F2\u00F3\u00F4\u0151\u00F6\u015B\u0171\u00F9\u00FA\u00FB\u00FC\u0119\u021B\u00FF";

void appendFromLatin10(std::string& out, std::string_view bytes) {
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const auto byte = byteAt(bytes, at);
    appendCharacter(out, byte >= 0xA0 ? kLatin10[byte - 0xA0] : byte);
  }
}

void appendFromWindows1252(std::string& out, std::string_view bytes) {
  constexpr std::size_t kBlock = 8;  // which skipAscii stops before
  for (std::size_t at = 0; at < bytes.size();) {
    const auto ascii = skipAscii(bytes, at);
    out.append(bytes.substr(at, ascii - at));
    const auto end = std::min(ascii + kBlock, bytes.size());
    for (at = ascii; at < end; ++at) appendWindows1252(out, byteAt(bytes, at));
  }
}

// Bytes that the next ones may make a character of.
bool isCutCharacter(std::string_view text, std::size_t at) {
  const auto lead = byteAt(text, at);
  return lead >= 0xC2 && lead <= 0xF4 && text.size() - at < lengthBy(lead) &&
         std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at) + 1, text.end(), continuesCharacter);
}

// Appends `bytes` as UTF-8, a stray byte as Windows-1252. Unless they are the last, a character that is not whole yet
// is left: the number of bytes taken.
std::size_t appendRepaired(std::string& out, std::string_view bytes, bool last) {
  std::size_t at = 0;
  while (at < bytes.size()) {
    const auto end = wholeUtf8(bytes, at);
    out.append(bytes.substr(at, end - at));
    at = end;
    if (at == bytes.size() || (!last && isCutCharacter(bytes, at))) break;
    appendWindows1252(out, byteAt(bytes, at++));
  }
  return at;
}

struct Mark {
  std::string_view bytes;
  std::string_view encoding;
};

constexpr Mark kMarks[] = {{"\xEF\xBB\xBF", kUtf8}, {"\xFE\xFF", kUtf16Big}, {"\xFF\xFE", kUtf16Little}};

// Two ASCII characters at the start of a page, as UTF-16 writes them.
std::string_view looksLikeUtf16(std::string_view start) {
  if (start.size() < 4) return {};
  const auto isText = [start](std::size_t at) { return start[at] != 0 && byteAt(start, at) < 0x80; };
  if (isText(0) && start[1] == 0 && isText(2) && start[3] == 0) return kUtf16Little;
  if (start[0] == 0 && isText(1) && start[2] == 0 && isText(3)) return kUtf16Big;
  return {};
}

}  // namespace

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

TextDecoder::TextDecoder(std::string_view contentType) : headerEncoding_(encodingOf(charsetIn(contentType))) {}

void TextDecoder::append(std::string_view bytes) {
  if (way_ != Way::Undecided) {
    convert(bytes);
    return;
  }
  held_.append(bytes);
  if (held_.size() >= kDeclaredWithin) decide();
}

void TextDecoder::decide() {
  const std::string start = std::exchange(held_, {});
  std::string_view bytes = start;
  for (const auto& [mark, encoding] : kMarks) {
    if (!bytes.starts_with(mark)) continue;
    begin(encoding);
    convert(bytes.substr(mark.size()));
    return;
  }
  auto encoding = headerEncoding_;
  if (encoding.empty()) encoding = declaredEncoding(bytes.substr(0, kDeclaredWithin));
  if (encoding.empty()) encoding = looksLikeUtf16(bytes);
  begin(encoding);
  convert(bytes);
}

void TextDecoder::begin(std::string_view encoding) {
  encoding_ = encoding.empty() ? kUtf8 : encoding;
  const std::string_view decoder = decoderOf(encoding_);
  if (encoding.empty()) {
    way_ = Way::PerhapsUtf8;
  } else if (encoding == kUtf8) {
    way_ = Way::Utf8;
  } else if (decoder == kWindows) {
    way_ = Way::Windows1252;
  } else if (encoding == kLatin10Name) {
    way_ = Way::Latin10;
  } else if (decoder.empty()) {
    way_ = Way::Nothing;
    text_ = kReplacementCharacter;
  } else {
    way_ = Way::Other;
    decoder_ = QStringDecoder(decoder.data());
  }
}

void TextDecoder::convert(std::string_view bytes) {
  switch (way_) {
    case Way::Undecided:
    case Way::Nothing:
      return;
    case Way::PerhapsUtf8:
      return appendPerhapsUtf8(bytes);
    case Way::Windows1252:
      return appendFromWindows1252(text_, bytes);
    case Way::Latin10:
      return appendFromLatin10(text_, bytes);
    case Way::Utf8:
      held_.append(bytes);
      held_.erase(0, appendRepaired(text_, held_, false));
      return;
    case Way::Other:
      const QString text = decoder_(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
      const QByteArray utf8 = encoder_(text);
      text_.append(utf8.data(), static_cast<std::size_t>(utf8.size()));
  }
}

void TextDecoder::appendPerhapsUtf8(std::string_view bytes) {
  text_.append(bytes);
  checked_ = wholeUtf8(text_, checked_);
  if (ascii_ < checked_) skipOwnAscii();
  if (text_.size() - checked_ >= kLongestCharacter) {
    fallBack();
  } else if (checked_ - ascii_ >= kCertain) {
    way_ = Way::Utf8;
    held_ = text_.substr(checked_);
    text_.resize(checked_);
  }
}

void TextDecoder::skipOwnAscii() {
  const std::string_view known = std::string_view(text_).substr(0, checked_);
  ascii_ = skipAscii(known, ascii_);
  while (ascii_ < known.size() && byteAt(known, ascii_) < 0x80) ++ascii_;
}

void TextDecoder::fallBack() {
  const std::string bytes = text_.substr(ascii_);
  text_.resize(ascii_);
  way_ = Way::Windows1252;
  encoding_ = kWindows;
  appendFromWindows1252(text_, bytes);
}

void TextDecoder::finish() {
  if (way_ == Way::Undecided) decide();
  if (way_ == Way::PerhapsUtf8 && checked_ < text_.size()) fallBack();
  if (way_ == Way::Utf8) appendRepaired(text_, std::exchange(held_, {}), true);
}

std::string decodeText(std::string_view bytes, std::string_view contentType) {
  TextDecoder decoder(contentType);
  decoder.append(bytes);
  decoder.finish();
  return std::move(decoder.text());
}

}  // namespace mv
