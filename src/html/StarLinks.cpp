#include "html/StarLinks.h"

#include <algorithm>
#include <utility>

#include "AddressAttributes.h"
#include "CharacterReferences.h"
#include "html/HtmlCharacters.h"

namespace mv {

namespace {

constexpr const char* kMeta = "meta";
constexpr const char* kHttpEquiv = "http-equiv";
constexpr const char* kContent = "content";
constexpr const char* kStyle = "style";
constexpr const char* kUrl = "url";  // no attribute: what `url(...)` of a style element's text leads to

// So many are found before the first is handed out: a <base> that stands behind them comes too late.
constexpr std::size_t kMostFound = std::size_t{1} << 18;
constexpr std::size_t kLongestStyle = std::size_t{1} << 18;     // bytes of a style that are looked through, in one go
constexpr std::size_t kRememberedFound = std::size_t{1} << 12;  // room kept from page to page

}  // namespace

StarLinks::StarLinks()
    : tokenizer_([this](const HtmlTokenizer::StartTag& tag) { take(tag); },
                 [this](std::string_view text) { takeSheet(text); }) {}

void StarLinks::setTags(const std::vector<StarTag>& tags) {
  hasTags_ = !tags.empty();
  wantsSheets_ = false;
  wanted_.clear();
  holds_.clear();
  want("base", "href", Holds::Base);
  want(kMeta, kHttpEquiv, Holds::HttpEquiv);
  for (const StarTag& tag : tags) {
    const Holds holds = heldBy(tag);
    if (holds == Holds::Sheet)
      wantsSheets_ = true;
    else
      want(tag.element, tag.attribute, holds);
  }
  tokenizer_.setWanted(wanted_);
  begin({}, {});
}

StarLinks::Holds StarLinks::heldBy(const StarTag& tag) {
  if (tag.element == kMeta && tag.attribute == kContent) return Holds::Refresh;
  if (tag.element == kStyle && tag.attribute == kUrl) return Holds::Sheet;
  if (tag.attribute == kStyle) return Holds::Style;
  // "data-srcset", too, is what a script will make a "srcset" of.
  return tag.attribute.ends_with("srcset") ? Holds::Candidates : Holds::Address;
}

void StarLinks::want(const std::string& element, const std::string& attribute, Holds holds) {
  auto known = std::find_if(wanted_.begin(), wanted_.end(),
                            [&](const HtmlTokenizer::Wanted& wanted) { return wanted.element == element; });
  if (known == wanted_.end()) {
    known = wanted_.insert(known, {element, {}});
    holds_.emplace_back();
  }
  std::vector<std::string>& attributes = known->attributes;
  if (std::find(attributes.begin(), attributes.end(), attribute) != attributes.end()) return;
  attributes.push_back(attribute);
  holds_[static_cast<std::size_t>(known - wanted_.begin())].push_back(holds);
}

void StarLinks::begin(std::string_view page, std::string_view address) {
  page_ = page;
  resolver_.setPage(address);
  hasBase_ = false;
  if (found_.capacity() > kRememberedFound) found_ = {};
  given_ = passed_ = position_ = 0;
  start();
}

// The base that was found stays.
void StarLinks::goBack(std::size_t count) {
  given_ = passed_ = count;
  start();
}

void StarLinks::start() {
  tokenizer_.begin();
  atEnd_ = page_.empty();
  isFinding_ = !atEnd_;
  next_ = 0;
  found_.clear();
}

bool StarLinks::seek(std::size_t bytes) {
  if (!isFinding_) {
    if (atEnd_ || next_ < found_.size()) return true;
    found_.clear();
    next_ = 0;
  }
  atEnd_ = tokenizer_.advance(page_, bytes);
  isFinding_ = !atEnd_ && found_.size() < kMostFound;
  return !isFinding_;
}

bool StarLinks::next(std::string& link) {
  link.clear();
  while (!seek(page_.size())) {
  }
  if (next_ == found_.size()) return false;
  position_ = static_cast<std::size_t>(found_[next_].value.data() - page_.data());
  follow(found_[next_++], link);
  ++given_;
  return true;
}

void StarLinks::take(const HtmlTokenizer::StartTag& tag) {
  for (const HtmlTokenizer::Attribute& attribute : tag.attributes) {
    const Holds holds = holds_[tag.element][attribute.name];
    if (holds == Holds::Base) takeBase(attribute.value);
    if (holds == Holds::Base || holds == Holds::HttpEquiv || (holds == Holds::Refresh && !isRefresh(tag))) continue;
    if (holds == Holds::Style)
      takeStyle(attribute.value, Holds::Address);
    else
      keep({attribute.value, holds});
  }
}

void StarLinks::takeSheet(std::string_view text) {
  if (wantsSheets_) takeStyle(text, Holds::Sheet);
}

void StarLinks::takeStyle(std::string_view text, Holds holds) {
  text = text.substr(0, kLongestStyle);
  while (const auto address = takeStyleAddress(text)) keep({*address, holds});
}

void StarLinks::keep(const Found& found) {
  if (passed_ == 0)
    found_.push_back(found);
  else
    --passed_;
}

bool StarLinks::isRefresh(const HtmlTokenizer::StartTag& tag) const {
  return std::any_of(tag.attributes.begin(), tag.attributes.end(), [&](const HtmlTokenizer::Attribute& attribute) {
    return holds_[tag.element][attribute.name] == Holds::HttpEquiv && equalsFolded(attribute.value, "refresh");
  });
}

void StarLinks::takeBase(std::string_view value) {
  if (!std::exchange(hasBase_, true) && value.size() <= kLongestLink)
    resolver_.setBase(withoutCharacterReferences(value));
}

void StarLinks::follow(const Found& found, std::string& link) const {
  const bool isSimple =
      found.holds == Holds::Address && found.value.size() <= kLongestLink && resolver_.resolveSimple(found.value, link);
  if (!isSimple && !followAny(found, link)) link.clear();
  if (link.size() > kLongestLink) link.clear();
}

bool StarLinks::followAny(const Found& found, std::string& link) const {
  const bool hasReferences = found.holds != Holds::Sheet && found.value.find('&') != std::string_view::npos;
  const std::string decoded = hasReferences ? withoutCharacterReferences(found.value) : std::string();
  std::string_view address = hasReferences ? std::string_view(decoded) : found.value;
  if (found.holds == Holds::Candidates) address = largestCandidate(address);
  if (found.holds == Holds::Refresh) address = refreshTarget(address);
  return address.size() <= kLongestLink && resolver_.resolve(address, link);
}

}  // namespace mv
