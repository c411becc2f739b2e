// The login form of a site, seen from its downloads: an answer that is the login page is no file. Sessions end; the
// scan opens them again, and the files that were answered with the form meanwhile wait for that.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "store/Id.h"

namespace mv {

class InternetTransfer;

class LoginWatch {
 public:
  // Reads what tells the form of the site's login, if it has one. Raises DatabaseError.
  void start(Id siteId);
  // False, too, when the start has raised something.
  bool isStarted() const { return started_; }
  // A file is asked for.
  void beginRequest() { loginsAtRequest_ = logins_; }

  // Its answer begins. True when it is a page, of a site with a login form: its body is to be looked at.
  bool beginAnswer(const InternetTransfer& answer);
  // The next piece of such a body.
  void look(std::string_view piece);
  // What has been looked at holds the form.
  bool isLoginPage() const { return found_; }

  // The link's answer was the login page. False when it has waited for a login often enough.
  bool putOff(std::int64_t linkId);
  // A scan has logged in to the site.
  void loggedIn();
  // Waits for that.
  bool isPutOff(std::int64_t linkId) const;
  void forget(std::int64_t linkId) { waits_.erase(linkId); }

 private:
  struct Wait {
    int times = 0;
    int logins = 0;  // the login that it waits for, counted
  };

  std::string searchString_;  // in lower case; "" when there is no form
  bool started_ = false;
  bool looking_ = false;
  bool found_ = false;
  std::string tail_;  // where the string may have begun, in lower case
  int logins_ = 0;
  int loginsAtRequest_ = 0;
  std::map<std::int64_t, Wait> waits_;  // by link
};

}  // namespace mv
