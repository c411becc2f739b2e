#include "scan/PageWalk.h"

#include <functional>
#include <string_view>
#include <utility>

#include "BasePath.h"
#include "base/TimeBudget.h"

namespace mv {

namespace {

constexpr const char* kBaseTag = "<base href=";
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 18;  // searched between two looks at the clock

// What the addresses of a page may take in the table, for each of its bytes and beside them. A page's links are pieces
// of it, most of them behind the page's own path: only overlapping tags or a base address of thousands of characters
// make more.
constexpr std::int64_t kRoomPerByte = 64;
constexpr std::int64_t kLeastRoom = std::int64_t{1} << 20;

// Tells pages apart. Of a long one the beginning and the length are enough.
std::size_t fingerprintOf(std::string_view html, const std::string& basePath) {
  constexpr std::size_t kBeginning = 4096;
  std::string traits(html.substr(0, kBeginning));
  traits.append(1, '\0').append(basePath).append(1, '\0').append(std::to_string(html.size()));
  return std::hash<std::string>()(traits);
}

}  // namespace

void PageWalk::setTags(std::vector<std::string> tags) {
  tags_ = std::move(tags);
  std::vector<std::string> searchStrings = tags_;
  searchStrings.emplace_back(kBaseTag);
  scanner_.expect(searchStrings);
}

void PageWalk::begin(std::string html, const std::string& basePath) {
  fingerprint_ = fingerprintOf(html, basePath);
  const bool isFull = full_.contains(fingerprint_);
  parser_.Room = {.bytes = isFull ? 0 : std::ssize(html) * kRoomPerByte + kLeastRoom};
  scanner_.setHtml(std::move(html));
  now_ = {.basePath = basePath};
  beginSearch(0);
}

bool PageWalk::goOn(const TakeLink& take) {
  const TimeBudget budget;
  const clsLinkParser::CachedLookups lookups(parser_);
  now_.position = scanner_.position();
  before_ = now_;
  do {
    while (scanner_.LinkFound()) {
      if (budget.spent()) return false;
      if (!scanner_.seek(kBytesAtOnce)) continue;
      scanner_.getLink();
      if (!scanner_.Link().empty() && !takeFound(take)) return true;
    }
  } while (beginNextSearch());
  return true;
}

void PageWalk::takeBack() {
  parser_.takeBack();
  now_ = before_;
  beginSearch(now_.position);
}

bool PageWalk::takeFound(const TakeLink& take) {
  if (now_.phase == Phase::BaseHref) {
    now_.baseHref = scanner_.Link();  // the last one of a page counts
    return true;
  }
  parser_.BasePath = now_.basePath;
  parser_.Link = scanner_.Link();
  parser_.ProcessLink();
  return take();
}

bool PageWalk::beginNextSearch() {
  if (now_.phase == Phase::BaseHref) {
    now_.phase = Phase::Links;
    if (!now_.baseHref.empty()) now_.basePath = endedBySlash(now_.baseHref);
  } else {
    ++now_.tag;
  }
  if (now_.tag >= tags_.size()) return false;
  beginSearch(0);
  return true;
}

void PageWalk::beginSearch(std::size_t position) {
  scanner_.BasePath = now_.basePath;
  scanner_.goTo(position);
  scanner_.setSearchString(now_.phase == Phase::BaseHref ? kBaseTag : tags_[now_.tag]);
}

std::int64_t PageWalk::leftOut() {
  const std::int64_t count = parser_.Room.leftOut;
  return count > 0 && full_.insert(fingerprint_).second ? count : 0;
}

PageForm PageWalk::form() {
  scanner_.restart();
  scanner_.getForm();
  return {std::move(scanner_.Form), std::move(scanner_.FormAsFetched)};
}

}  // namespace mv
