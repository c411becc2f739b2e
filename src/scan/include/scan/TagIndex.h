// Where whole tags begin in a page, for many tags at once: one pass over the page's "<" in place of a search for each.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace mv {

class TagIndex {
 public:
  // Places in a page, in its order.
  using Places = std::vector<std::uint32_t>;
  // More are not kept, so that a page of nothing but tags takes 16 MiB and no more.
  static constexpr std::size_t kMostPlaces = std::size_t{4} << 20;

  // Of `tags` those that begin with "<" and another character; others are left out. Forgets the page.
  void setTags(const std::vector<std::string>& tags);
  // The places of a tag up to knownTo(), null for a text that is none of the tags. Stay where they are until setTags.
  const Places* placesOf(const std::string& tag) const;

  // Forgets the page.
  void clear();
  // Goes on through `page`, the same one since clear(), by at most `bytes`. True when the pass is over.
  bool advance(std::string_view page, std::size_t bytes);
  // What begins before here is known. Less than the whole page at the end of the pass when there were too many places.
  std::size_t knownTo() const { return knownTo_; }

 private:
  struct Tag {
    std::string rest;  // behind its first two characters
    Places places;
  };
  void note(std::string_view page, std::size_t at);

  std::vector<Tag> tags_;
  std::unordered_map<std::string, std::size_t> byText_;
  std::array<std::vector<std::size_t>, 256> bySecond_;  // tags by their second character
  std::size_t knownTo_ = 0;
  std::size_t placeCount_ = 0;
};

}  // namespace mv
