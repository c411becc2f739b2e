// Pulls links out of a page's text by plain string search. Every call of getLink consumes the text up to the place
// found, so that successive calls walk through the page. A page of a million links is walked in time linear in its
// length.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "scan/TagIndex.h"

namespace mv {

class clsPageScanner {
 public:
  // The text still to be searched.
  void setHtml(std::string html);
  std::string_view html() const;
  // Makes html() the whole text last set again.
  void restart();
  // Where html() begins in that text, and back to there.
  std::size_t position() const { return position_; }
  void goTo(std::size_t position);

  // Search strings that the page will be walked for: the whole tags among them are then found in one pass over the
  // page. What getLink finds does not depend on it.
  void expect(const std::vector<std::string>& searchStrings);

  // Exact and case-sensitive. One that begins with "<" is a whole tag up to its "="; any other is an attribute.
  // Setting it sets LinkFound.
  void setSearchString(std::string searchString);
  const std::string& SearchString() const { return searchString_; }

  // Put in front of links that are neither absolute nor explicitly relative.
  std::string BasePath;
  // The form that getForm cut out, "" when none, and the same bytes of the page in the letter case in which it came.
  std::string Form;
  std::string FormAsFetched;

  // The last link found, "" when none.
  const std::string& Link() const { return link_; }
  bool LinkFound() const { return linkFound_; }

  // Finds the next occurrence of SearchString. A link of more than kLongestLink bytes (embedded data, a tag without an
  // end) is no address that a server takes: it counts as found, Link is "".
  void getLink();
  static constexpr std::size_t kLongestLink = 8192;
  // Does part of getLink's search ahead: goes through `bytes` of the page. True when the rest of getLink is quick. For
  // walking through a huge page in short steps.
  bool seek(std::size_t bytes);
  // Lower-cases html (ASCII letters, so that every byte keeps its place) and cuts its first form out of it.
  void getForm();

 private:
  // The places of one character, remembered so that no part of the page is searched twice in a walk.
  struct Finder {
    std::size_t searchedFrom = 0;
    std::size_t searchedTo = 0;
    std::size_t found = std::string::npos;  // the first one in between
    // The first `c` in [from, to), `to` when there is none.
    std::size_t next(std::string_view text, char c, std::size_t from, std::size_t to);
  };
  void start();
  bool seekPlace();
  std::string_view takeTag(std::size_t at);
  std::optional<std::string_view> takeAttribute(std::size_t at);
  void setLink(std::string_view found);
  void notFound();

  std::string page_;
  std::size_t position_ = 0;   // where html() starts
  std::size_t seeked_ = 0;     // no occurrence starts between position_ and here
  bool atOccurrence_ = false;  // one starts at seeked_
  std::string searchString_;
  TagIndex index_;
  const TagIndex::Places* places_ = nullptr;  // of searchString_, when it was expected
  std::size_t place_ = 0;                     // the next of them
  std::string link_;
  bool linkFound_ = true;
  Finder angle_, quote_, space_;
};

}  // namespace mv
