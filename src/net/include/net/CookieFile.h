// Cookies that the user has taken from a browser, for sites whose login is no simple form: a file in the format that
// browsers' export add-ons and other fetchers write (one cookie a line, seven fields separated by tabs: domain, whether
// hosts below it count, path, whether for https only, end in seconds since 1970 or 0 for a session, name, value).
#pragma once

#include <QDateTime>
#include <QTimer>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace mv {

struct CookieLines {
  struct Refused {
    int line;            // from 1
    std::string reason;  // without the cookie's value
  };
  std::vector<std::string> cookies;  // as InternetTransfer::addCookie takes them
  std::vector<Refused> refused;
};

// Reads the text of such a file. Empty lines and comments are passed over; "#HttpOnly_" before a domain is none.
CookieLines parseCookies(std::string_view text);

// Keeps the cookies of all transfers in step with a file, which may come, change and go at any time, and is never
// written. Lines that cannot be read, and a file that others may read, are told in the error log.
class CookieFile {
 public:
  static constexpr int kLookInterval = 2000;  // milliseconds

  // Reads `path` at once, when it is there, and again whenever it has changed.
  explicit CookieFile(std::string path, int lookInterval = kLookInterval);

 private:
  struct State {
    QDateTime changed = {};
    qint64 size = -1;  // bytes; -1: there is no file
    bool operator==(const State&) const = default;
  };

  void look();
  void load();
  void take(const CookieLines& lines);

  std::string path_;
  State seen_;
  std::set<std::string> loaded_;  // domain, flag, path and name of every cookie that is from the file
  QTimer timer_;
};

}  // namespace mv
