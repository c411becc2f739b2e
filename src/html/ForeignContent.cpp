#include "html/ForeignContent.h"

#include <algorithm>
#include <cstddef>

namespace mv {

namespace {

// What is nested more deeply counts as what it stands in.
constexpr std::size_t kDeepest = 64;

bool isRoot(const HtmlElement& element) {
  return element.content == HtmlContent::Svg || element.content == HtmlContent::MathMl;
}

}  // namespace

bool ForeignContent::holdsNow() const { return !open_.empty() && isRoot(*open_.back()); }

bool ForeignContent::enter(const HtmlElement& element, bool isSelfClosing) {
  if (element.endsForeignContent)
    while (holdsNow()) open_.pop_back();
  const bool isForeign = holdsNow();
  if (!isSelfClosing && changes(element, isForeign) && open_.size() < kDeepest) open_.push_back(&element);
  return isForeign;
}

// Does the element begin foreign content, or HTML in it?
bool ForeignContent::changes(const HtmlElement& element, bool isForeign) const {
  if (isRoot(element)) return true;
  if (!isForeign) return false;
  if (open_.back()->content == HtmlContent::MathMl) return element.content == HtmlContent::MathIntegration;
  return element.content == HtmlContent::SvgIntegration || element.name == "title";
}

void ForeignContent::leave(const HtmlElement& element) {
  const auto opened = std::find(open_.rbegin(), open_.rend(), &element);
  if (opened != open_.rend()) open_.erase(opened.base() - 1, open_.end());
}

}  // namespace mv
