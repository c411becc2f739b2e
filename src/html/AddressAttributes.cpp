#include "AddressAttributes.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "html/HtmlCharacters.h"

namespace mv {

namespace {

struct Candidate {
  std::string_view address;
  std::optional<std::int64_t> width;
  double density = 1;
};

void skipBlanks(std::string_view& text) {
  while (!text.empty() && isHtmlBlank(text.front())) text.remove_prefix(1);
}

void skipBlanksAndCommas(std::string_view& text) {
  while (!text.empty() && (isHtmlBlank(text.front()) || text.front() == ',')) text.remove_prefix(1);
}

std::string_view takeUpTo(std::string_view& text, std::size_t end) {
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(taken.size());
  return taken;
}

std::string_view takeAddress(std::string_view& text) {
  std::size_t end = 0;
  while (end < text.size() && !isHtmlBlank(text[end])) ++end;
  return takeUpTo(text, end);
}

// Up to the comma behind the descriptors; one in parentheses is no end.
std::string_view takeDescriptors(std::string_view& text) {
  std::size_t end = 0;
  for (bool inParentheses = false; end < text.size(); ++end) {
    if (text[end] == ',' && !inParentheses) break;
    if (text[end] == '(') inParentheses = true;
    if (text[end] == ')') inParentheses = false;
  }
  return takeUpTo(text, end);
}

template <class Number>
std::optional<Number> wholeNumber(std::string_view text) {
  Number number = 0;
  const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

// False: the candidate is to be dropped.
bool applyDescriptor(std::string_view descriptor, Candidate& candidate) {
  const std::string_view digits = descriptor.substr(0, descriptor.size() - 1);
  switch (descriptor.back()) {
    case 'w':
      candidate.width = wholeNumber<std::int64_t>(digits);
      return candidate.width && *candidate.width > 0;
    case 'x': {
      const auto density = wholeNumber<double>(digits);
      candidate.density = density.value_or(0);
      return density && *density >= 0;
    }
    case 'h':
      return wholeNumber<std::int64_t>(digits).value_or(0) > 0;
    default:
      return false;
  }
}

bool applyDescriptors(std::string_view descriptors, Candidate& candidate) {
  for (skipBlanks(descriptors); !descriptors.empty(); skipBlanks(descriptors))
    if (!applyDescriptor(takeAddress(descriptors), candidate)) return false;
  return true;
}

bool isLarger(const Candidate& candidate, const Candidate& than) {
  if (candidate.width.has_value() != than.width.has_value()) return candidate.width.has_value();
  return candidate.width ? *candidate.width > *than.width : candidate.density > than.density;
}

// Goes to the next "(" that is none of a comment; false when there is none.
bool findParenthesis(std::string_view text, std::size_t& at) {
  while ((at = text.find_first_of("(/", at)) != std::string_view::npos) {
    if (text[at] == '(') return true;
    if (text.substr(at, 2) != "/*") {
      ++at;
      continue;
    }
    at = text.find("*/", at + 2);
    if (at == std::string_view::npos) return false;
  }
  return false;
}

// Of an identifier of CSS; of those outside ASCII every byte.
bool isNameCharacter(char c) { return isAsciiLetter(c) || isAsciiDigit(c) || c == '-' || c == '_' || (c & 0x80) != 0; }

bool namesAddress(std::string_view before) {
  constexpr std::string_view kUrl = "url";
  if (before.size() < kUrl.size() || !equalsFolded(before.substr(before.size() - kUrl.size()), kUrl)) return false;
  before = before.substr(0, before.size() - kUrl.size());
  if (!before.empty() && isNameCharacter(before.back())) return false;
  before = withoutBlanks(before);
  const std::size_t at = before.rfind('@');
  const std::string_view rule = at == std::string_view::npos ? std::string_view() : before.substr(at);
  return !equalsFolded(rule, "@import") && !equalsFolded(rule, "@namespace");
}

std::string_view openingQuote(std::string_view text) {
  for (const std::string_view quote : {"\"", "'", "&quot;", "&apos;", "&#34;", "&#39;"})
    if (text.starts_with(quote)) return quote;
  return {};
}

}  // namespace

std::optional<std::string_view> takeStyleAddress(std::string_view& text) {
  for (std::size_t at = 0; findParenthesis(text, at);) {
    const bool isAddress = namesAddress(text.substr(0, at));
    text.remove_prefix(at + 1);
    at = 0;
    if (!isAddress) continue;
    skipBlanks(text);
    const std::string_view quote = openingQuote(text);
    text.remove_prefix(quote.size());
    const std::string_view address = takeUpTo(text, text.find(quote.empty() ? std::string_view(")") : quote));
    if (address.find('\\') == std::string_view::npos) return withoutBlanks(address);
  }
  text = {};
  return std::nullopt;
}

std::string_view largestCandidate(std::string_view text) {
  std::optional<Candidate> largest;
  for (skipBlanksAndCommas(text); !text.empty(); skipBlanksAndCommas(text)) {
    Candidate candidate;
    candidate.address = takeAddress(text);
    bool counts = true;
    if (candidate.address.ends_with(',')) {
      while (candidate.address.ends_with(',')) candidate.address.remove_suffix(1);
    } else {
      counts = applyDescriptors(takeDescriptors(text), candidate);
    }
    if (counts && (!largest || isLarger(candidate, *largest))) largest = candidate;
  }
  return largest ? largest->address : std::string_view();
}

std::string_view refreshTarget(std::string_view content) {
  skipBlanks(content);
  const std::size_t time = std::min(content.find_first_not_of("0123456789."), content.size());
  if (time == 0) return {};
  content.remove_prefix(time);
  if (content.empty() || (content.front() != ';' && content.front() != ',' && !isHtmlBlank(content.front()))) return {};
  skipBlanks(content);
  if (content.starts_with(';') || content.starts_with(',')) content.remove_prefix(1);
  skipBlanks(content);

  // "url" and "=" may be missing; an address that begins with "url" is told apart by its lack of a "=".
  std::string_view behind = content;
  if (equalsFolded(behind.substr(0, 3), "url")) {
    behind.remove_prefix(3);
    skipBlanks(behind);
    if (behind.starts_with('=')) {
      behind.remove_prefix(1);
      skipBlanks(behind);
      content = behind;
    }
  }
  if (!content.starts_with('"') && !content.starts_with('\'')) return withoutBlanks(content);
  const char quote = content.front();
  content.remove_prefix(1);
  return withoutBlanks(content.substr(0, content.find(quote)));
}

}  // namespace mv
