#include "html/HtmlTokenizer.h"

#include <algorithm>
#include <utility>

#include "html/HtmlCharacters.h"

namespace mv {

namespace {

constexpr std::string_view kScript = "script";
constexpr std::string_view kStyle = "style";

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
  in_ = {};
  state_ = State::Data;
  tag_.attributes.clear();
  foreign_.clear();
  unended_.clear();
}

bool HtmlTokenizer::advance(std::string_view page, std::size_t bytes) {
  in_.begin(page, bytes);
  while (in_.at < in_.stop) step();
  if (in_.at < page.size() || !isUnended()) return in_.at >= page.size();
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
      in_.at = in_.stop;
  }
}

inline void HtmlTokenizer::data() {
  while (state_ == State::Data && in_.findNext('<')) tagOpen();
}

inline void HtmlTokenizer::tagOpen() {
  const char next = in_.peek(1);
  if (isAsciiLetter(next)) {
    beginTag(in_.at + 1, false);
  } else if (next == '/') {
    endTagOpen();
  } else if (next == '!') {
    markupDeclarationOpen();
  } else {
    ++in_.at;
    if (next == '?') state_ = State::BogusComment;
  }
}

inline void HtmlTokenizer::endTagOpen() {
  const char next = in_.peek(2);
  if (isAsciiLetter(next)) {
    beginTag(in_.at + 2, true);
    return;
  }
  in_.at += 2;
  if (in_.at < in_.page.size()) state_ = State::BogusComment;  // "</>" too, for it ends at its ">"
}

void HtmlTokenizer::markupDeclarationOpen() {
  const std::string_view behind = in_.page.substr(in_.at + 2);
  constexpr std::string_view kCdata = "[CDATA[";
  constexpr std::string_view kComment = "--";
  in_.at += 2;
  if (behind.starts_with(kComment)) {
    contentAt_ = in_.at += kComment.size();
    state_ = State::Comment;
    // "<!-->" and "<!--->" are over at once.
    for (const std::string_view end : {std::string_view(">"), std::string_view("->")}) {
      if (!in_.rest().starts_with(end)) continue;
      in_.at += end.size();
      state_ = State::Data;
      return;
    }
  } else if (foreign_.holdsNow() && behind.starts_with(kCdata)) {
    contentAt_ = in_.at += kCdata.size();
    state_ = State::CdataSection;
  } else {
    state_ = State::BogusComment;
  }
}

inline void HtmlTokenizer::beginTag(std::size_t nameAt, bool isEndTag) {
  nameAt_ = in_.at = nameAt;
  isEndTag_ = isEndTag;
  isSelfClosing_ = false;
  key_ = 0;
  state_ = State::TagName;
  tagName();
}

inline void HtmlTokenizer::tagName() {
  std::uint64_t key = key_;
  const bool isWhole = in_.skip([&key](char c) {
    const unsigned char letter = foldedTagName(c);
    if (letter != 0) key = HtmlElements::keyed(key, letter);
    return letter != 0;
  });
  key_ = key;
  if (!isWhole) return;
  // An end tag matters to foreign content only.
  const bool matters = !isEndTag_ || !foreign_.empty();
  element_ = matters ? elements_.find(key_, in_.since(nameAt_)) : nullptr;
  isNoted_ = !isEndTag_ && element_ && element_->wanted != HtmlElement::kNotWanted;
  seen_ = 0;
  state_ = State::BeforeAttributeName;
  while (state_ == State::BeforeAttributeName && in_.at < in_.stop) beforeAttributeName();
}

inline void HtmlTokenizer::beforeAttributeName() {
  if (!in_.skipBlanks()) return;
  const char c = in_.page[in_.at];
  if (c == '>') {
    isEndTag_ ? endTag() : startTag();
  } else if (c == '/') {
    ++in_.at;
    state_ = State::SelfClosingStartTag;
  } else {
    attributeAt_ = in_.at++;  // whatever it is, "=" too
    state_ = State::AttributeName;
    attributeName();
  }
}

inline void HtmlTokenizer::attributeName() {
  if (!in_.skip([](char c) { return !endsAttributeName(c); })) return;
  attributeEnd_ = in_.at;
  if (in_.page[in_.at] == '=') {
    ++in_.at;
    state_ = State::BeforeAttributeValue;
    if (in_.at < in_.stop) beforeAttributeValue();
  } else {
    state_ = State::AfterAttributeName;
  }
}

void HtmlTokenizer::afterAttributeName() {
  if (!in_.skipBlanks()) return;
  if (in_.page[in_.at] == '=') {
    ++in_.at;
    state_ = State::BeforeAttributeValue;
  } else {
    noteAttribute(in_.at, in_.at);
    state_ = State::BeforeAttributeName;
  }
}

