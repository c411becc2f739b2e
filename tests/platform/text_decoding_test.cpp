#include <gtest/gtest.h>

#include "platform/RequestAddress.h"
#include "platform/TextDecoding.h"

namespace {

using namespace mv;
using namespace std::string_literals;

TEST(TextDecoding, CharsetOfContentType) {
  const std::pair<const char*, const char*> cases[] = {
      {"text/html; charset=UTF-8", "utf-8"},
      {"text/html;CHARSET=\"ISO-8859-2\"; x=1", "iso-8859-2"},
      {"text/html; charset='koi8-r'", "koi8-r"},
      {"text/html", ""},
      {"text/html; charset=", ""},
      {"", ""},
  };
  for (const auto& [type, charset] : cases) EXPECT_EQ(charsetOf(type), charset) << type;
}

TEST(TextDecoding, BytesBecomeUtf8) {
  struct Case {
    const char* what;
    std::string bytes;
    const char* contentType;
    std::string text;
  };
  const Case cases[] = {
      {"plain", "abc", "text/html", "abc"},
      {"UTF-8 unannounced", "\xC3\xA4", "text/html", "\xC3\xA4"},
      {"mark removed", "\xEF\xBB\xBFx", "text/html", "x"},
      {"mark removed, announced", "\xEF\xBB\xBFx", "text/html; charset=utf-8", "x"},
      {"not UTF-8: Windows-1252", "\xE4\x80\x93\x81", "text/html", "\xC3\xA4\xE2\x82\xAC\xE2\x80\x9C\xC2\x81"},
      {"Latin-1 means Windows-1252", "\x80", "text/html; charset=ISO-8859-1", "\xE2\x82\xAC"},
      {"announced Windows-1252 that looks like UTF-8", "\xC3\xA4", "text/html; charset=windows-1252",
       "\xC3\x83\xC2\xA4"},
      {"Latin-2", "\xB1", "text/html; charset=iso-8859-2", "\xC4\x85"},
      {"UTF-16", "a\0\xE4\0"s, "text/html; charset=utf-16le", "a\xC3\xA4"},
      {"unknown charset", "\xE4", "text/html; charset=no-such-thing", "\xC3\xA4"},
      {"NUL stays", "a\0b"s, "text/html", "a\0b"s},
      {"stray byte in UTF-8", "\xC3\xA4 \xE4", "text/html; charset=utf-8", "\xC3\xA4 \xC3\xA4"},
      {"overlong slash", "\xC0\xAF", "text/html; charset=utf-8", "\xC3\x80\xC2\xAF"},
      {"surrogate", "\xED\xA0\x80", "text/html", "\xC3\xAD\xC2\xA0\xE2\x82\xAC"},
      {"cut character", "\xE2\x82", "text/html", "\xC3\xA2\xE2\x80\x9A"},
      {"beyond the last character", "\xF4\x90\x80\x80", "text/html; charset=utf-8",
       "\xC3\xB4\xC2\x90\xE2\x82\xAC\xE2\x82\xAC"},
      {"four bytes", "\xF0\x9F\x98\x80", "text/html", "\xF0\x9F\x98\x80"},
  };
  for (const auto& c : cases) EXPECT_EQ(decodeText(c.bytes, c.contentType), c.text) << c.what;
}

TEST(RequestAddress, WhatGoesOverTheWire) {
  const std::pair<std::string, const char*> cases[] = {
      {"host", "http://host/"},
      {"host/a b", "http://host/a%20b"},
      {" http://host/a\n", "http://host/a"},
      {"HTTPS://host:444?q=1", "HTTPS://host:444/?q=1"},
      {"http://host/a#part", "http://host/a"},
      {"http://host/%41%2f%zz?x=1&amp;y=2", "http://host/%41%2f%zz?x=1&amp;y=2"},
      {"http://host/\xC3\xA4<>\"{}|\\^`\x01.", "http://host/%C3%A4%3C%3E%22%7B%7D%7C%5C%5E%60%01."},
      {"http://b\xC3\xBC"
       "cher.example:81/",
       "http://xn--bcher-kva.example:81/"},
      {"http://u:p@b\xC3\xBC"
       "cher.example",
       "http://xn--bcher-kva.example/"},
      {"http://[::1]:80/", "http://[::1]:80/"},
      {"host/?u=http://other/", "http://host/?u=http://other/"},
      {"http://host/a@b", "http://host/a@b"},
  };
  for (const auto& [address, url] : cases) {
    const auto target = toRequestAddress(address);
    ASSERT_TRUE(target) << address;
    EXPECT_EQ(target->url, url) << address;
  }
  for (const auto* address : {"", "http://", "http:///path", "http://user:pass@/x", "http://a b/", "?x"}) {
    EXPECT_FALSE(toRequestAddress(address)) << address;
  }
}

TEST(RequestAddress, UserInformationIsTakenLiterally) {
  const auto target = toRequestAddress("http://us%41er:p@ss:w%20rd@host/x@y");
  ASSERT_TRUE(target && target->credentials);
  EXPECT_EQ(target->url, "http://host/x@y");
  EXPECT_EQ(target->credentials->user, "us%41er");
  EXPECT_EQ(target->credentials->password, "p@ss:w%20rd");
  EXPECT_FALSE(toRequestAddress("http://host/x@y")->credentials);

  EXPECT_EQ(withoutCredentials("from http://a:b@host/x to 'https://c@host' and http://d/e@f"),
            "from http://***@host/x to 'https://***@host' and http://d/e@f");
}

}  // namespace
