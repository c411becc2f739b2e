// The walk through one page: once for its base href, then once for every tag, each link being resolved by the link
// parser. A long walk goes on in later loop iterations, so that a page of any size leaves the windows alive.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
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

  // The first form of the page walked through.
  PageForm form();
  // Gives the page's memory back.
  void end() { scanner_.setHtml({}); }

 private:
  enum class Phase { BaseHref, Links };

  bool takeFound(const TakeLink& take);
  // False behind the last tag.
  bool beginNextSearch();

  clsLinkParser& parser_;
  clsPageScanner scanner_;
  std::vector<std::string> tags_;
  Phase phase_ = Phase::BaseHref;
  std::size_t tag_ = 0;
  std::string baseHref_;
  std::string basePath_;
};

}  // namespace mv
