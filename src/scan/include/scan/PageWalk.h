// The walk through one page: once for its base href, then once for every tag, but only once for all tags with a star,
// at the place of the first of them; each link being resolved by the link parser. A long walk goes on in later loop
// iterations, so that a page of any size leaves the windows alive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "scan/SiteLogin.h"
#include "scan/clsLinkParser.h"
#include "scan/clsPageScanner.h"

namespace mv {

class StarLinks;

class PageWalk {
 public:
  // `parser` outlives the walk.
  explicit PageWalk(clsLinkParser& parser);
  ~PageWalk();
  PageWalk(const PageWalk&) = delete;
  PageWalk& operator=(const PageWalk&) = delete;

  // The strings that mark a link.
  void setTags(const std::vector<std::string>& tags);
  struct Page {
    std::string text;              // UTF-8
    std::string basePath;          // of links behind plain tags, unless the page has a base href
    std::string address;           // that answered: links behind tags with a star are resolved against it
    std::string contentType = {};  // as the server names it; a page that is not HTML has no tags with a star
  };
  void begin(Page page);

  // The parser's URL is a link of the page; false: the page's further links are not wanted.
  using TakeLink = std::function<bool()>;
  // Goes on until the time budget is spent. True when the page is walked through.
  bool goOn(const TakeLink& take);
  // How far that is, 0 to 100.
  int percent() const;
  // What was taken since goOn() was called last has not been stored: goes back to there.
  void takeBack();

  // How many new addresses of the page walked through had no room in the table (see clsLinkParser); 0 when the same
  // page has come before, with the same lack of room.
  std::int64_t leftOut();
  // Looks for the first form of the page walked through until the time budget is spent. True when form() is quick.
  bool seekForm();
  // The form that seekForm() has found. One of more than 2 MiB is no login's, and counts as none.
  PageForm form();
  // Gives the page's memory back.
  void end();

 private:
  enum class Phase { BaseHref, Plain, Stars };
  // Between two links.
  struct Place {
    Phase phase = Phase::BaseHref;
    bool starsDue = false;
    bool isOver = false;       // the search of the phase
    std::size_t tag = 0;       // the next plain one
    std::size_t position = 0;  // of the scanner, when goOn() began
    std::size_t given = 0;     // by the tags with a star, likewise
    std::string baseHref = {};
    std::string basePath = {};
  };

  // Goes on by a stretch of the page; true with a link, which may be "".
  bool findLink();
  bool takeFound(const TakeLink& take);
  // False behind the last tag.
  bool beginNextSearch();
  // Has the scanner look for the plain tag at hand, from `position` on.
  void beginSearch(std::size_t position);

  clsLinkParser& parser_;
  clsPageScanner scanner_;
  std::vector<std::string> tags_;  // the plain ones
  std::unique_ptr<StarLinks> stars_;
  std::size_t starPlace_ = 0;  // so many plain tags stand before the first star
  std::string address_;
  std::string link_;
  Place now_;
  Place before_;  // when goOn() was called last
  struct FormPlace {
    std::optional<std::size_t> begin = {};
    std::size_t end = 0;  // 0: it has not been found
    std::size_t sought = 0;
  };
  FormPlace formPlace_;
  std::size_t fingerprint_ = 0;
  // Of the pages that had no room for all of their addresses: coming again they get none, or the start page, fetched in
  // every round, would fill the table bit by bit.
  std::unordered_set<std::size_t> full_;
};

}  // namespace mv
