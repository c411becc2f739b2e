// Bytes of a page to UTF-8.
#pragma once

#include <QStringDecoder>
#include <QStringEncoder>
#include <cstddef>
#include <string>
#include <string_view>

namespace mv {

// Decodes a page as it comes in. Its encoding is that of its byte order mark, else of the header's charset, else of
// what its first 1,024 bytes declare (meta element, XML declaration), else UTF-16 when they look so, else UTF-8 when
// all of the page is valid UTF-8, or 256 KiB from the first character on that is not ASCII, else Windows-1252. A
// charset that is not known counts as none. In a page of UTF-8 each stray byte is read as Windows-1252.
class TextDecoder {
 public:
  // `contentType`: the header's value.
  explicit TextDecoder(std::string_view contentType = {});

  void append(std::string_view bytes);
  // The text is complete, and the encoding known, after this only.
  void finish();

  // What has been decoded so far; always valid UTF-8 after finish(). NUL characters stay. A mark is left out.
  std::string& text() { return text_; }
  // As encodingOf names it.
  std::string_view encoding() const { return encoding_; }

 private:
  enum class Way { Undecided, PerhapsUtf8, Utf8, Windows1252, Latin10, Other, Nothing };

  void decide();
  void begin(std::string_view encoding);
  void convert(std::string_view bytes);
  void appendPerhapsUtf8(std::string_view bytes);
  void skipOwnAscii();
  void fallBack();

  std::string_view headerEncoding_;
  Way way_ = Way::Undecided;
  std::string_view encoding_;
  std::string held_;  // not decoded yet: the start of the page, or a character that is not whole
  std::string text_;
  std::size_t checked_ = 0;  // valid UTF-8 up to here
  std::size_t ascii_ = 0;    // ASCII up to here
  QStringDecoder decoder_;
  QStringEncoder encoder_{QStringEncoder::Utf8};  // keeps the first half of a character until the second comes
};

// `bytes`, a whole text, as UTF-8.
std::string decodeText(std::string_view bytes, std::string_view contentType);

// The end of the well-formed UTF-8 characters that begin at `from`: the text's size when all of it is UTF-8.
std::size_t wholeUtf8(std::string_view text, std::size_t from);

}  // namespace mv
