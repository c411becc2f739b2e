#include "ResponseHead.h"

#include <algorithm>
#include <charconv>

#include "TransportError.h"
#include "decoding/TextDecoding.h"

namespace mv {

namespace {

constexpr long kPartialContent = 206;
constexpr const char* kLocation = "Location";

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlank = " \t\v\f\r\n";
  const auto start = text.find_first_not_of(kBlank);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlank) - start + 1);
}

// What follows the first blank of `text`.
std::string_view behindBlank(std::string_view text) {
  return trimmed(text.substr(std::min(text.find(' '), text.size())));
}

struct Phrase {
  long status;
  const char* text;
};

// For servers that send none: HTTP/2 has no reason phrases.
constexpr Phrase kPhrases[] = {
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {402, "Payment Required"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {407, "Proxy Authentication Required"},
    {408, "Request Timeout"},
    {410, "Gone"},
    {414, "URI Too Long"},
    {421, "Misdirected Request"},
    {429, "Too Many Requests"},
    {451, "Unavailable For Legal Reasons"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
};

std::string standardPhrase(long status) {
  for (const Phrase& phrase : kPhrases)
    if (phrase.status == status) return phrase.text;
  return "HTTP status " + std::to_string(status);
}

}  // namespace

ResponseHead::Event ResponseHead::take(std::string_view line) {
  // Within a head it is a field.
  if (!open_ && line.starts_with("HTTP/")) {
    begin(line);
    return Event::Begun;
  }
  if (!open_) return Event::None;  // a trailer
  line = line.substr(0, line.find_first_of("\r\n"));
  if (!line.empty()) {
    takeField(line);
    return Event::None;
  }
  open_ = false;
  return Event::Ended;
}

void ResponseHead::begin(std::string_view statusLine) {
  open_ = true;
  fields_.clear();
  location_.clear();
  curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status_);
  reason_ = asPlainLine(decodeText(behindBlank(behindBlank(statusLine)), {}));
  if (reason_.empty()) reason_ = standardPhrase(status_);
}

// A line of blanks is a folded one, too, and no end of the head.
void ResponseHead::takeField(std::string_view line) {
  if (line.front() == ' ' || line.front() == '\t') {
    if (!fields_.empty()) fields_.back().value.append(1, ' ').append(trimmed(line));
    return;
  }
  const auto colon = line.find(':');
  if (colon == std::string_view::npos) return;
  const Field& field = fields_.emplace_back(Field{std::string(line.substr(0, colon)),  //
                                                  std::string(trimmed(line.substr(colon + 1)))});
  if (location_.empty() && curl_strequal(field.name.c_str(), kLocation) != 0) location_ = field.value;
}

// libcurl's own list of fields takes as many steps for each value as there are fields.
std::vector<std::string> ResponseHead::fields(const char* name) const {
  std::vector<std::string> values;
  for (const Field& field : fields_)
    if (curl_strequal(field.name.c_str(), name) != 0) values.push_back(field.value);
  return values;
}

std::string ResponseHead::field(const char* name) const {
  const auto values = fields(name);
  return values.empty() ? std::string() : values.back();
}

std::optional<std::uint64_t> ResponseHead::announcedLength() const {
  const std::string value = field("Content-Length");
  std::uint64_t length = 0;
  const auto result = std::from_chars(value.data(), value.data() + value.size(), length);
  if (result.ec != std::errc()) return std::nullopt;
  return length;
}

std::string ResponseHead::flaw(bool isFile) const {
  const auto lengths = fields("Content-Length");
  if (std::any_of(lengths.begin(), lengths.end(), [&](const auto& length) { return length != lengths.front(); }))
    return "The server announces two different lengths";
  if (status_ == kPartialContent) return "The server sends a part only, which was not asked for";
  if (isFile && status_ >= 300 && status_ < 400)
    return "The server redirects (" + std::to_string(status_) + ") without saying where to";
  return {};
}

std::string ResponseHead::redirection() const { return status_ >= 300 && status_ < 400 ? location_ : std::string(); }

}  // namespace mv
