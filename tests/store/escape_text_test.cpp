#include <gtest/gtest.h>

#include "store/EscapeText.h"

namespace {

struct Case {
  const char* plain;
  const char* escaped;
};

TEST(EscapeText, EscapesAndRestores) {
  const Case cases[] = {
      {"", ""},
      {"host/page.htm?a=1&b=2", "host/page.htm?a=1&b=2"},
      {"He said \"it's\"", "He said &MV2Qit&MV1Qs&MV2Q"},
      {"a\r\nb", "a&CR&LFb"},
      {"||'", "&PIPE&PIPE&MV1Q"},
      {"\"", "&MV2Q"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(mv::escaped(c.plain), c.escaped);
    EXPECT_EQ(mv::restored(c.escaped), c.plain);
  }
}

TEST(EscapeText, ATokenThatWasThereBeforeDoesNotSurvive) {
  EXPECT_EQ(mv::restored(mv::escaped("A&CRB")), "A\rB");
  EXPECT_EQ(mv::restored("&mv1q &MV1q"), "&mv1q &MV1q") << "no token: small letters";
}

TEST(EscapeText, AnyOtherModeDoesNothing) {
  for (const char* mode : {"kDropFilter", "kremovequotes", ""}) {
    std::string text = "it's &MV1Q";
    mv::escapeText(mode, text);
    EXPECT_EQ(text, "it's &MV1Q") << mode;
  }
}

}  // namespace
