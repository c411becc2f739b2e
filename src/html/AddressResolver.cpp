#include "html/AddressResolver.h"

#include <algorithm>
#include <array>

#include "base/Text.h"
#include "html/HtmlCharacters.h"

namespace mv {

namespace {

constexpr std::string_view kHttp = "http";
constexpr std::string_view kHttps = "https";
constexpr int kHttpPort = 80;
constexpr int kHttpsPort = 443;

constexpr bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

void appendEscaped(char c, std::string& out) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  out += '%';
  out += kDigits[byte >> 4U];
  out += kDigits[byte & 0x0FU];
}

std::string replaced(std::string_view text, std::string_view what, std::string_view by) {
  std::string result;
  for (std::size_t at = text.find(what); at != std::string_view::npos; at = text.find(what)) {
    result.append(text.substr(0, at)).append(by);
    text.remove_prefix(at + what.size());
  }
  return result.append(text);
}

// What a reference begins with up to its first ":"; "" when that is no scheme.
std::string_view schemeOf(std::string_view reference) {
  const std::size_t end = reference.find_first_of(":/?");
  if (end == std::string_view::npos || end == 0 || reference[end] != ':' || !isAsciiLetter(reference[0])) return {};
  const std::string_view scheme = reference.substr(0, end);
  const auto belongs = [](char c) { return isAsciiLetter(c) || isAsciiDigit(c) || c == '+' || c == '-' || c == '.'; };
  return std::all_of(scheme.begin(), scheme.end(), belongs) ? scheme : std::string_view();
}

bool isWebScheme(std::string_view scheme) { return equalsFolded(scheme, kHttp) || equalsFolded(scheme, kHttps); }

// QUrl decodes escapes that it holds for needless, and encodes what it holds for unsafe. With every "%" written as
// "%25" it can only do the latter, and decoding once gives back what was written.
QUrl urlOf(std::string_view reference) { return QUrl(toQString(replaced(reference, "%", "%25")), QUrl::TolerantMode); }

// What QUrl made of guarded user information.
std::string userInfoOf(const QUrl& url) {
  const std::string info = replaced(url.userInfo(QUrl::FullyEncoded).toStdString(), "%25", "%");
  return info.empty() ? info : info + "@";
}

// Host and port.
std::string hostAndPortOf(const QUrl& url) {
  const QString host = url.host(QUrl::FullyDecoded);
  const QString readable = QUrl::fromAce(host.toLatin1(), QUrl::IgnoreIDNWhitelist);
  const bool isAce = host.contains(QLatin1String("xn--"));
  std::string result = toUtf8(isAce && !readable.isEmpty() ? readable : host);
  if (result.find(':') != std::string::npos) result = "[" + result + "]";
  const int usual = url.scheme() == QLatin1String("https") ? kHttpsPort : kHttpPort;
  if (const int port = url.port(usual); port != usual) result += ":" + std::to_string(port);
  return result;
}

std::string pathOf(const QUrl& url) {
  std::string path;
  for (const char c : toUtf8(url.path(QUrl::FullyDecoded))) isControl(c) ? appendEscaped(c, path) : path.push_back(c);
  return path.empty() ? "/" : path;
}

// Characters of an address that needs no more than a place: none that are encoded, none that end a part of it, no "&",
// which may begin a character reference.
constexpr std::array<bool, 256> makePlain() {
  std::array<bool, 256> table{};
  for (std::size_t i = 0x21; i < 0x7F; ++i) table[i] = true;
  for (const char c : std::string_view("\"#&'<>?\\^`{|}:[]@")) table[static_cast<unsigned char>(c)] = false;
  return table;
}
constexpr std::array<bool, 256> kPlain = makePlain();

// Of such characters only, and no segment begins with a dot.
bool isPlain(std::string_view path) {
  char before = '/';
  for (const char c : path) {
    if (!kPlain[static_cast<unsigned char>(c)] || (c == '.' && before == '/')) return false;
    before = c;
  }
  return true;
}

// A host as it is written in links, that is certainly no number.
bool isPlainHost(std::string_view host) {
  const auto belongs = [](char c) { return (c >= 'a' && c <= 'z') || isAsciiDigit(c) || c == '-' || c == '.'; };
  return !host.empty() && host.front() >= 'a' && isAsciiLetter(host.back()) &&
         std::all_of(host.begin(), host.end(), belongs) && host.find("--") == std::string_view::npos &&
         host.find("..") == std::string_view::npos;
}

// `colon`: where the first one is.
bool isSimpleAddress(std::string_view address, std::size_t colon) {
  const std::string_view scheme = address.substr(0, colon);
  if (scheme != kHttp && scheme != kHttps) return false;
  address.remove_prefix(colon + 1);
  if (!address.starts_with("//")) return false;
  address.remove_prefix(2);
  const std::size_t path = address.find('/');
  return path != std::string_view::npos && isPlainHost(address.substr(0, path)) && isPlain(address.substr(path));
}

// Blanks and controls at both ends, tabs and line breaks. Mostly there are none.
std::string_view cleaned(std::string_view reference, std::string& room) {
  const auto isDropped = [](char c) { return c == '\t' || c == '\n' || c == '\r'; };
  while (!reference.empty() && static_cast<unsigned char>(reference.front()) <= ' ') reference.remove_prefix(1);
  while (!reference.empty() && static_cast<unsigned char>(reference.back()) <= ' ') reference.remove_suffix(1);
  if (std::none_of(reference.begin(), reference.end(), isDropped)) return reference;
  room.assign(reference);
  room.erase(std::remove_if(room.begin(), room.end(), isDropped), room.end());
  return room;
}

// The "special-query percent-encode set" of the URL standard, but for what is not ASCII.
constexpr std::array<bool, 256> makeEscapedInQuery() {
  std::array<bool, 256> table{};
  for (std::size_t i = 0; i < table.size(); ++i) table[i] = isControl(static_cast<char>(i));
  for (const char c : std::string_view(" \"#<>'")) table[static_cast<unsigned char>(c)] = true;
  return table;
}
constexpr std::array<bool, 256> kEscapedInQuery = makeEscapedInQuery();

bool isEscapedInQuery(char c) { return kEscapedInQuery[static_cast<unsigned char>(c)]; }

void appendQuery(std::string_view query, std::string& link) {
  link += '?';
  while (!query.empty()) {
    const auto escaped = std::find_if(query.begin(), query.end(), isEscapedInQuery);
    const auto end = static_cast<std::size_t>(escaped - query.begin());
    link += query.substr(0, end);
    if (end == query.size()) return;
    appendEscaped(query[end], link);
    query.remove_prefix(end + 1);
  }
}

}  // namespace

