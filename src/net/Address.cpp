#include "net/Address.h"

namespace mv {

namespace {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";
constexpr std::size_t kLongestShown = 40;
constexpr std::size_t kShownEnd = 18;

bool startsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

}  // namespace

std::string_view withoutScheme(std::string_view address) {
  for (const auto scheme : {kHttp, kHttps}) {
    if (address.starts_with(scheme)) return address.substr(scheme.size());
  }
  return address;
}

std::string_view lastSegment(std::string_view address) {
  const auto slash = address.rfind('/');
  return slash == std::string_view::npos ? std::string_view() : address.substr(slash + 1);
}

std::string maskUserInfo(std::string_view address) {
  // Any scheme counts here, in any case of letters: what is shown must not depend on how it was written.
  const auto slashes = address.find("://");
  const bool hasScheme = slashes != std::string_view::npos && slashes < address.find_first_of("/?#@");
  const auto start = hasScheme ? slashes + 3 : 0;
  const auto authority = address.substr(start, address.find_first_of("/?#", start) - start);
  const auto at = authority.rfind('@');
  if (at == std::string_view::npos) return std::string(address);
  return std::string(address.substr(0, start)).append("***").append(address.substr(start + at));
}

std::string withCredentials(std::string_view address, std::string_view user, std::string_view password) {
  std::string result(kHttp);
  return result.append(user).append(":").append(password).append("@").append(withoutScheme(address));
}

std::string shortened(std::string_view address) {
  std::size_t characters = 0;
  for (const char byte : address) characters += startsCharacter(byte) ? 1U : 0U;
  if (characters <= kLongestShown) return std::string(address);

  std::size_t headEnd = 0;
  std::size_t tailStart = 0;
  std::size_t seen = 0;
  for (std::size_t at = 0; at < address.size(); ++at) {
    if (!startsCharacter(address[at])) continue;
    if (seen == kShownEnd) headEnd = at;
    if (seen == characters - kShownEnd) tailStart = at;
    ++seen;
  }
  return std::string(address.substr(0, headEnd)).append("...").append(address.substr(tailStart));
}

}  // namespace mv
