// The walk through one page: once for its base href, then once for every tag, each link being resolved by the link
// parser. A long walk goes on in later loop iterations, so that a page of any size leaves the windows alive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

#include "scan/SiteLogin.h"
#include "scan/clsLinkParser.h"
#include "scan/clsPageScanner.h"

namespace mv {

class PageWalk {
 public:
  // `parser` outlives the walk.
  explicit PageWalk(clsLinkParser& parser) : parser_(parser) {}

  // The strings that mark a link.
  void setTags(std::vector<std::string> tags);
  // A new page. `basePath` holds unless the page has a base href.
  void begin(std::string html, const std::string& basePath);

  // The parser's URL is a link of the page; false: the page's further links are not wanted.
  using TakeLink = std::function<bool()>;
  // Goes on until the time budget is spent. True when the page is walked through.
  bool goOn(const TakeLink& take);
  // What was taken since goOn() was called last has not been stored: goes back to there.
  void takeBack();

  // How many new addresses of the page walked through had no room in the table (see clsLinkParser); 0 when the same
  // page has come before, with the same lack of room.
  std::int64_t leftOut();
  // The first form of the page walked through.
  PageForm form();
  // Gives the page's memory back.
  void end() { scanner_.setHtml({}); }

 private:
  enum class Phase { BaseHref, Links };
  // Between two links.
  struct Place {
    Phase phase = Phase::BaseHref;
    std::size_t tag = 0;
    std::size_t position = 0;
    std::string baseHref = {};
    std::string basePath = {};
  };

  bool takeFound(const TakeLink& take);
  // False behind the last tag.
  bool beginNextSearch();
  // For the tag at hand, from `position` on.
  void beginSearch(std::size_t position);

  clsLinkParser& parser_;
  clsPageScanner scanner_;
  std::vector<std::string> tags_;
  Place now_;
  Place before_;  // when goOn() was called last
  std::size_t fingerprint_ = 0;
  // Of the pages that had no room for all of their addresses: coming again they get none, or the start page, fetched in
  // every round, would fill the table bit by bit.
  std::unordered_set<std::size_t> full_;
};

}  // namespace mv