void AddressResolver::setPage(std::string_view address) {
  page_ = urlOf(isWebScheme(schemeOf(address)) ? std::string(address) : "http://" + std::string(address));
  setBaseUrl(page_);
}

void AddressResolver::setBase(std::string_view href) {
  std::string room;
  const QUrl url = page_.resolved(urlOf(cleaned(href, room)));
  const bool isWeb = url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
  if (isWeb && url.isValid() && !url.host().isEmpty()) setBaseUrl(url);
}

void AddressResolver::setBaseUrl(const QUrl& url) {
  base_ = url;
  host_ = hostAndPortOf(url);
  folder_ = host_ + pathOf(url);
  folder_.resize(folder_.rfind('/') + 1);
}

bool AddressResolver::resolve(std::string_view reference, std::string& link) const {
  if (resolveSimple(reference, link)) return true;
  std::string room;
  reference = cleaned(reference, room);
  reference = reference.substr(0, reference.find('#'));
  if (reference.empty()) return false;
  const std::size_t query = std::min(reference.find('?'), reference.size());
  const std::string_view path = reference.substr(0, query);
  if (!resolveSimple(path, link)) {
    const std::string_view scheme = schemeOf(path);
    if (!scheme.empty() && !isWebScheme(scheme)) return false;
    // QUrl gets to see that there is a query: without one an empty path would lead to the query of the base.
    if (!resolveAny(reference.substr(0, query + 1), link)) return false;
  }
  if (query < reference.size()) appendQuery(reference.substr(query + 1), link);
  return true;
}

bool AddressResolver::resolveSimple(std::string_view path, std::string& link) const {
  if (path.empty() || path.starts_with("//")) return false;
  if (isPlain(path)) {
    link = path.starts_with('/') ? host_ : folder_;
  } else {
    const std::size_t colon = path.find(':');
    if (colon == std::string_view::npos || !isSimpleAddress(path, colon)) return false;
    link.clear();
  }
  link += path;
  return true;
}

bool AddressResolver::resolveAny(std::string_view reference, std::string& link) const {
  const QUrl target = base_.resolved(urlOf(reference));
  if (!target.isValid() || target.host().isEmpty()) return false;
  link.clear();
  if (!schemeOf(reference).empty()) link.append(toUtf8(target.scheme())).append("://").append(userInfoOf(target));
  link.append(hostAndPortOf(target)).append(pathOf(target));
  return true;
}

}  // namespace mv
