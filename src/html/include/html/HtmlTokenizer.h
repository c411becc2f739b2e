// The start tags of an HTML page, as the tokenizer of the HTML standard (WHATWG, section "Tokenization") sees them:
// what stands in comments, scripts, style sheets, titles, text areas and CDATA sections is none. Of each tag only the
// attributes that are looked for are noted. The text of style elements is handed out as well. One pass, in pieces of
// any size; no page makes it slower than linear. In one thing it is kinder than the standard: an iframe, noembed,
// noframes or xmp element without an end tag, often one that is written as an empty element of XHTML, does not swallow
// the rest of the page.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "html/ForeignContent.h"
#include "html/HtmlElements.h"
#include "html/HtmlReader.h"

namespace mv {

class HtmlTokenizer {
 public:
  using Wanted = WantedElement;

  struct Attribute {
    std::size_t name;        // its place in Wanted::attributes
    std::string_view value;  // as the page has it, character references and all
  };
  struct StartTag {
    std::size_t element;                // its place in what is wanted
    std::vector<Attribute> attributes;  // in the order of the page, the first of each name; never empty
  };
  // Views into the page; called from advance().
  using Take = std::function<void(const StartTag&)>;
  // The text of a style element that has ended.
  using TakeSheet = std::function<void(std::string_view)>;

  HtmlTokenizer(Take take, TakeSheet takeSheet);
  HtmlTokenizer(const HtmlTokenizer&) = delete;
  HtmlTokenizer& operator=(const HtmlTokenizer&) = delete;

  // Each element once. Begins a page, too.
  void setWanted(const std::vector<Wanted>& wanted);
  // Begins a page.
  void begin();
  // Goes on through `page`, the same one since begin(), by about `bytes`. True when the page is over.
  bool advance(std::string_view page, std::size_t bytes);

 private:
  // Those of the standard; where several do the same for a reader of start tags they are one. TagName to
  // SelfClosingStartTag serve end tags as well.
  enum class State : std::uint8_t {
    Data,
    TagName,
    BeforeAttributeName,  // and "after attribute value (quoted)"
    AttributeName,
    AfterAttributeName,
    BeforeAttributeValue,
    AttributeValueQuoted,  // double and single
    AttributeValueUnquoted,
    SelfClosingStartTag,
    Comment,
    BogusComment,  // and DOCTYPE: both end at the first ">"
    CdataSection,
    RawText,  // and RCDATA
    ScriptData,
    ScriptDataEscaped,
    ScriptDataDoubleEscaped,
    PlainText,
  };
  void step();
  void data();
  void tagOpen();
  void endTagOpen();
  void markupDeclarationOpen();
  void beginTag(std::size_t nameAt, bool isEndTag);
  void tagName();
  void beforeAttributeName();
  void attributeName();
  void afterAttributeName();
  void beforeAttributeValue();
  void attributeValueQuoted();
  void attributeValueUnquoted();
  void selfClosingStartTag();
  void comment();
  void bogusComment();
  void cdataSection();
  void rawText();
  void endRawText();
  bool isUnended() const;
  void goBackBehindTag();
  void scriptData();
  void scriptDataEscaped();
  bool escapedScriptTag();

  void endTag();
  void startTag();
  void enterContent();

  void noteAttribute(std::size_t valueAt, std::size_t valueEnd);

  Take take_;
  TakeSheet takeSheet_;
  HtmlElements elements_;

  HtmlReader in_;
  State state_ = State::Data;

  // The tag that is being read.
  bool isEndTag_ = false;
  bool isSelfClosing_ = false;
  std::size_t nameAt_ = 0;
  std::uint64_t key_ = 0;
  const HtmlElement* element_ = nullptr;  // null when it is none of elements_
  bool isNoted_ = false;                  // its attributes are
  std::uint32_t seen_ = 0;                // a bit for each wanted attribute that it has had
  std::size_t attributeAt_ = 0;
  std::size_t attributeEnd_ = 0;
  std::size_t valueAt_ = 0;
  char quote_ = 0;
  StartTag tag_;

  std::size_t contentAt_ = 0;                // where the comment, section or escape began
  const HtmlElement* rawElement_ = nullptr;  // whose text is being passed over
  std::vector<const HtmlElement*> unended_;  // have no end tag in the rest of the page
  ForeignContent foreign_;
};

}  // namespace mv
