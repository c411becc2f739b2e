#include <gtest/gtest.h>

#include "transfer/TextDecoding.h"

namespace {

using namespace mv;
using namespace std::string_literals;

TEST(TextDecoding, BytesBecomeUtf8) {
  struct Case {
    const char* what;
    std::string bytes;
    const char* contentType;
    std::string text;
  };
  const Case cases[] = {
      {"no charset named", "abc", "text/html; charset=", "abc"},
      {"UTF-8 unannounced", "\xC3\xA4", "text/html", "\xC3\xA4"},
      {"mark removed, announced", "\xEF\xBB\xBFx", "text/html; charset=utf-8", "x"},
      {"not UTF-8: Windows-1252", "\xE4\x80\x93\x81", "text/html", "\xC3\xA4\xE2\x82\xAC\xE2\x80\x9C\xC2\x81"},
      {"Latin-1 means Windows-1252", "\x80", "text/html; charset=ISO-8859-1", "\xE2\x82\xAC"},
      {"announced Windows-1252 that looks like UTF-8", "\xC3\xA4", "text/html; charset=windows-1252",
       "\xC3\x83\xC2\xA4"},
      {"Latin-2", "\xB1", "text/html;CHARSET=\"ISO-8859-2\"; x=1", "\xC4\x85"},
      {"UTF-16", "a\0\xE4\0"s, "text/html; charset='utf-16le'", "a\xC3\xA4"},
      {"unknown charset", "\xE4", "text/html; charset=no-such-thing", "\xC3\xA4"},
      {"stray byte in UTF-8", "\xC3\xA4 \xE4", "text/html; charset=utf-8", "\xC3\xA4 \xC3\xA4"},
      {"surrogate", "\xED\xA0\x80", "text/html", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},
      {"beyond the last character", "\xF4\x90\x80\x80", "text/html; charset=utf-8",
       "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC"},
  };
  for (const auto& c : cases) EXPECT_EQ(decodeText(c.bytes, c.contentType), c.text) << c.what;
}

// As a page comes in: wherever it is cut, the parts lead to where the whole does.
TEST(TextDecoding, Utf8IsFoundOutPieceByPiece) {
  const std::string good = "plain ascii text, \xC3\xA4, \xE2\x82\xAC and \xF0\x9F\x98\x80 behind it";
  for (const auto& [text, end] : {std::pair(good, good.size()), std::pair(good + "\x80 stray", good.size()),
                                  std::pair(good + "\xE2\x82", good.size())}) {
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
      const std::size_t first = mv::wholeUtf8(std::string_view(text).substr(0, cut), 0);
      EXPECT_EQ(mv::wholeUtf8(text, first), end) << "cut at " << cut;
    }
  }
}

}  // namespace
