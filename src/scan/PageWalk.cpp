#include "scan/PageWalk.h"

#include <utility>

#include "BasePath.h"
#include "base/TimeBudget.h"

namespace mv {

namespace {

constexpr const char* kBaseTag = "<base href=";
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 18;  // searched between two looks at the clock

}  // namespace

void PageWalk::setTags(std::vector<std::string> tags) {
  tags_ = std::move(tags);
  std::vector<std::string> searchStrings = tags_;
  searchStrings.emplace_back(kBaseTag);
  scanner_.expect(searchStrings);
}

void PageWalk::begin(std::string html, const std::string& basePath) {
  scanner_.setHtml(std::move(html));
  phase_ = Phase::BaseHref;
  baseHref_.clear();
  basePath_ = scanner_.BasePath = basePath;
  scanner_.setSearchString(kBaseTag);
}

bool PageWalk::goOn(const TakeLink& take) {
  const TimeBudget budget;
  const clsLinkParser::CachedLookups lookups(parser_);
  do {
    while (scanner_.LinkFound()) {
      if (budget.spent()) return false;
      if (!scanner_.seek(kBytesAtOnce)) continue;
      scanner_.getLink();
      if (scanner_.Link().empty() || takeFound(take)) continue;
      end();
      return true;
    }
  } while (beginNextSearch());
  return true;
}

bool PageWalk::takeFound(const TakeLink& take) {
  if (phase_ == Phase::BaseHref) {
    baseHref_ = scanner_.Link();  // the last one of a page counts
    return true;
  }
  parser_.BasePath = basePath_;
  parser_.Link = scanner_.Link();
  parser_.ProcessLink();
  return take();
}

bool PageWalk::beginNextSearch() {
  if (phase_ == Phase::BaseHref) {
    phase_ = Phase::Links;
    tag_ = 0;
    if (!baseHref_.empty()) basePath_ = endedBySlash(baseHref_);
    scanner_.BasePath = basePath_;
  } else {
    ++tag_;
  }
  if (tag_ >= tags_.size()) return false;
  scanner_.restart();
  scanner_.setSearchString(tags_[tag_]);
  return true;
}

PageForm PageWalk::form() {
  scanner_.restart();
  scanner_.getForm();
  return {std::move(scanner_.Form), std::move(scanner_.FormAsFetched)};
}

}  // namespace mv
