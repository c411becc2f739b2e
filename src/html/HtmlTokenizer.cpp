#include "html/HtmlTokenizer.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "html/HtmlCharacters.h"

namespace mv {

namespace {

constexpr std::string_view kScript = "script";
constexpr std::string_view kStyle = "style";

// Words of eight bytes; what placeInWord does needs the first byte in the lowest place.
constexpr std::size_t kNearWords = std::endian::native == std::endian::little ? 3 : 0;

// Where the first `c` of eight bytes is; 8 for none. A byte that is `c` becomes zero, and only zeros borrow from their
// own highest bit; what is wrong about bytes behind the first does not matter.
std::size_t placeInWord(const char* bytes, char c) {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  word ^= kOnes * static_cast<unsigned char>(c);
  const std::uint64_t zeros = (word - kOnes) & ~word & kHighBits;
  return static_cast<std::size_t>(std::countr_zero(zeros)) / 8;
}

}  // namespace

// What runs for every tag is inline: position-independent code would call it through a table otherwise.

HtmlTokenizer::HtmlTokenizer(Take take, TakeSheet takeSheet)
    : take_(std::move(take)), takeSheet_(std::move(takeSheet)) {
  setWanted({});
}

void HtmlTokenizer::setWanted(const std::vector<Wanted>& wanted) {
  elements_.setWanted(wanted);
  begin();
}

void HtmlTokenizer::begin() {
  page_ = {};
  at_ = stop_ = 0;
  state_ = State::Data;
  tag_.attributes.clear();
  foreign_.clear();
  unended_.clear();
}

bool HtmlTokenizer::advance(std::string_view page, std::size_t bytes) {
  page_ = page;
  stop_ = at_ + std::min(bytes, page.size() - at_);
  while (at_ < stop_) step();
  if (at_ < page.size() || !isUnended()) return at_ >= page.size();
  goBackBehindTag();
  return false;
}

inline void HtmlTokenizer::step() {
  switch (state_) {
    case State::Data:
      return data();
    case State::TagName:
      return tagName();
    case State::BeforeAttributeName:
      return beforeAttributeName();
    case State::AttributeName:
      return attributeName();
    case State::AfterAttributeName:
      return afterAttributeName();
    case State::BeforeAttributeValue:
      return beforeAttributeValue();
    case State::AttributeValueQuoted:
      return attributeValueQuoted();
    case State::AttributeValueUnquoted:
      return attributeValueUnquoted();
    case State::SelfClosingStartTag:
      return selfClosingStartTag();
    case State::Comment:
      return comment();
    case State::BogusComment:
      return bogusComment();
    case State::CdataSection:
      return cdataSection();
    case State::RawText:
      return rawText();
    case State::ScriptData:
      return scriptData();
    case State::ScriptDataEscaped:
    case State::ScriptDataDoubleEscaped:
      return scriptDataEscaped();
    case State::PlainText:
      at_ = stop_;
  }
}

// NUL behind the end: no character that a tag could go on with.
inline char HtmlTokenizer::peek(std::size_t distance) const {
  return distance < page_.size() - at_ ? page_[at_ + distance] : '\0';
}

// To the first character that `belongs` does not hold for; false when the piece ends first.
template <class Belongs>
bool HtmlTokenizer::skip(Belongs belongs) {
  const char* const end = page_.data() + stop_;
  const char* here = page_.data() + at_;
  while (here < end && belongs(*here)) ++here;
  at_ = static_cast<std::size_t>(here - page_.data());
  return here < end;
}

inline bool HtmlTokenizer::skipBlanks() { return skip(isHtmlBlank); }

// Goes to the next `c`; false when the piece ends first. Mostly it is near, and memchr is for what is far.
inline bool HtmlTokenizer::findNext(char c) {
  if (at_ >= stop_) return false;
  for (std::size_t words = 0; words < kNearWords && stop_ - at_ >= sizeof(std::uint64_t); ++words) {
    const std::size_t distance = placeInWord(page_.data() + at_, c);
    at_ += distance;
    if (distance < sizeof(std::uint64_t)) return true;
  }
  const void* found = std::memchr(page_.data() + at_, c, stop_ - at_);
  at_ = found ? static_cast<std::size_t>(static_cast<const char*>(found) - page_.data()) : stop_;
  return found != nullptr;
}

inline void HtmlTokenizer::data() {
  while (state_ == State::Data && findNext('<')) tagOpen();
}

inline void HtmlTokenizer::tagOpen() {
  const char next = peek(1);
  if (isAsciiLetter(next)) {
    beginTag(at_ + 1, false);
  } else if (next == '/') {
    endTagOpen();
  } else if (next == '!') {
    markupDeclarationOpen();
  } else {
    ++at_;
    if (next == '?') state_ = State::BogusComment;
  }
}

inline void HtmlTokenizer::endTagOpen() {
  const char next = peek(2);
  if (isAsciiLetter(next)) {
    beginTag(at_ + 2, true);
    return;
  }
  at_ += 2;
  if (at_ < page_.size()) state_ = State::BogusComment;  // "</>" too, for it ends at its ">"
}

void HtmlTokenizer::markupDeclarationOpen() {
  const std::string_view behind = page_.substr(at_ + 2);
  constexpr std::string_view kCdata = "[CDATA[";
  constexpr std::string_view kComment = "--";
  at_ += 2;
  if (behind.starts_with(kComment)) {
    contentAt_ = at_ += kComment.size();
    state_ = State::Comment;
    // "<!-->" and "<!--->" are over at once.
    for (const std::string_view end : {std::string_view(">"), std::string_view("->")}) {
      if (!page_.substr(at_).starts_with(end)) continue;
      at_ += end.size();
      state_ = State::Data;
      return;
    }
  } else if (foreign_.holdsNow() && behind.starts_with(kCdata)) {
    contentAt_ = at_ += kCdata.size();
    state_ = State::CdataSection;
  } else {
    state_ = State::BogusComment;
  }
}

inline void HtmlTokenizer::beginTag(std::size_t nameAt, bool isEndTag) {
  nameAt_ = at_ = nameAt;
  isEndTag_ = isEndTag;
  isSelfClosing_ = false;
  key_ = 0;
  state_ = State::TagName;
  tagName();
}

inline void HtmlTokenizer::tagName() {
  std::uint64_t key = key_;
  const bool isWhole = skip([&key](char c) {
    const unsigned char letter = foldedTagName(c);
    if (letter != 0) key = HtmlElements::keyed(key, letter);
    return letter != 0;
  });
  key_ = key;
  if (!isWhole) return;
  // An end tag matters to foreign content only.
  const bool matters = !isEndTag_ || !foreign_.empty();
  element_ = matters ? elements_.find(key_, page_.substr(nameAt_, at_ - nameAt_)) : nullptr;
  isNoted_ = !isEndTag_ && element_ && element_->wanted != HtmlElement::kNotWanted;
  seen_ = 0;
  state_ = State::BeforeAttributeName;
  while (state_ == State::BeforeAttributeName && at_ < stop_) beforeAttributeName();
}

inline void HtmlTokenizer::beforeAttributeName() {
  if (!skipBlanks()) return;
  const char c = page_[at_];
  if (c == '>') {
    isEndTag_ ? endTag() : startTag();
  } else if (c == '/') {
    ++at_;
    state_ = State::SelfClosingStartTag;
  } else {
    attributeAt_ = at_++;  // whatever it is, "=" too
    state_ = State::AttributeName;
    attributeName();
  }
}

inline void HtmlTokenizer::attributeName() {
  if (!skip([](char c) { return !endsAttributeName(c); })) return;
  attributeEnd_ = at_;
  if (page_[at_] == '=') {
    ++at_;
    state_ = State::BeforeAttributeValue;
    if (at_ < stop_) beforeAttributeValue();
  } else {
    state_ = State::AfterAttributeName;
  }
}

void HtmlTokenizer::afterAttributeName() {
  if (!skipBlanks()) return;
  if (page_[at_] == '=') {
    ++at_;
    state_ = State::BeforeAttributeValue;
  } else {
    noteAttribute(at_, at_);
    state_ = State::BeforeAttributeName;
  }
}

inline void HtmlTokenizer::beforeAttributeValue() {
  if (!skipBlanks()) return;
  const char c = page_[at_];
  if (c == '"' || c == '\'') {
    quote_ = c;
    valueAt_ = ++at_;
    state_ = State::AttributeValueQuoted;
    if (at_ < stop_) attributeValueQuoted();
  } else {
    valueAt_ = at_;  // a ">" here ends the tag, and the value is empty
    state_ = State::AttributeValueUnquoted;
  }
}

inline void HtmlTokenizer::attributeValueQuoted() {
  if (!findNext(quote_)) return;
  noteAttribute(valueAt_, at_);
  ++at_;
  state_ = State::BeforeAttributeName;
}

void HtmlTokenizer::attributeValueUnquoted() {
  if (!skip([](char c) { return c != '>' && !isHtmlBlank(c); })) return;
  noteAttribute(valueAt_, at_);
  state_ = State::BeforeAttributeName;
}

void HtmlTokenizer::selfClosingStartTag() {
  isSelfClosing_ = page_[at_] == '>';
  state_ = State::BeforeAttributeName;
}

inline void HtmlTokenizer::noteAttribute(std::size_t valueAt, std::size_t valueEnd) {
  if (!isNoted_) return;
  const std::string_view name = page_.substr(attributeAt_, attributeEnd_ - attributeAt_);
  const std::vector<std::string>& names = element_->attributes;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!equalsFolded(name, names[i])) continue;
    if ((seen_ >> i & 1U) == 0) tag_.attributes.push_back({i, page_.substr(valueAt, valueEnd - valueAt)});
    seen_ |= 1U << i;
  }
}

