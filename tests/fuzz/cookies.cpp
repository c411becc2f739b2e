// A file of cookies that a browser gave.
#include "Fuzz.h"
#include "net/CookieFile.h"

void mvfuzz::fuzzOne(std::string_view input) {
  const mv::CookieLines lines = mv::parseCookies(input);
  for (const std::string& cookie : lines.cookies)
    require(cookie.find_first_of("\r\n") == std::string::npos, "a cookie is one line");
  int last = 0;
  for (const auto& refused : lines.refused) {
    require(refused.line > last, "lines are refused in order, each once");
    last = refused.line;
    require(!refused.reason.empty() && refused.reason.size() < 200, "a refusal has a reason, and no value in it");
  }
}
