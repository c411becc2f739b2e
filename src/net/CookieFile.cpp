#include "net/CookieFile.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <array>
#include <utility>

#include "app/ErrorLog.h"
#include "base/Text.h"
#include "transfer/InternetTransfer.h"

namespace mv {

namespace {

constexpr std::string_view kHttpOnly = "#HttpOnly_";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr char kTab = '\t';
constexpr std::size_t kMostFields = 7;
constexpr qint64 kLongestFile = 5 << 20;     // bytes
constexpr std::size_t kMostNamed = 10;       // lines in the log
constexpr std::string_view kLongGone = "1";  // seconds since 1970

enum Field { kDomain, kBelow, kPath, kSecure, kEnd, kName, kValue };
using Fields = std::array<std::string_view, kMostFields>;

// A field behind the last one counts as well. How many there are.
std::size_t split(std::string_view line, Fields& fields) {
  std::size_t count = 0;
  while (true) {
    const auto tab = std::min(line.find(kTab), line.size());
    if (count < kMostFields) fields[count] = line.substr(0, tab);
    ++count;
    if (tab == line.size()) return count;
    line.remove_prefix(tab + 1);
  }
}

bool isFlag(std::string_view text) {
  const QString flag = toQString(text);
  return flag.compare("TRUE", Qt::CaseInsensitive) == 0 || flag.compare("FALSE", Qt::CaseInsensitive) == 0;
}

bool isNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos && text.size() < 19;
}

bool hasControls(std::string_view text) {
  return std::any_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
}

std::string lowered(std::string_view text) { return toUtf8(toQString(text).toLower()); }

// The rules of the two prefixes that a name may bear.
bool keepsItsPrefix(const Fields& fields) {
  const bool isSecure = lowered(fields[kSecure]) == "true";
  if (fields[kName].starts_with("__Secure-")) return isSecure;
  if (!fields[kName].starts_with("__Host-")) return true;
  return isSecure && fields[kPath] == "/" && lowered(fields[kBelow]) == "false";
}

// "" when it is a cookie.
std::string flawOf(const Fields& fields, std::size_t count) {
  if (count < kMostFields - 1 || count > kMostFields)
    return std::to_string(count) + (count == 1 ? " field" : " fields") + " where 7 belong, separated by tabs";
  const auto domain = fields[kDomain];
  if (domain.empty() || domain.find_first_of(" /:") != std::string_view::npos) return "no domain in the first field";
  if (!isFlag(fields[kBelow])) return "neither TRUE nor FALSE in the second field";
  if (!fields[kPath].starts_with('/')) return "no path in the third field";
  if (!isFlag(fields[kSecure])) return "neither TRUE nor FALSE in the fourth field";
  if (!isNumber(fields[kEnd])) return "no time in the fifth field";
  if (fields[kName].empty()) return "no name in the sixth field";
  if (std::any_of(fields.begin(), fields.end(), hasControls)) return "a control character";
  return keepsItsPrefix(fields) ? "" : "the flags are not those that its name demands";
}

// What one cookie has to itself.
std::string keyOf(std::string_view line) {
  Fields fields;
  split(line, fields);
  std::string key(fields[kDomain]);
  for (const auto field : {kBelow, kPath, kName}) (key += kTab).append(fields[field]);
  return key;
}

std::string expired(const std::string& key) {
  Fields fields;
  split(key, fields);
  std::string line(fields[0]);
  for (const std::string_view field : {fields[1], fields[2], std::string_view("FALSE"), kLongGone, fields[3]})
    (line += kTab).append(field);
  return line + kTab;
}

void readLine(std::string_view line, int number, CookieLines& result) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  const bool isHttpOnly = line.starts_with(kHttpOnly);
  if (line.find_first_not_of(" \t") == std::string_view::npos || (line.starts_with('#') && !isHttpOnly)) return;
  if (isHttpOnly) line.remove_prefix(kHttpOnly.size());
  Fields fields;
  const auto count = split(line, fields);
  fields[kEnd] = fields[kEnd].substr(0, fields[kEnd].find('.'));  // some write parts of seconds
  if (const auto flaw = flawOf(fields, count); !flaw.empty()) {
    result.refused.push_back({number, flaw});
    return;
  }
  std::string cookie(isHttpOnly ? kHttpOnly : "");
  for (const auto field : fields) cookie.append(field) += kTab;
  cookie.pop_back();
  result.cookies.push_back(std::move(cookie));
}

}  // namespace

CookieLines parseCookies(std::string_view text) {
  CookieLines result;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  for (int number = 1; !text.empty(); ++number) {
    const auto end = std::min(text.find('\n'), text.size());
    readLine(text.substr(0, end), number, result);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

CookieFile::CookieFile(std::string path, int lookInterval) : path_(std::move(path)) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
  timer_.start(lookInterval);
  look();
}

void CookieFile::look() {
  const QFileInfo file(toQString(path_));
  const State now = file.exists() ? State{file.lastModified(), file.size()} : State();
  if (now == seen_) return;
  seen_ = now;
  load();
}

void CookieFile::load() {
  QFile file(toQString(path_));
  if (seen_.size >= 0 && !QFileInfo(file).isFile()) {
    // A pipe would hold the program until somebody writes into it.
    tryAppendToErrorLog({"Cookies: " + path_ + " is not a file"});
    take({});
  } else if (seen_.size > kLongestFile) {
    tryAppendToErrorLog({"Cookies: " + path_ + " is too large to be a file of cookies"});
  } else if (file.open(QIODevice::ReadOnly)) {
    take(parseCookies(file.readAll().toStdString()));
    if ((file.permissions() & (QFile::ReadGroup | QFile::ReadOther)) != 0)
      tryAppendToErrorLog({"Cookies: " + path_ +
                           " can be read by other users of this computer, and it opens your "
                           "accounts to whoever reads it: take that right away (chmod 600)"});
  } else if (seen_.size >= 0) {
    tryAppendToErrorLog({"Cookies: " + path_ + " cannot be read: " + toUtf8(file.errorString())});
  } else {
    take({});
  }
}

void CookieFile::take(const CookieLines& lines) {
  std::set<std::string> keys;
  for (const auto& cookie : lines.cookies) {
    InternetTransfer::addCookie(cookie);
    keys.insert(keyOf(cookie));
  }
  for (const auto& key : std::exchange(loaded_, keys))
    if (!keys.contains(key)) InternetTransfer::addCookie(expired(key));
  const auto named = std::min(lines.refused.size(), kMostNamed);
  for (std::size_t i = 0; i < named; ++i)
    tryAppendToErrorLog({"Cookies: line " + std::to_string(lines.refused[i].line) + " of " + path_ +
                         " is not taken: " + lines.refused[i].reason});
  if (named < lines.refused.size())
    tryAppendToErrorLog({"Cookies: nor are " + std::to_string(lines.refused.size() - named) + " lines more"});
}

}  // namespace mv
