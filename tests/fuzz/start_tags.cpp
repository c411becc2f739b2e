// The links behind tags with a star: a tag of the input's, the page's address, the page.
#include <string>
#include <vector>

#include "Fuzz.h"
#include "html/StarLinks.h"
#include "html/StarTag.h"

namespace {

using Links = std::vector<std::string>;

Links linksOf(mv::StarLinks& finder, std::string_view page, std::string_view address, std::size_t stepBytes) {
  Links links;
  finder.begin(page, address);
  while (!finder.seek(stepBytes)) {
  }
  std::string link;
  while (finder.next(link)) {
    mvfuzz::require(link.size() <= mv::StarLinks::kLongestLink, "a link's length");
    mvfuzz::require(link.find_first_of("\t\r\n#") == std::string::npos, "no line break and no fragment in a link");
    links.push_back(link);
    mvfuzz::require(links.size() <= page.size(), "a tag gives its links once");
    while (!finder.seek(stepBytes)) {
    }
  }
  return links;
}

}  // namespace

void mvfuzz::fuzzOne(std::string_view input) {
  const std::string own(takePart(input));
  const std::string address(takePart(input));
  if (!isUtf8(address) || !isUtf8(input)) return;  // a page is decoded before
  std::vector<mv::StarTag> tags;
  for (const char* text : {"<a * href=", "<img * src=", "<img * srcset=", "<meta * content=", "<object * data="})
    tags.push_back(*mv::StarTag::parse(text));
  if (const auto tag = mv::StarTag::parse(own)) tags.push_back(*tag);

  mv::StarLinks finder;
  finder.setTags(tags);
  const Links links = linksOf(finder, input, address, std::size_t{1} << 20);
  require(links == linksOf(finder, input, address, 7), "short steps find what one pass finds");
  if (links.empty()) return;
  finder.goBack(links.size() / 2);
  std::string link;
  while (!finder.seek(64)) {
  }
  require(finder.next(link) && link == links[links.size() / 2], "going back finds the same link again");
}
