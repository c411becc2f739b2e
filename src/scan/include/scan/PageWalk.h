// The walk through one page: once for its base href, then once for every tag, but only once for all tags with a star,
// at the place of the first of them; each link being resolved by the link parser. A long walk goes on in later loop
// iterations, so that a page of any size leaves the windows alive.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "scan/SiteLogin.h"
#include "scan/StarLinks.h"
#include "scan/clsLinkParser.h"
#include "scan/clsPageScanner.h"

namespace mv {

class PageWalk {
 public:
  // `parser` outlives the walk.
  explicit PageWalk(clsLinkParser& parser) : parser_(parser) {}

  // The strings that mark a link.
  void setTags(const std::vector<std::string>& tags);
  struct Page {
    std::string text;                     // UTF-8
    std::string basePath;                 // of links behind plain tags, unless the page has a base href
    std::string address;                  // that answered: links behind tags with a star are resolved against it
    std::string contentType = {};         // as the server names it; a page that is not HTML has no tags with a star
    AddressResolver::Encode encode = {};  // for AddressResolver
  };
  void begin(Page page);

  // The parser's URL is a link of the page; false: the page's further links are not wanted.
  using TakeLink = std::function<bool()>;
  // Goes on until the time budget is spent. True when the page is walked through.
  bool goOn(const TakeLink& take);

  // The first form of the page walked through.
  PageForm form();
  // Gives the page's memory back.
  void end();

 private:
  enum class Phase { BaseHref, Plain, Stars };

  // Goes on by a stretch of the page; true with a link, which may be "".
  bool findLink();
  bool takeFound(const TakeLink& take);
  // False behind the last tag.
  bool beginNextSearch();

  clsLinkParser& parser_;
  clsPageScanner scanner_;
  std::vector<std::string> tags_;  // the plain ones
  StarLinks stars_;
  std::size_t starPlace_ = 0;  // so many plain tags stand before the first star
  bool starsDue_ = false;
  std::string address_;
  AddressResolver::Encode encode_;
  Phase phase_ = Phase::BaseHref;
  std::size_t tag_ = 0;  // the next plain one
  bool isOver_ = false;  // the search that phase_ is in
  std::string link_;
  std::string baseHref_;
  std::string basePath_;
};

}  // namespace mv
