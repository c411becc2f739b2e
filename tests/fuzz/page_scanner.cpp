// The walk through a page: a search string of the input's, the shipped ones, and the page.
#include <string>
#include <vector>

#include "Fuzz.h"
#include "scan/clsPageScanner.h"

namespace {

using Links = std::vector<std::string>;

Links walk(mv::clsPageScanner& scanner, const std::string& searchString, std::size_t stepBytes) {
  Links links;
  scanner.restart();
  scanner.setSearchString(searchString);
  const std::size_t most = scanner.html().size() + 1;
  while (scanner.LinkFound()) {
    if (stepBytes > 0 && !scanner.seek(stepBytes)) continue;
    scanner.getLink();
    mvfuzz::require(scanner.Link().size() <= mv::clsPageScanner::kLongestLink + scanner.BasePath.size(),
                    "a link's length");
    links.push_back(scanner.Link());
    mvfuzz::require(links.size() <= most, "every call consumes some of the page");
  }
  return links;
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string own(takePart(input));
  std::vector<std::string> searchStrings{"<a href=", "<img src=", "src=", "background=", "<base href="};
  if (!own.empty()) searchStrings.push_back(own);

  mv::clsPageScanner one;
  mv::clsPageScanner indexed;
  one.BasePath = indexed.BasePath = "host.example/folder/";
  indexed.expect(searchStrings);
  one.setHtml(std::string(input));
  indexed.setHtml(std::string(input));
  for (const std::string& searchString : searchStrings) {
    const Links links = walk(one, searchString, 0);
    require(links == walk(indexed, searchString, 0), "the index finds what the search finds");
    require(links == walk(indexed, searchString, 7), "short steps find what one search finds");
  }
  one.restart();
  one.getForm();
  require(one.Form.size() == one.FormAsFetched.size(), "a form keeps its bytes' places");
}
