#include "base/WebAddress.h"

#include <QUrl>
#include <algorithm>

namespace mv {

namespace {

constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kAuthorityEnd = "/?#";
constexpr std::string_view kAuthorityEndInText = "/?# \t\r\n'\"";
constexpr std::string_view kMask = "***";

// Where the host, with what stands before it, begins. Any scheme counts, in any case of letters, and so do slashes too
// many: what is shown must not depend on how it was written.
std::size_t authorityStart(std::string_view address) {
  const auto scheme = address.find(kSchemeEnd);
  const bool hasScheme = scheme != std::string_view::npos && scheme < address.find_first_of("/?#@");
  const auto start = address.find_first_not_of('/', hasScheme ? scheme + kSchemeEnd.size() : 0);
  return std::min(start, address.size());
}

}  // namespace

bool isWebAddress(const QString& url) {
  const QUrl address(url.trimmed());
  return (address.scheme() == "http" || address.scheme() == "https") && !address.host().isEmpty();
}

std::string maskPassword(std::string_view address) {
  const auto start = authorityStart(address);
  const auto authority = address.substr(start, address.find_first_of(kAuthorityEnd, start) - start);
  const auto at = authority.rfind('@');
  const auto colon = authority.find(':');
  if (at == std::string_view::npos || colon > at) return std::string(address);
  return std::string(address.substr(0, start + colon + 1)).append(kMask).append(address.substr(start + at));
}

std::string maskPasswords(std::string_view text) {
  std::string masked;
  for (auto scheme = text.find(kSchemeEnd); scheme != std::string_view::npos; scheme = text.find(kSchemeEnd)) {
    const auto start = scheme + kSchemeEnd.size();
    const auto authority = text.substr(start, text.find_first_of(kAuthorityEndInText, start) - start);
    masked.append(text.substr(0, start)).append(maskPassword(authority));
    text.remove_prefix(start + authority.size());
  }
  return masked.append(text);
}

}  // namespace mv
