#include <gtest/gtest.h>

#include "transfer/RequestAddress.h"

namespace {

using namespace mv;

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
      {"http://host/a@b", "http://host/a@b"},
  };
  for (const auto& [address, url] : cases) {
    const auto target = toRequestAddress(address);
    ASSERT_TRUE(target) << address;
    EXPECT_EQ(target->url, url) << address;
  }
  for (const auto* address :
       {"", "http://", "http:///path", "http://user:pass@/x", "http://a b/", "?x", "http://host:8\xC3\xA4/"}) {
    EXPECT_FALSE(toRequestAddress(address)) << address;
  }
}

TEST(RequestAddress, UserInformationIsTakenOutAndDecoded) {
  const auto target = toRequestAddress("http://us%41er:p@ss:w%2frd%%zz%4@host/x@y");
  ASSERT_TRUE(target && target->credentials);
  EXPECT_EQ(target->url, "http://host/x@y");
  EXPECT_EQ(target->credentials->user, "usAer");
  EXPECT_EQ(target->credentials->password, "p@ss:w/rd%%zz%4");
  EXPECT_FALSE(toRequestAddress("http://host/x@y")->credentials);
  EXPECT_FALSE(toRequestAddress("http://:@host/")->credentials) << "nothing to send";
}

TEST(RequestAddress, CredentialsFollowARedirectToTheSameHostOverTlsOnly) {
  using enum CredentialsOnRedirect;
  const std::pair<const char*, CredentialsOnRedirect> cases[] = {
      {"https://host/in", Keep},
      {"HTTPS://HOST:443", Keep},
      {"https://host?x@y", Keep},
      {"/in", AsBefore},
      {"/", AsBefore},
      {"http://host/", Drop},
      {"https://host:8443/", Drop},
      {"https://www.host/", Drop},
      {"https://host@evil", Drop},
      {"https:/evil/", Drop},
      {"https:///evil", Drop},
      {"https://host\\@evil/", Drop},
      {"https://evil @host/", Drop},
      {"//evil/", Drop},
      {"/\\evil/", Drop},
      {"in.htm", Drop},
      {"", Drop},
  };
  for (const auto& [location, what] : cases) EXPECT_EQ(credentialsOnRedirect(location, "host"), what) << location;
}

TEST(RequestAddress, HostsCompareWithTheirPorts) {
  for (const auto* same : {"host", "http://HOST/x", "u:p@host?x", "host:80", "HTTPS://host:443/", "host:"})
    EXPECT_EQ(hostOf(same), "host") << same;
  for (const auto& [address, host] : {std::pair("host:8080/x", "host:8080"), std::pair("https://host:80", "host:80"),
                                      std::pair("me@host@evil/", "evil"), std::pair("http://", "")})
    EXPECT_EQ(hostOf(address), host) << address;
}

}  // namespace
