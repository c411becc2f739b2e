#include <gtest/gtest.h>

#include <ctime>

#include "decoding/Encoding.h"
#include "decoding/TextDecoding.h"

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

// The first of them that a page has counts.
TEST(TextDecoding, TheEncodingOfAPage) {
  const std::string far(1024, ' ');
  const struct {
    const char* what;
    std::string bytes;
    const char* contentType;
    const char* encoding;
  } cases[] = {
      {"a mark goes before the header", "\xEF\xBB\xBF\xC3\xA4", "text/html; charset=koi8-r", "utf-8"},
      {"UTF-16, little, by its mark", "\xFF\xFE\xE4\0"s, "text/html; charset=koi8-r", "utf-16le"},
      {"UTF-16, big, by its mark", "\xFE\xFF\0\xE4"s, "", "utf-16be"},
      {"UTF-16 by the header", "a\0"s, "text/html; charset=utf-16", "utf-16le"},
      {"UTF-16, little, by its looks", "<\0a\0"s, "text/html", "utf-16le"},
      {"UTF-16, big, by its looks", "\0<\0a"s, "text/html", "utf-16be"},
      {"the header goes before the page", "<meta charset=koi8-r>", "text/html; charset = 'latin2'", "iso-8859-2"},
      {"an unknown charset is none", "<meta charset=koi8-r>", "text/html; charset=no-such", "koi8-r"},
      {"quotes", "<META CharSet = \"KOI8-R\">", "", "koi8-r"},
      {"a slash", "<meta/charset='koi8-r'/>", "", "koi8-r"},
      {"behind other attributes and tags", "<!DOCTYPE html><html lang='>'><meta name=x charset=koi8-r>", "", "koi8-r"},
      {"http-equiv", "<meta content='text/html; charset=koi8-r' http-equiv=Content-Type>", "", "koi8-r"},
      {"content without http-equiv", "<meta content='text/html; charset=koi8-r'>", "", "utf-8"},
      {"the first attribute of a name counts", "<meta charset=koi8-u charset=koi8-r>", "", "koi8-u"},
      {"in a comment", "<!-- <meta charset=koi8-r> -->", "", "utf-8"},
      {"in another tag's attribute", "<a title='<meta charset=koi8-r>'>", "", "utf-8"},
      {"not a meta tag", "<metadata charset=koi8-r>", "", "utf-8"},
      {"a page cannot be UTF-16 and say so", "<meta charset=utf-16be>\xC3\xA4", "", "utf-8"},
      {"within 1,024 bytes", far.substr(22) + "<meta charset=koi8-r>", "", "koi8-r"},
      {"behind 1,024 bytes", far + "<meta charset=koi8-r>", "", "utf-8"},
      {"XML declaration", "<?xml version='1.0' encoding=\"iso-8859-5\"?><html>", "", "iso-8859-5"},
      {"declared UTF-8 that is not", "<meta charset=utf-8>\xE4", "", "utf-8"},
      {"none, and not UTF-8", far + "\xE4 and more", "", "windows-1252"},
      {"none, and not UTF-8 at the very end", far + "\xE4", "", "windows-1252"},
  };
  for (const auto& c : cases) {
    TextDecoder decoder(c.contentType);
    for (const char byte : c.bytes) decoder.append({&byte, 1});
    decoder.finish();
    EXPECT_EQ(decoder.encoding(), c.encoding) << c.what;
    EXPECT_EQ(decoder.text(), decodeText(c.bytes, c.contentType)) << c.what << ": byte by byte or all at once";
  }
}

