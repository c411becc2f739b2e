#include "html/StarTag.h"

#include <algorithm>

#include "html/HtmlCharacters.h"

namespace mv {

namespace {

std::string toLower(std::string_view text) {
  std::string result(text);
  std::transform(result.begin(), result.end(), result.begin(), lowered);
  return result;
}

bool endsName(char c) { return endsAttributeName(c) || std::string_view("*\"'<").find(c) != std::string_view::npos; }

std::string_view takeName(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && !endsName(text[end])) ++end;
  const std::string_view name = text.substr(0, end);
  text.remove_prefix(end);
  return name;
}

// What stands between the blanks of a text with a star.
struct Parts {
  std::string_view element;
  bool hasStar = false;  // between blanks
  std::string_view attribute;
  std::string_view rest;  // "=" when all is well
};

Parts partsOf(std::string_view text) {
  Parts parts;
  text.remove_prefix(1);
  parts.element = takeName(text);
  const std::string_view behind = withoutBlanks(text);
  parts.hasStar = !text.empty() && isHtmlBlank(text.front()) && behind.starts_with('*');
  if (!behind.starts_with('*')) return parts;
  text = behind.substr(1);
  parts.hasStar = parts.hasStar && (text.empty() || isHtmlBlank(text.front()));
  text = withoutBlanks(text);
  parts.attribute = takeName(text);
  parts.rest = withoutBlanks(text);
  return parts;
}

bool isStarTag(const Parts& parts) {
  return !parts.element.empty() && isAsciiLetter(parts.element.front()) && parts.hasStar && !parts.attribute.empty() &&
         parts.rest == "=";
}

// Stars outside quotes that are no value of an attribute.
std::size_t starsIn(std::string_view text) {
  std::size_t stars = 0;
  char quote = 0;
  char before = 0;
  for (const char c : text) {
    if (quote != 0) {
      if (c == quote) quote = 0;
    } else if (c == '"' || c == '\'') {
      quote = c;
    } else if (c == '*' && before != '=') {
      ++stars;
    }
    before = c;
  }
  return stars;
}

}  // namespace

std::optional<StarTag> StarTag::parse(std::string_view text) {
  if (!text.starts_with('<')) return std::nullopt;
  const Parts parts = partsOf(text);
  if (!isStarTag(parts)) return std::nullopt;
  return StarTag{toLower(parts.element), toLower(parts.attribute)};
}

const char* starTagProblem(std::string_view text) {
  const std::size_t stars = text.starts_with('<') ? starsIn(text) : 0;
  if (stars == 0 || StarTag::parse(text)) return "";
  const Parts parts = partsOf(text);
  if (stars > 1) return "A tag with a star, such as <img * data-src=, has one star only.";
  if (parts.element.empty() || !isAsciiLetter(parts.element.front()))
    return "A tag with a star, such as <img * data-src=, begins with < and the name of an element.";
  if (!parts.hasStar) return "A tag with a star, such as <img * data-src=, has a blank on both sides of the star.";
  if (parts.attribute.empty())
    return "A tag with a star, such as <img * data-src=, has the name of an attribute behind the star.";
  return "A tag with a star, such as <img * data-src=, ends with the = behind its attribute.";
}

}  // namespace mv
