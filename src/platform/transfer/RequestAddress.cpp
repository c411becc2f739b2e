#include "transfer/RequestAddress.h"

#include <curl/curl.h>

#include <QUrl>
#include <algorithm>
#include <memory>

#include "base/Text.h"

namespace mv {

namespace {

// Addresses are taken apart here and not by libcurl's URL interface, which refuses blanks and controls, takes the path
// of "http:///path" for a host, writes "127.1" anew, and gives no ASCII form of a host name. libcurl gets to see only
// what is put together again, so that both mean the same host.
constexpr std::string_view kEndOfAuthority = "/?#";
constexpr std::string_view kHttps = "https://";

bool isBlankOrControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte <= 0x20 || byte == 0x7F;
}

bool isSchemeCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlankOrControl(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlankOrControl(text.back())) text.remove_suffix(1);
  return text;
}

// Cuts "scheme://" off the front; "http" when there is none.
std::string_view takeScheme(std::string_view& address) {
  const auto end = address.find("://");
  if (end == std::string_view::npos || end == 0) return "http";
  const auto scheme = address.substr(0, end);
  if (!std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter)) return "http";
  address.remove_prefix(end + 3);
  return scheme;
}

// A "%" that no two hexadecimal digits follow stands for itself.
std::string percentDecoded(std::string_view text) {
  int size = 0;
  const std::unique_ptr<char, void (*)(void*)> decoded(
      curl_easy_unescape(nullptr, std::string(text).c_str(), static_cast<int>(text.size()), &size), &curl_free);
  return decoded ? std::string(decoded.get(), static_cast<std::size_t>(size)) : std::string();
}

std::optional<Credentials> takeUserInfo(std::string_view& authority) {
  const auto at = authority.rfind('@');
  if (at == std::string_view::npos) return std::nullopt;
  const auto info = authority.substr(0, at);
  authority.remove_prefix(at + 1);
  const auto colon = info.find(':');
  Credentials credentials{percentDecoded(info.substr(0, colon)), {}};
  if (colon != std::string_view::npos) credentials.password = percentDecoded(info.substr(colon + 1));
  if (credentials.user.empty() && credentials.password.empty()) return std::nullopt;
  return credentials;
}

// Host and port in ASCII; empty when it is no host.
std::string asciiHost(std::string_view host) {
  if (std::any_of(host.begin(), host.end(), isBlankOrControl)) return {};
  if (std::all_of(host.begin(), host.end(), isAscii)) return std::string(host);
  const auto portStart = std::min(host.rfind(':'), host.size());
  const auto port = host.substr(portStart);
  if (!std::all_of(port.begin(), port.end(), isAscii)) return {};
  const auto ace = QUrl::toAce(toQString(host.substr(0, portStart)));
  return ace.isEmpty() ? std::string() : ace.toStdString().append(port);
}

std::string lowered(std::string_view text) {
  std::string result(text);
  for (char& c : result)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return result;
}

// `host` in lower case, without the port that the scheme stands for.
std::string comparableHost(std::string_view scheme, std::string host) {
  host = lowered(host);
  const std::string_view usualPort = lowered(scheme) == "https" ? ":443" : ":80";
  if (host.ends_with(usualPort)) host.erase(host.size() - usualPort.size());
  if (host.ends_with(':')) host.pop_back();
  return host;
}

// QByteArray's own percent encoding would encode every "%" once more.
void appendEncoded(std::string& out, char c) {
  constexpr std::string_view kForbidden = "<>\"{}|\\^`";
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  if (!isBlankOrControl(c) && isAscii(c) && kForbidden.find(c) == std::string_view::npos) {
    out += c;
    return;
  }
  const auto byte = static_cast<unsigned char>(c);
  out += '%';
  out += kDigits[byte >> 4U];
  out += kDigits[byte & 0x0FU];
}

}  // namespace

std::optional<RequestAddress> toRequestAddress(std::string_view address) {
  address = trimmed(address);
  const auto scheme = takeScheme(address);
  auto authority = address.substr(0, address.find_first_of(kEndOfAuthority));
  auto rest = address.substr(authority.size());
  rest = rest.substr(0, rest.find('#'));

  RequestAddress result;
  result.credentials = takeUserInfo(authority);
  const auto host = asciiHost(authority);
  if (host.empty()) return std::nullopt;
  result.host = comparableHost(scheme, host);
  result.url.append(scheme).append("://").append(host);
  if (!rest.starts_with('/')) result.url += '/';
  for (const char c : rest) appendEncoded(result.url, c);
  return result;
}

void askByHttps(RequestAddress& address) {
  constexpr std::string_view kHttp = "http://";
  if (lowered(address.url.substr(0, kHttp.size())) != kHttp) return;
  // The host anew: it may have borne the port of http.
  address.url = std::string(kHttps) + address.host + address.url.substr(address.url.find('/', kHttp.size()));
}

std::string redirectTarget(const std::string& base, const std::string& location) {
  const std::unique_ptr<CURLU, void (*)(CURLU*)> url(curl_url(), &curl_url_cleanup);
  char* whole = nullptr;
  if (!url || curl_url_set(url.get(), CURLUPART_URL, base.c_str(), 0) != CURLUE_OK ||
      curl_url_set(url.get(), CURLUPART_URL, location.c_str(), CURLU_URLENCODE | CURLU_ALLOW_SPACE) != CURLUE_OK ||
      curl_url_get(url.get(), CURLUPART_URL, &whole, 0) != CURLUE_OK)
    return {};
  const std::unique_ptr<char, void (*)(void*)> result(whole, &curl_free);
  return result.get();
}

// As toRequestAddress does, without the rest: a scan asks for every foreign link.
std::string hostOf(std::string_view address) {
  address = trimmed(address);
  const auto scheme = takeScheme(address);
  const auto authority = address.substr(0, address.find_first_of(kEndOfAuthority));
  return comparableHost(scheme, asciiHost(authority.substr(authority.rfind('@') + 1)));
}

CredentialsOnRedirect credentialsOnRedirect(std::string_view location, const std::string& host) {
  const auto authority = location.substr(0, location.find_first_of(kEndOfAuthority, kHttps.size()));
  // A blank may stand where a header field was folded: what libcurl goes to ends there.
  const bool isWhole = authority.find_first_of(" \t") == std::string_view::npos;
  if (lowered(location.substr(0, kHttps.size())) == kHttps && isWhole && !host.empty() && hostOf(location) == host)
    return CredentialsOnRedirect::Keep;
  const bool isPath = location.starts_with('/') && location.find_first_of("/\\", 1) != 1;
  return isPath ? CredentialsOnRedirect::AsBefore : CredentialsOnRedirect::Drop;
}

}  // namespace mv
