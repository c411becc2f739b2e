#include <gtest/gtest.h>

#include "store/EscapeText.h"

namespace {

TEST(EscapeText, EscapesAndRestores) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"host/page.htm?a=1&b=2", "host/page.htm?a=1&b=2"},
      {"He said \"it's\"", "He said &MV2Qit&MV1Qs&MV2Q"},
      {"a\r\nb", "a&CR&LFb"},
      {"||'", "&PIPE&PIPE&MV1Q"},
  };
  for (const auto& [plain, escaped] : cases) {
    EXPECT_EQ(mv::escaped(plain), escaped);
    EXPECT_EQ(mv::restored(escaped), plain);
  }
}

TEST(EscapeText, ATokenThatWasThereBeforeDoesNotSurvive) {
  EXPECT_EQ(mv::restored(mv::escaped("A&CRB")), "A\rB");
  EXPECT_EQ(mv::restored("&mv1q &MV1q"), "&mv1q &MV1q") << "no token: small letters";
}

}  // namespace
