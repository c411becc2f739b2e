#include "CharsetSearch.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "decoding/Encoding.h"

namespace mv {

namespace {

constexpr auto kNowhere = std::string_view::npos;
constexpr std::string_view kBlank = "\t\n\f\r ";

char lowered(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool isLetter(char c) { return lowered(c) >= 'a' && lowered(c) <= 'z'; }

bool isBlank(char c) { return kBlank.find(c) != kNowhere; }

bool startsWith(std::string_view text, std::string_view lower) {
  return text.size() >= lower.size() && std::equal(lower.begin(), lower.end(), text.begin(),
                                                   [](char wanted, char found) { return wanted == lowered(found); });
}

void skipBlanks(std::string_view& text) { text.remove_prefix(std::min(text.find_first_not_of(kBlank), text.size())); }

// The value at the start of `text`: in quotes of one kind, or up to one of `ends`.
std::string_view valueAt(std::string_view text, std::string_view ends) {
  if (text.empty()) return {};
  if (text.front() != '"' && text.front() != '\'') return text.substr(0, text.find_first_of(ends));
  const auto end = text.find(text.front(), 1);
  return end == kNowhere ? std::string_view() : text.substr(1, end - 1);
}

// A walk over the start of a page that stops at meta elements.
class Prescan {
 public:
  explicit Prescan(std::string_view start) : rest_(start) {}

  std::string_view encoding() {
    while (!rest_.empty()) {
      std::string_view found;
      if (startsWith(rest_, "<meta") && rest_.size() > kMeta && (isBlank(rest_[kMeta]) || rest_[kMeta] == '/'))
        found = metaEncoding();
      else
        skipOne();
      if (!found.empty()) return found;
    }
    return {};
  }

 private:
  static constexpr std::size_t kMeta = 5;

  struct Attribute {
    std::string name;
    std::string_view value;
  };

  void skipBehind(std::string_view end) {
    const auto at = rest_.find(end);
    rest_.remove_prefix(at == kNowhere ? rest_.size() : at + end.size());
  }

  void skipOne() {
    if (rest_.starts_with("<!--")) {
      rest_.remove_prefix(2);
      skipBehind("-->");
    } else if (isTag()) {
      rest_.remove_prefix(std::min(rest_.find_first_of("\t\n\f\r >"), rest_.size()));
      while (attribute()) {
      }
    } else if (startsWith(rest_, "<!") || startsWith(rest_, "</") || startsWith(rest_, "<?")) {
      skipBehind(">");
    } else {
      rest_.remove_prefix(1);
    }
  }

  bool isTag() const {
    if (!rest_.starts_with('<')) return false;
    const std::size_t name = rest_.starts_with("</") ? 2 : 1;
    return rest_.size() > name && isLetter(rest_[name]);
  }

  // The standard's "get an attribute".
  std::optional<Attribute> attribute() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of("\t\n\f\r /"), rest_.size()));
    if (rest_.empty() || rest_.front() == '>') return std::nullopt;
    Attribute result;
    const auto nameEnd = std::min(rest_.find_first_of("\t\n\f\r />=", 1), rest_.size());
    std::transform(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(nameEnd), std::back_inserter(result.name),
                   lowered);
    rest_.remove_prefix(nameEnd);
    skipBlanks(rest_);
    if (!rest_.starts_with('=')) return result;
    rest_.remove_prefix(1);
    skipBlanks(rest_);
    result.value = valueAt(rest_, "\t\n\f\r >");
    const bool isQuoted = !rest_.empty() && (rest_.front() == '"' || rest_.front() == '\'');
    rest_.remove_prefix(std::min(result.value.size() + (isQuoted ? 2 : 0), rest_.size()));
    return result;
  }

  std::string_view metaEncoding() {
    rest_.remove_prefix(kMeta);
    std::vector<std::string> seen;
    bool isContentType = false;
    bool needsContentType = false;
    std::string_view found;
    while (const auto next = attribute()) {
      if (std::find(seen.begin(), seen.end(), next->name) != seen.end()) continue;
      seen.push_back(next->name);
      if (next->name == "http-equiv")
        isContentType = next->value.size() == 12 && startsWith(next->value, "content-type");
      if (next->name == "content" && found.empty()) {
        found = encodingOf(charsetIn(next->value));
        needsContentType = true;
      }
      if (next->name == "charset") {
        found = encodingOf(next->value);
        needsContentType = false;
      }
    }
    if (needsContentType && !isContentType) return {};
    // A page in which this can be read is not UTF-16.
    return found.starts_with("utf-16") ? "utf-8" : found;
  }

  std::string_view rest_;
};

std::string_view xmlEncoding(std::string_view start) {
  if (!start.starts_with("<?xml")) return {};
  start = start.substr(0, start.find('>'));
  constexpr std::string_view kName = "encoding";
  const auto name = start.find(kName);
  if (name == kNowhere) return {};
  start.remove_prefix(name + kName.size());
  skipBlanks(start);
  if (!start.starts_with('=')) return {};
  start.remove_prefix(1);
  skipBlanks(start);
  const auto found = encodingOf(valueAt(start, "\t\n\f\r ?"));
  return found.starts_with("utf-16") ? "utf-8" : found;
}

}  // namespace

std::string_view charsetIn(std::string_view contentType) {
  constexpr std::string_view kName = "charset";
  while (!contentType.empty()) {
    if (!startsWith(contentType, kName)) {
      contentType.remove_prefix(1);
      continue;
    }
    contentType.remove_prefix(kName.size());
    skipBlanks(contentType);
    if (!contentType.starts_with('=')) continue;
    contentType.remove_prefix(1);
    skipBlanks(contentType);
    return valueAt(contentType, "\t\n\f\r ;,");
  }
  return {};
}

std::string_view declaredEncoding(std::string_view start) {
  const auto found = Prescan(start).encoding();
  return found.empty() ? xmlEncoding(start) : found;
}

}  // namespace mv
