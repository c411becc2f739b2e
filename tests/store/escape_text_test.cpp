#include <gtest/gtest.h>

#include "store/EscapedAddress.h"

namespace {

using mv::EscapedAddress;

// Neither stored raw nor restored twice.
static_assert(!std::is_constructible_v<EscapedAddress, std::string>);
static_assert(!std::is_constructible_v<EscapedAddress, const char*>);
static_assert(!std::is_assignable_v<EscapedAddress&, std::string>);
static_assert(!std::is_convertible_v<EscapedAddress, std::string>);

TEST(EscapeText, EscapesAndRestores) {
  const std::pair<const char*, const char*> cases[] = {
      {"", ""},
      {"host/page.htm?a=1&b=2", "host/page.htm?a=1&b=2"},
      {"He said \"it's\"", "He said &MV2Qit&MV1Qs&MV2Q"},
      {"a\r\nb", "a&CR&LFb"},
      {"||'", "&PIPE&PIPE&MV1Q"},
  };
  for (const auto& [plain, escaped] : cases) {
    EXPECT_EQ(EscapedAddress::escape(plain).text(), escaped);
    EXPECT_EQ(EscapedAddress::escape(plain).restored(), plain);
  }
}

TEST(EscapeText, ATokenThatWasThereBeforeDoesNotSurvive) {
  EXPECT_EQ(EscapedAddress::escape("A&CRB").restored(), "A\rB");
  EXPECT_EQ(EscapedAddress::escape("&mv1q &MV1q").restored(), "&mv1q &MV1q") << "no token: small letters";
}

}  // namespace
