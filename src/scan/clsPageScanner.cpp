#include "scan/clsPageScanner.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"

namespace mv {

namespace {

constexpr auto kEnd = std::string_view::npos;
// How far behind a link's start its end is looked for: its opening quote, and the character dropped before a delimiter,
// come on top of the longest link.
constexpr std::size_t kLongestValue = clsPageScanner::kLongestLink + 8;

// Start of the character before `at`, not before `first`.
std::size_t characterBefore(std::string_view text, std::size_t at, std::size_t first) {
  while (at > first && continuesCharacter(text[--at])) {
  }
  return at;
}

bool needsBasePath(std::string_view link) {
  for (const std::string_view start : {"http://", "https://", "/", "mailto:", "./", "../"})
    if (link.starts_with(start)) return false;
  return true;
}

}  // namespace

std::size_t clsPageScanner::Finder::next(std::string_view text, char c, std::size_t from, std::size_t to) {
  const bool passed = found != kEnd && found < from;
  if (from < searchedFrom || from > searchedTo || passed) {
    searchedFrom = searchedTo = from;
    found = kEnd;
  }
  if (found == kEnd && searchedTo < to) {
    found = text.substr(0, to).find(c, searchedTo);
    searchedTo = found == kEnd ? to : found;
  }
  return std::min(found, to);
}

void clsPageScanner::setHtml(std::string html) {
  page_ = std::move(html);
  angle_ = quote_ = space_ = Finder();
  index_.clear();
  restart();
}

void clsPageScanner::restart() { goTo(0); }

void clsPageScanner::goTo(std::size_t position) {
  position_ = position;
  place_ = 0;
  start();
}

void clsPageScanner::expect(const std::vector<std::string>& searchStrings) {
  index_.setTags(searchStrings);
  setSearchString(std::move(searchString_));
}

std::string_view clsPageScanner::html() const { return std::string_view(page_).substr(position_); }

void clsPageScanner::setSearchString(std::string searchString) {
  searchString_ = std::move(searchString);
  places_ = index_.placesOf(searchString_);
  place_ = 0;
  linkFound_ = true;
  start();
}

void clsPageScanner::start() {
  seeked_ = position_;
  atOccurrence_ = false;
}

bool clsPageScanner::seek(std::size_t bytes) {
  const std::string_view page = page_;
  if (atOccurrence_ || seeked_ >= page.size()) return true;
  if (searchString_.empty()) {
    seeked_ = page.size();
    return true;
  }
  if (places_) {
    if (!index_.advance(page, bytes)) return false;
    if (seekPlace()) return true;
  }
  // Overlapping pieces, so that an occurrence across their border is seen.
  const std::size_t piece = std::min(bytes, page.size() - seeked_);
  const std::size_t at = page.substr(seeked_, piece + searchString_.size() - 1).find(searchString_);
  atOccurrence_ = at != kEnd;
  seeked_ += atOccurrence_ ? at : piece;
  return atOccurrence_ || seeked_ >= page.size();
}

// Goes on to the next known place, or to the end of what is known. True when the search is over.
bool clsPageScanner::seekPlace() {
  while (place_ < places_->size() && (*places_)[place_] < seeked_) ++place_;
  atOccurrence_ = place_ < places_->size();
  seeked_ = atOccurrence_ ? (*places_)[place_] : std::max(seeked_, index_.knownTo());
  return atOccurrence_ || seeked_ >= page_.size();
}

void clsPageScanner::getLink() {
  seek(page_.size());
  if (!atOccurrence_) {
    notFound();
    return;
  }
  const std::size_t at = seeked_;
  const std::optional<std::string_view> found = searchString_.starts_with('<') ? takeTag(at) : takeAttribute(at);
  start();
  if (found)
    setLink(*found);
  else
    notFound();
}

// A whole tag: the text up to the character before ">", out of its quotes.
std::string_view clsPageScanner::takeTag(std::size_t at) {
  const std::string_view page = page_;
  std::size_t from = at + searchString_.size();
  position_ = from;
  const std::size_t last = from + std::min(kLongestValue, page.size() - from);
  const std::size_t angle = angle_.next(page, '>', at, last);
  const std::size_t end = angle < last ? characterBefore(page, angle, at) : last;
  if (from < end && page[from] == '"') ++from;
  if (from >= end) return {};
  return page.substr(from, quote_.next(page, '"', from, end) - from);
}

// An attribute: the text behind its quote up to the character before the next blank. A blank that has no character
// before it ends the walk.
std::optional<std::string_view> clsPageScanner::takeAttribute(std::size_t at) {
  const std::string_view page = page_;
  const std::size_t from = advanceCharacters(page, at + searchString_.size(), 1);
  position_ = advanceCharacters(page, from, characterCount(searchString_));
  const std::size_t last = from + std::min(kLongestValue, page.size() - from);
  const std::size_t space = space_.next(page, ' ', from, last);
  if (space == from && space < last) return std::nullopt;
  return page.substr(from, (space < last ? characterBefore(page, space, from) : last) - from);
}

void clsPageScanner::setLink(std::string_view found) {
  linkFound_ = !found.empty();
  link_.clear();
  if (found.size() > kLongestLink) return;
  if (linkFound_ && needsBasePath(found)) link_ = BasePath;
  link_ += found;
}

void clsPageScanner::notFound() {
  link_.clear();
  linkFound_ = false;
}

void clsPageScanner::getForm() {
  Form.clear();
  FormAsFetched.clear();
  std::string page(html());
  for (char& c : page)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');

  constexpr std::string_view kFormEnd = "</form>";
  const std::size_t begin = page.find("<form");
  const std::size_t end = begin == kEnd ? kEnd : page.find(kFormEnd, begin);
  if (end != kEnd) {
    const std::size_t length = end + kFormEnd.size() - begin;
    Form = page.substr(begin, length);
    FormAsFetched = html().substr(begin, length);
    page = Form;
  }
  setHtml(std::move(page));
}

}  // namespace mv
