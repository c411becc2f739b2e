#include "scan/PageWalk.h"

#include <optional>
#include <utility>

#include "BasePath.h"
#include "HtmlCharacters.h"
#include "base/TimeBudget.h"
#include "scan/StarTag.h"

namespace mv {

namespace {

constexpr const char* kBaseTag = "<base href=";
constexpr std::size_t kBytesAtOnce = std::size_t{1} << 18;  // searched between two looks at the clock

// A server that names no type mostly means HTML.
bool isHtml(std::string_view contentType) {
  const std::string_view type = withoutBlanks(contentType.substr(0, contentType.find(';')));
  return type.empty() || equalsFolded(type, "text/html") || equalsFolded(type, "application/xhtml+xml");
}

}  // namespace

void PageWalk::setTags(const std::vector<std::string>& tags) {
  tags_.clear();
  std::vector<StarTag> stars;
  for (const std::string& tag : tags) {
    if (const std::optional<StarTag> star = StarTag::parse(tag)) {
      if (stars.empty()) starPlace_ = tags_.size();
      stars.push_back(*star);
    } else {
      tags_.push_back(tag);
    }
  }
  stars_.setTags(stars);
  std::vector<std::string> searchStrings = tags_;
  searchStrings.emplace_back(kBaseTag);
  scanner_.expect(searchStrings);
}

void PageWalk::begin(Page page) {
  scanner_.setHtml(std::move(page.text));
  address_ = std::move(page.address);
  encode_ = std::move(page.encode);
  starsDue_ = stars_.hasTags() && isHtml(page.contentType);
  tag_ = 0;
  phase_ = Phase::BaseHref;
  isOver_ = tags_.empty();  // tags with a star find it themselves
  baseHref_.clear();
  basePath_ = scanner_.BasePath = page.basePath;
  scanner_.setSearchString(kBaseTag);
}

bool PageWalk::goOn(const TakeLink& take) {
  const TimeBudget budget;
  const clsLinkParser::CachedLookups lookups(parser_);
  do {
    while (!isOver_) {
      if (budget.spent()) return false;
      if (!findLink() || link_.empty() || takeFound(take)) continue;
      end();
      return true;
    }
  } while (beginNextSearch());
  return true;
}

bool PageWalk::findLink() {
  if (phase_ == Phase::Stars) {
    if (!stars_.seek(kBytesAtOnce)) return false;
    isOver_ = !stars_.next(link_);
  } else {
    if (!scanner_.seek(kBytesAtOnce)) return false;
    scanner_.getLink();
    link_ = scanner_.Link();
    isOver_ = !scanner_.LinkFound();
  }
  return true;
}

bool PageWalk::takeFound(const TakeLink& take) {
  if (phase_ == Phase::BaseHref) {
    baseHref_ = link_;  // the last one of a page counts
    return true;
  }
  parser_.BasePath = basePath_;
  parser_.Link = link_;
  parser_.ProcessLink();
  return take();
}

bool PageWalk::beginNextSearch() {
  if (phase_ == Phase::BaseHref && !baseHref_.empty()) basePath_ = scanner_.BasePath = endedBySlash(baseHref_);
  isOver_ = false;
  scanner_.restart();
  if (starsDue_ && tag_ == starPlace_) {
    starsDue_ = false;
    phase_ = Phase::Stars;
    stars_.begin(scanner_.html(), address_, encode_);
    return true;
  }
  if (tag_ >= tags_.size()) return false;
  phase_ = Phase::Plain;
  scanner_.setSearchString(tags_[tag_++]);
  return true;
}

void PageWalk::end() {
  stars_.begin({}, {}, nullptr);
  scanner_.setHtml({});
}

PageForm PageWalk::form() {
  scanner_.restart();
  scanner_.getForm();
  return {std::move(scanner_.Form), std::move(scanner_.FormAsFetched)};
}

}  // namespace mv
