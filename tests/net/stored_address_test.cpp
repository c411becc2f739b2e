#include <gtest/gtest.h>

#include "net/StoredAddress.h"
#include "transfer/RequestAddress.h"
#include "transfer/SiteLocation.h"

namespace {

using namespace mv;
using namespace std::string_literals;

TEST(StoredAddress, PathsStayReadableAndQueriesAreEncoded) {
  const std::tuple<std::string, const char*, std::string> cases[] = {
      {"host/plain?a=%41&b=c d", "windows-1252", "host/plain?a=%41&b=c d"},
      {"host/\xC3\xA4%C3%A4?q=\xC3\xA4", "windows-1252", "host/\xC3\xA4%C3%A4?q=%E4"},
      {"host/\xC3\xA4?q=\xC3\xA4&r=%E4", "utf-8", "host/\xC3\xA4?q=%C3%A4&r=%E4"},
      {"host/a?q=\xC3\xA4#\xC3\xA4", "utf-8", "host/a?q=%C3%A4#\xC3\xA4"},
      {"host/a\0b?c\0d"s, "utf-8",
       "host/a\xEF\xBF\xBD"
       "b?c%EF%BF%BDd"},
  };
  for (const auto& [found, encoding, stored] : cases) {
    EXPECT_EQ(storedAddress(found, encoding), stored);
    EXPECT_EQ(storedAddress(stored, "koi8-r"), stored) << "stored twice";
  }
  EXPECT_EQ(toRequestAddress("host/\xC3\xA4?q=%E4")->url, "http://host/%C3%A4?q=%E4");
}

TEST(SiteLocation, TheHostStandsBehindTheScheme) {
  const struct {
    const char* name;
    const char* address;
    const char* host;
    const char* asked;
  } cases[] = {
      {"host/a/b.htm", "host/a/b.htm", "host", "http://host/a/b.htm"},
      {"https://host:8443/a", "host:8443/a", "host:8443", "https://host:8443/a"},
      {"HTTPS://Host", "Host", "Host", "https://Host"},
      {"HTTP://host/x", "host/x", "host", "http://host/x"},
      {"", "", "", "http://"},
  };
  for (const auto& c : cases) {
    const SiteLocation location(c.name);
    EXPECT_EQ(location.address(), c.address);
    EXPECT_EQ(location.host(), c.host);
    EXPECT_EQ(location.withScheme(), c.asked);
  }
}

}  // namespace
