// A link of a page resolved against the page's address, escaped for the table, and made a file name.
#include <string>

#include "FileName.h"
#include "Fuzz.h"
#include "net/Address.h"
#include "scan/clsLinkParser.h"

namespace {

void checkFileName(std::string_view name) {
  using mvfuzz::require;
  const std::string clean = mv::cleanFileName(name);
  require(clean.size() <= 255, "a file name's length");
  require(clean.find_first_of("/\\") == std::string::npos, "no separator in a file name");
  require(clean != "." && clean != "..", "a file name is no folder's");
  for (const char c : clean) require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7f, "no control in a file name");
  require(mv::cleanFileName(clean) == clean, "a clean file name stays as it is");
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  mv::clsLinkParser parser;
  parser.Link = takePart(input);
  parser.BasePath = takePart(input);
  parser.Domain = takePart(input);
  parser.ProcessLink();

  const auto escaped = mv::EscapedAddress::escape(parser.URL);
  require(escaped.text().find_first_of("'\"\n\r|") == std::string::npos, "an escaped address holds no quote");
  // A text that holds a token of its own does not survive the way back.
  if (parser.URL.find("&MV1Q") == std::string::npos && parser.URL.find("&MV2Q") == std::string::npos &&
      parser.URL.find("&LF") == std::string::npos && parser.URL.find("&CR") == std::string::npos &&
      parser.URL.find("&PIPE") == std::string::npos)
    require(escaped.restored() == parser.URL, "an address comes back as it was");

  checkFileName(mv::lastSegment(parser.URL));
  checkFileName(input);
}