inline void HtmlTokenizer::beforeAttributeValue() {
  if (!in_.skipBlanks()) return;
  const char c = in_.page[in_.at];
  if (c == '"' || c == '\'') {
    quote_ = c;
    valueAt_ = ++in_.at;
    state_ = State::AttributeValueQuoted;
    if (in_.at < in_.stop) attributeValueQuoted();
  } else {
    valueAt_ = in_.at;  // a ">" here ends the tag, and the value is empty
    state_ = State::AttributeValueUnquoted;
  }
}

inline void HtmlTokenizer::attributeValueQuoted() {
  if (!in_.findNext(quote_)) return;
  noteAttribute(valueAt_, in_.at);
  ++in_.at;
  state_ = State::BeforeAttributeName;
}

void HtmlTokenizer::attributeValueUnquoted() {
  if (!in_.skip([](char c) { return c != '>' && !isHtmlBlank(c); })) return;
  noteAttribute(valueAt_, in_.at);
  state_ = State::BeforeAttributeName;
}

void HtmlTokenizer::selfClosingStartTag() {
  isSelfClosing_ = in_.page[in_.at] == '>';
  state_ = State::BeforeAttributeName;
}

inline void HtmlTokenizer::noteAttribute(std::size_t valueAt, std::size_t valueEnd) {
  if (!isNoted_) return;
  const std::string_view name = in_.page.substr(attributeAt_, attributeEnd_ - attributeAt_);
  const std::vector<std::string>& names = element_->attributes;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (!equalsFolded(name, names[i])) continue;
    if ((seen_ >> i & 1U) == 0) tag_.attributes.push_back({i, in_.page.substr(valueAt, valueEnd - valueAt)});
    seen_ |= 1U << i;
  }
}

inline void HtmlTokenizer::endTag() {
  ++in_.at;
  state_ = State::Data;
  if (element_) foreign_.leave(*element_);
}

inline void HtmlTokenizer::startTag() {
  ++in_.at;
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
  contentAt_ = in_.at;
}

// Ends at "-->" and "--!>", which the two dashes that began it are no part of.
void HtmlTokenizer::comment() {
  while (in_.findNext('>')) {
    const std::string_view text = in_.since(contentAt_);
    ++in_.at;
    if (!text.ends_with("--") && !text.ends_with("--!")) continue;
    state_ = State::Data;
    return;
  }
}

void HtmlTokenizer::bogusComment() {
  if (!in_.findNext('>')) return;
  ++in_.at;
  state_ = State::Data;
}

void HtmlTokenizer::cdataSection() {
  while (in_.findNext('>')) {
    const bool ends = in_.since(contentAt_).ends_with("]]");
    ++in_.at;
    if (!ends) continue;
    state_ = State::Data;
    return;
  }
}

// Ends at the "appropriate end tag".
void HtmlTokenizer::rawText() {
  while (in_.findNext('<')) {
    if (in_.tagStands("</", rawElement_->name)) return endRawText();
    ++in_.at;
  }
}

void HtmlTokenizer::endRawText() {
  if (rawElement_->name == kStyle) takeSheet_(in_.since(contentAt_));
  beginTag(in_.at + 2, true);
}

bool HtmlTokenizer::isUnended() const { return state_ == State::RawText && rawElement_->needsEndTag; }

void HtmlTokenizer::goBackBehindTag() {
  unended_.push_back(rawElement_);
  in_.at = contentAt_;
  state_ = State::Data;
}

void HtmlTokenizer::scriptData() {
  constexpr std::string_view kEscapeStart = "<!--";
  while (in_.findNext('<')) {
    if (in_.tagStands("</", kScript)) return beginTag(in_.at + 2, true);
    if (in_.rest().starts_with(kEscapeStart)) {
      contentAt_ = in_.at += 2;  // its dashes may be those of its end
      state_ = State::ScriptDataEscaped;
      return;
    }
    ++in_.at;
  }
}

void HtmlTokenizer::scriptDataEscaped() {
  while (in_.at < in_.stop) {
    const char c = in_.page[in_.at];
    if (c == '>' && in_.since(contentAt_).ends_with("--")) {
      state_ = State::ScriptData;
      return;
    }
    if (c == '<' && escapedScriptTag()) return;
    ++in_.at;
  }
}

// True when the script is over.
bool HtmlTokenizer::escapedScriptTag() {
  const bool ends = in_.tagStands("</", kScript);
  if (state_ == State::ScriptDataDoubleEscaped) {
    if (ends) state_ = State::ScriptDataEscaped;
  } else if (ends) {
    beginTag(in_.at + 2, true);
    return true;
  } else if (in_.tagStands("<", kScript)) {
    state_ = State::ScriptDataDoubleEscaped;
  }
  return false;
}

}  // namespace mv
