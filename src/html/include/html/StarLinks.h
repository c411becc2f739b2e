// The links of a page behind tags with a star: found in one pass over the page for all of them, in pieces, and handed
// out one by one in the order of the page.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "html/AddressResolver.h"
#include "html/HtmlTokenizer.h"
#include "html/StarTag.h"

namespace mv {

class StarLinks {
 public:
  StarLinks();

  // Ends the page.
  void setTags(const std::vector<StarTag>& tags);
  bool hasTags() const { return hasTags_; }

  // A new page, which stays where it is until the last link: valid UTF-8, at `address` (the one that answered).
  void begin(std::string_view page, std::string_view address);
  // Goes through about `bytes` of the page. True when next() is quick.
  bool seek(std::size_t bytes);
  // The next link, as AddressResolver makes it; false behind the last one. One that leads nowhere, or of more than
  // kLongestLink bytes, counts as found, `link` is "".
  bool next(std::string& link);
  static constexpr std::size_t kLongestLink = 8192;

  // So many links of the page next() has given; and back to where it had given `count`, at most that.
  std::size_t given() const { return given_; }
  // Where in the page the value stands that the last link was made of, in bytes.
  std::size_t position() const { return position_; }
  void goBack(std::size_t count);

 private:
  // What an attribute holds.
  enum class Holds : std::uint8_t { Address, Candidates, Refresh, Style, Sheet, Base, HttpEquiv };
  struct Found {
    std::string_view value;
    Holds holds;
  };

  static Holds heldBy(const StarTag& tag);
  void want(const std::string& element, const std::string& attribute, Holds holds);
  void start();
  void take(const HtmlTokenizer::StartTag& tag);
  void takeSheet(std::string_view text);
  void takeStyle(std::string_view text, Holds holds);
  void keep(const Found& found);
  bool isRefresh(const HtmlTokenizer::StartTag& tag) const;
  void takeBase(std::string_view value);
  void follow(const Found& found, std::string& link) const;
  bool followAny(const Found& found, std::string& link) const;

  HtmlTokenizer tokenizer_;
  std::vector<HtmlTokenizer::Wanted> wanted_;
  std::vector<std::vector<Holds>> holds_;  // for every wanted attribute
  bool hasTags_ = false;
  bool wantsSheets_ = false;

  std::string_view page_;
  AddressResolver resolver_;
  bool hasBase_ = false;  // the first one of a page counts
  bool atEnd_ = true;
  bool isFinding_ = false;
  std::vector<Found> found_;  // in the pieces gone through last
  std::size_t next_ = 0;      // of them
  std::size_t given_ = 0;
  std::size_t position_ = 0;
  std::size_t passed_ = 0;  // so many more were given before going back
};

}  // namespace mv
