#include "scan/TagIndex.h"

#include <algorithm>
#include <limits>

namespace mv {

namespace {

constexpr std::size_t kRememberedPlaces = std::size_t{1} << 16;  // room kept from page to page
constexpr std::size_t kFurthestPlace = std::numeric_limits<std::uint32_t>::max();

}  // namespace

void TagIndex::setTags(const std::vector<std::string>& tags) {
  clear();
  tags_.clear();
  byText_.clear();
  bySecond_.fill({});
  for (const std::string& tag : tags) {
    if (tag.size() < 2 || tag.front() != '<' || !byText_.emplace(tag, tags_.size()).second) continue;
    bySecond_[static_cast<unsigned char>(tag[1])].push_back(tags_.size());
    tags_.push_back({tag.substr(2), {}});
  }
}

const TagIndex::Places* TagIndex::placesOf(const std::string& tag) const {
  const auto found = byText_.find(tag);
  return found == byText_.end() ? nullptr : &tags_[found->second].places;
}

void TagIndex::clear() {
  const bool giveBack = placeCount_ > kRememberedPlaces;
  for (Tag& tag : tags_) {
    tag.places.clear();
    if (giveBack) tag.places.shrink_to_fit();
  }
  knownTo_ = placeCount_ = 0;
}

bool TagIndex::advance(std::string_view page, std::size_t bytes) {
  const std::size_t last = std::min(page.size(), kFurthestPlace);
  const std::size_t end = knownTo_ + std::min(bytes, last - knownTo_);
  const std::string_view searched = page.substr(0, end);
  while (knownTo_ < end && placeCount_ < kMostPlaces) {
    const std::size_t at = searched.find('<', knownTo_);
    if (at == std::string_view::npos) {
      knownTo_ = end;
      break;
    }
    note(page, at);
    knownTo_ = at + 1;
  }
  return knownTo_ >= last || placeCount_ >= kMostPlaces;
}

void TagIndex::note(std::string_view page, std::size_t at) {
  if (at + 1 >= page.size()) return;
  const std::string_view behind = page.substr(at + 2);
  for (const std::size_t number : bySecond_[static_cast<unsigned char>(page[at + 1])]) {
    Tag& tag = tags_[number];
    if (!behind.starts_with(tag.rest)) continue;
    tag.places.push_back(static_cast<std::uint32_t>(at));
    ++placeCount_;
  }
}

}  // namespace mv
