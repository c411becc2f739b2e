#include "html/HtmlElements.h"

#include <algorithm>

namespace mv {

HtmlElement& HtmlElements::elementOf(std::string_view name) {
  const auto known = std::find_if(elements_.begin(), elements_.end(),
                                  [name](const HtmlElement& element) { return element.name == name; });
  if (known != elements_.end()) return *known;
  HtmlElement& element = elements_.emplace_back();
  element.name = name;
  for (const char c : name) element.key = keyed(element.key, static_cast<unsigned char>(c));
  return element;
}

void HtmlElements::setWanted(const std::vector<WantedElement>& wanted) {
  elements_.clear();
  elements_.emplace_back();  // number 0 means a free slot
  for (const char* name : {"style", "xmp", "iframe", "noembed", "noframes", "title", "textarea"})
    elementOf(name).content = HtmlContent::RawText;
  for (const char* name : {"iframe", "noembed", "noframes", "xmp"}) elementOf(name).needsEndTag = true;
  elementOf("script").content = HtmlContent::Script;
  elementOf("plaintext").content = HtmlContent::PlainText;
  elementOf("svg").content = HtmlContent::Svg;
  elementOf("math").content = HtmlContent::MathMl;
  // "title" holds HTML in svg, and raw text elsewhere.
  for (const char* name : {"foreignobject", "desc"}) elementOf(name).content = HtmlContent::SvgIntegration;
  for (const char* name : {"mi", "mo", "mn", "ms", "mtext"}) elementOf(name).content = HtmlContent::MathIntegration;
  for (const char* name :
       {"b",     "big",   "blockquote", "body",   "br",   "center", "code",  "dd", "div",  "dl",   "dt",
        "em",    "embed", "h1",         "h2",     "h3",   "h4",     "h5",    "h6", "head", "hr",   "i",
        "img",   "li",    "listing",    "menu",   "meta", "nobr",   "ol",    "p",  "pre",  "ruby", "s",
        "small", "span",  "strong",     "strike", "sub",  "sup",    "table", "tt", "u",    "ul",   "var"})
    elementOf(name).endsForeignContent = true;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    HtmlElement& element = elementOf(wanted[i].element);
    element.wanted = i;
    element.attributes = wanted[i].attributes;
    if (element.attributes.size() > WantedElement::kMost) element.attributes.resize(WantedElement::kMost);
  }
  makeTable();
}

void HtmlElements::makeTable() {
  // Half of the slots stay free, so that a name that is looked for in vain is soon known.
  const std::size_t most = std::min(elements_.size(), kSlots / 2);
  slots_.assign(kSlots, 0);
  for (std::size_t number = 1; number < most; ++number) {
    std::size_t slot = slotOf(elements_[number].key);
    while (slots_[slot] != 0) slot = (slot + 1) % kSlots;
    slots_[slot] = static_cast<std::uint16_t>(number);
  }
}

}  // namespace mv
