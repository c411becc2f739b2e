// Which of a page's text is foreign content (the HTML standard's term): what stands in svg and math elements, but for
// the elements in them that hold HTML again ("integration points").
#pragma once

#include <vector>

#include "html/HtmlElements.h"

namespace mv {

class ForeignContent {
 public:
  void clear() { open_.clear(); }
  // No svg or math element is open.
  bool empty() const { return open_.empty(); }
  // Is foreign what follows?
  bool holdsNow() const;

  // A start tag of `element`, which stays as long as it is open. Was the tag itself in foreign content?
  bool enter(const HtmlElement& element, bool isSelfClosing);
  void leave(const HtmlElement& element);

 private:
  bool changes(const HtmlElement& element, bool isForeign) const;

  std::vector<const HtmlElement*> open_;  // svg and math elements and, in them, those that hold HTML again
};

}  // namespace mv