TEST(TextDecoding, LabelsMeanWhatTheyMeanOnTheWeb) {
  const struct {
    const char* label;
    std::string bytes;
    const char* text;
  } cases[] = {
      {"gb2312", "\x81\x30\x81\x30\xA8\xA4", "\xC2\x80\xC3\xA0"},  // more than the old set
      {"Shift_JIS", "\x87\x40", "\xE2\x91\xA0"},
      {"ks_c_5601-1987", "\x81\x41", "\xEA\xB0\x82"},
      {" latin5\n", "\x80\xFD", "\xE2\x82\xAC\xC4\xB1"},
      {"tis-620", "\x80\xA1", "\xE2\x82\xAC\xE0\xB8\x81"},
      {"iso-8859-16", "\x93\xA4\xFE", "\xC2\x93\xE2\x82\xAC\xC8\x9B"},
      {"l1", "\x93", "\xE2\x80\x9C"},
      {"visual", "\xE0", "\xD7\x90"},
      {"koi8-ru", "\xA4", "\xD1\x94"},
      {"x-mac-ukrainian", "\x80", "\xD0\x90"},
      {"big5", "\xA4\x40", "\xE4\xB8\x80"},
      {"x-euc-jp", "\xA4\xA2", "\xE3\x81\x82"},
      {"csiso2022jp", "\x1B$B$\"\x1B(B", "\xE3\x81\x82"},
      {"hz-gb-2312", "~{<a href=x>", "\xEF\xBF\xBD"},
      {"utf-16", "\x3D\xD8\0\xDE"s, "\xF0\x9F\x98\x80"},
  };
  for (const auto& c : cases)
    EXPECT_EQ(decodeText(c.bytes, "charset=\"" + std::string(c.label) + "\""), c.text) << c.label;
  for (const char* name :
       {"ibm866", "iso-8859-3", "iso-8859-8-i", "iso-8859-10", "iso-8859-13", "iso-8859-14", "iso-8859-15", "macintosh",
        "windows-874", "windows-1258", "gb18030", "euc-kr", "iso-2022-jp", "big5"}) {
    EXPECT_EQ(encodingOf(name), name);
    EXPECT_TRUE(QStringDecoder(decoderOf(name)).isValid()) << name;
  }
  for (const char* none : {"", "utf", "latin1 latin2", "iso-8859-12"}) EXPECT_EQ(encodingOf(none), "") << none;
}

TEST(TextDecoding, QueriesAreWrittenInThePagesEncoding) {
  EXPECT_EQ(encodedForQuery("?q=\xC3\xA4%C3+ b", "utf-8"), "?q=%C3%A4%C3+ b");
  EXPECT_EQ(encodedForQuery("\xC3\xA4", "windows-1252"), "%E4");
  EXPECT_EQ(encodedForQuery("\xE3\x81\x82", "shift_jis"), "%82%A0");
  EXPECT_EQ(encodedForQuery("\xE3\x81\x82", "utf-16le"), "%E3%81%82");
  EXPECT_EQ(encodedForQuery("\xC3\xA4\xCE\xB1", "windows-1252"), "%E4%26%23945%3B");
}

// What holds a page for UTF-8 is read anew at its first stray byte, and that has a bound.
TEST(TextDecoding, AStrayByteBehindMuchUtf8IsReadByItself) {
  const std::string ascii(1'000'000, 'x');
  const auto letters = [](std::size_t count) {
    std::string text;
    while (count-- > 0) text += "\xC3\xA4";
    return text;
  };
  EXPECT_EQ(decodeText(ascii + "\xE4", ""), ascii + "\xC3\xA4");
  EXPECT_EQ(decodeText(ascii + "\xC3\xA4 \x80", ""), ascii + "\xC3\x83\xC2\xA4 \xE2\x82\xAC");
  const std::string certain = ascii + letters(200'000);
  EXPECT_EQ(decodeText(certain + "\xE4z\xC3", ""), certain + "\xC3\xA4z\xC3\x83");
  mv::TextDecoder pieces;
  for (std::size_t at = 0; at < certain.size(); at += 777) pieces.append(std::string_view(certain).substr(at, 777));
  pieces.append("\xE4z");
  pieces.finish();
  EXPECT_EQ(pieces.text(), certain + "\xC3\xA4z");
  EXPECT_EQ(pieces.encoding(), "utf-8");
}

// Of a long one that holds a character more than the encoding has, each is looked at.
TEST(TextDecoding, ALongQueryTakesNoLongerThanItsCharacters) {
  std::string query;
  while (query.size() < 8000) query += "\xD0\xB6";
  const std::clock_t start = std::clock();
  for (int i = 0; i < 20; ++i)
    EXPECT_TRUE(encodedForQuery(query + "\xE6\xBC\xA2", "windows-1251").ends_with("%E6%E6%26%2328450%3B"));
  EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC * 35 / 100);
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
