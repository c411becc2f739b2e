#include "scan/PageWalk.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string_view>
#include <utility>

#include "BasePath.h"
#include "base/TimeBudget.h"
#include "html/HtmlCharacters.h"
#include "html/StarLinks.h"
#include "html/StarTag.h"

namespace mv {

namespace {

constexpr const char* kBaseTag = "<base href=";
constexpr std::string_view kFormBegin = "<form";
constexpr std::string_view kFormEnd = "</form>";
constexpr std::size_t kLongestForm = std::size_t{2} << 20;
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

// The first place in [from, to) where `lower` begins, in any case of letters; to, when there is none.
std::size_t findFolded(std::string_view text, std::string_view lower, std::size_t from, std::size_t to) {
  std::size_t at = text.find(lower.front(), from);
  while (at < to && !equalsFolded(text.substr(at, lower.size()), lower)) at = text.find(lower.front(), at + 1);
  return std::min(at, to);
}

// A server that names no type mostly means HTML.
bool isHtml(std::string_view contentType) {
  const std::string_view type = withoutBlanks(contentType.substr(0, contentType.find(';')));
  return type.empty() || equalsFolded(type, "text/html") || equalsFolded(type, "application/xhtml+xml");
}

}  // namespace

PageWalk::PageWalk(clsLinkParser& parser) : parser_(parser), stars_(std::make_unique<StarLinks>()) {}

PageWalk::~PageWalk() = default;

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
  stars_->setTags(stars);
  std::vector<std::string> searchStrings = tags_;
  searchStrings.emplace_back(kBaseTag);
  scanner_.expect(searchStrings);
}

void PageWalk::begin(Page page) {
  fingerprint_ = fingerprintOf(page.text, page.basePath);
  const bool isFull = full_.contains(fingerprint_);
  parser_.Room = {.bytes = isFull ? 0 : std::ssize(page.text) * kRoomPerByte + kLeastRoom};
  scanner_.setHtml(std::move(page.text));
  formPlace_ = {};
  address_ = std::move(page.address);
  now_ = {.starsDue = stars_->hasTags() && isHtml(page.contentType),
          .isOver = tags_.empty(),  // tags with a star find the base themselves
          .basePath = std::move(page.basePath)};
  beginSearch(0);
}

bool PageWalk::goOn(const TakeLink& take) {
  const TimeBudget budget;
  const clsLinkParser::CachedLookups lookups(parser_);
  now_.position = scanner_.position();
  now_.given = stars_->given();
  before_ = now_;
  do {
    while (!now_.isOver) {
      if (budget.spent()) return false;
      if (findLink() && !link_.empty() && !takeFound(take)) return true;
    }
  } while (beginNextSearch());
  return true;
}

// One pass for the base address, one for each plain tag, one for all tags with a star.
int PageWalk::percent() const {
  const bool inStars = now_.phase == Phase::Stars;
  const bool starsPassed = stars_->hasTags() && !now_.starsDue && !inStars;
  std::size_t passed = 0;
  if (now_.phase != Phase::BaseHref) passed = (inStars ? 1 : 0) + now_.tag + (starsPassed ? 1 : 0);
  const std::size_t passes = 1 + tags_.size() + (stars_->hasTags() ? 1 : 0);
  const std::size_t bytes = scanner_.position() + scanner_.html().size();
  const std::size_t position = inStars ? stars_->position() : scanner_.position();
  return bytes == 0 ? 0 : static_cast<int>((100 * passed + 100 * position / bytes) / passes);
}

void PageWalk::takeBack() {
  parser_.takeBack();
  now_ = before_;
  beginSearch(now_.position);
  if (now_.phase == Phase::Stars) stars_->goBack(now_.given);
}

bool PageWalk::findLink() {
  if (now_.phase == Phase::Stars) {
    if (!stars_->seek(kBytesAtOnce)) return false;
    now_.isOver = !stars_->next(link_);
  } else {
    if (!scanner_.seek(kBytesAtOnce)) return false;
    scanner_.getLink();
    link_ = scanner_.Link();
    now_.isOver = !scanner_.LinkFound();
  }
  return true;
}

bool PageWalk::takeFound(const TakeLink& take) {
  if (now_.phase == Phase::BaseHref) {
    now_.baseHref = link_;  // the last one of a page counts
    return true;
  }
  parser_.BasePath = now_.basePath;
  parser_.Link = link_;
  parser_.ProcessLink();
  return take();
}

bool PageWalk::beginNextSearch() {
  if (now_.phase == Phase::BaseHref && !now_.baseHref.empty()) now_.basePath = endedBySlash(now_.baseHref);
  now_.isOver = false;
  if (now_.starsDue && now_.tag == starPlace_) {
    now_.starsDue = false;
    now_.phase = Phase::Stars;
    scanner_.restart();
    stars_->begin(scanner_.html(), address_);
    return true;
  }
  if (now_.tag >= tags_.size()) return false;
  now_.phase = Phase::Plain;
  ++now_.tag;
  beginSearch(0);
  return true;
}

void PageWalk::beginSearch(std::size_t position) {
  scanner_.BasePath = now_.basePath;
  scanner_.goTo(position);
  scanner_.setSearchString(now_.phase == Phase::Plain ? tags_[now_.tag - 1] : kBaseTag);
}

std::int64_t PageWalk::leftOut() {
  const std::int64_t count = parser_.Room.leftOut;
  return count > 0 && full_.insert(fingerprint_).second ? count : 0;
}

void PageWalk::end() {
  stars_->begin({}, {});
  scanner_.setHtml({});
}

bool PageWalk::seekForm() {
  const TimeBudget budget;
  scanner_.restart();
  const std::string_view page = scanner_.html();
  FormPlace& form = formPlace_;
  while (form.end == 0 && form.sought < page.size()) {
    if (budget.spent()) return false;
    const std::string_view wanted = form.begin ? kFormEnd : kFormBegin;
    const std::size_t to = std::min(form.sought + kBytesAtOnce, page.size());
    form.sought = findFolded(page, wanted, form.sought, to);
    if (form.sought == to) continue;
    if (form.begin)
      form.end = form.sought + wanted.size();
    else
      form.begin = form.sought;
  }
  return true;
}

PageForm PageWalk::form() {
  scanner_.restart();
  const std::size_t begin = formPlace_.begin.value_or(0);
  const std::size_t size = formPlace_.end - std::min(begin, formPlace_.end);
  scanner_.setHtml(std::string(scanner_.html().substr(begin, size <= kLongestForm ? size : 0)));
  scanner_.getForm();
  return {std::move(scanner_.Form), std::move(scanner_.FormAsFetched)};
}

}  // namespace mv
