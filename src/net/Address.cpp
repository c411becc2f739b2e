#include "net/Address.h"

#include <QByteArray>

#include "base/Text.h"

namespace mv {

namespace {

constexpr std::string_view kHttp = "http://";
constexpr std::string_view kHttps = "https://";
constexpr std::size_t kLongestShown = 40;
constexpr std::size_t kShownEnd = 18;

std::string percentEncoded(std::string_view text) {
  return QByteArray(text.data(), static_cast<qsizetype>(text.size())).toPercentEncoding().toStdString();
}

// Position behind the "@" of `address`, which has no scheme; 0 when it holds no user information.
std::size_t endOfUserInfo(std::string_view address) {
  const auto at = address.substr(0, address.find_first_of("/?#")).rfind('@');
  return at == std::string_view::npos ? 0 : at + 1;
}

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

std::string withCredentials(std::string_view address, std::string_view user, std::string_view password) {
  address = withoutScheme(address);
  address.remove_prefix(endOfUserInfo(address));
  return std::string(kHttp)
      .append(percentEncoded(user))
      .append(":")
      .append(percentEncoded(password))
      .append("@")
      .append(address);
}

std::string shortened(std::string_view address) {
  const auto characters = characterCount(address);
  if (characters <= kLongestShown) return std::string(address);
  const auto headEnd = advanceCharacters(address, 0, kShownEnd);
  const auto tailStart = advanceCharacters(address, headEnd, characters - 2 * kShownEnd);
  return std::string(address.substr(0, headEnd)).append("...").append(address.substr(tailStart));
}

}  // namespace mv