inline void HtmlTokenizer::endTag() {
  ++at_;
  state_ = State::Data;
  if (element_) foreign_.leave(*element_);
}

inline void HtmlTokenizer::startTag() {
  ++at_;
  state_ = State::Data;
  if (!tag_.attributes.empty()) {
    tag_.element = element_->wanted;
    take_(tag_);
    tag_.attributes.clear();
  }
  if (element_ && (element_->content != HtmlContent::Ordinary || !foreign_.empty())) enterContent();
}

// What follows a start tag is not always markup.
void HtmlTokenizer::enterContent() {
  if (foreign_.enter(*element_, isSelfClosing_)) return;
  const bool isUnended = std::find(unended_.begin(), unended_.end(), element_) != unended_.end();
  if (element_->content == HtmlContent::RawText && !isUnended) state_ = State::RawText;
  if (element_->content == HtmlContent::Script) state_ = State::ScriptData;
  if (element_->content == HtmlContent::PlainText) state_ = State::PlainText;
  rawElement_ = element_;
  contentAt_ = at_;
}

// Ends at "-->" and "--!>", which the two dashes that began it are no part of.
void HtmlTokenizer::comment() {
  while (findNext('>')) {
    const std::string_view text = page_.substr(contentAt_, at_ - contentAt_);
    ++at_;
    if (!text.ends_with("--") && !text.ends_with("--!")) continue;
    state_ = State::Data;
    return;
  }
}

void HtmlTokenizer::bogusComment() {
  if (!findNext('>')) return;
  ++at_;
  state_ = State::Data;
}

void HtmlTokenizer::cdataSection() {
  while (findNext('>')) {
    const bool ends = page_.substr(contentAt_, at_ - contentAt_).ends_with("]]");
    ++at_;
    if (!ends) continue;
    state_ = State::Data;
    return;
  }
}

// Is here `opening`, then `name` and the end of a name?
bool HtmlTokenizer::tagStands(std::string_view opening, std::string_view name) const {
  const std::string_view here = page_.substr(at_);
  const std::size_t end = opening.size() + name.size();
  return here.size() > end && here.starts_with(opening) && foldedTagName(here[end]) == 0 &&
         equalsFolded(here.substr(opening.size(), name.size()), name);
}

// Ends at the "appropriate end tag".
void HtmlTokenizer::rawText() {
  while (findNext('<')) {
    if (tagStands("</", rawElement_->name)) return endRawText();
    ++at_;
  }
}

void HtmlTokenizer::endRawText() {
  if (rawElement_->name == kStyle) takeSheet_(page_.substr(contentAt_, at_ - contentAt_));
  beginTag(at_ + 2, true);
}

bool HtmlTokenizer::isUnended() const { return state_ == State::RawText && rawElement_->needsEndTag; }

void HtmlTokenizer::goBackBehindTag() {
  unended_.push_back(rawElement_);
  at_ = contentAt_;
  state_ = State::Data;
}

void HtmlTokenizer::scriptData() {
  constexpr std::string_view kEscapeStart = "<!--";
  while (findNext('<')) {
    if (tagStands("</", kScript)) return beginTag(at_ + 2, true);
    if (page_.substr(at_).starts_with(kEscapeStart)) {
      contentAt_ = at_ += 2;  // its dashes may be those of its end
      state_ = State::ScriptDataEscaped;
      return;
    }
    ++at_;
  }
}

void HtmlTokenizer::scriptDataEscaped() {
  while (at_ < stop_) {
    const char c = page_[at_];
    if (c == '>' && page_.substr(contentAt_, at_ - contentAt_).ends_with("--")) {
      state_ = State::ScriptData;
      return;
    }
    if (c == '<' && escapedScriptTag()) return;
    ++at_;
  }
}

// True when the script is over.
bool HtmlTokenizer::escapedScriptTag() {
  const bool ends = tagStands("</", kScript);
  if (state_ == State::ScriptDataDoubleEscaped) {
    if (ends) state_ = State::ScriptDataEscaped;
  } else if (ends) {
    beginTag(at_ + 2, true);
    return true;
  } else if (tagStands("<", kScript)) {
    state_ = State::ScriptDataDoubleEscaped;
  }
  return false;
}

}  // namespace mv
