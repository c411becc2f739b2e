// The login of a scan to its site: with a user name and a password in its requests, or with the site's login form. What
// it keeps is the state of that; whoever scans sends the requests.
#pragma once

#include <optional>
#include <string>

#include "scan/LoginRequest.h"
#include "scan/ScanStatus.h"
#include "store/Id.h"
#include "transfer/SiteLocation.h"

namespace mv {

// The first form of a page, "" when it has none.
struct PageForm {
  std::string text;       // in lower case (ASCII letters only)
  std::string asFetched;  // the same bytes as the page has them
};

class SiteLogin {
 public:
  // The scan starts, perhaps anew: reads the site's user name and password and gives them to all requests of the site
  // to its own host, those of other windows too. Raises DatabaseError.
  void start(Id siteId, const SiteLocation& location, Id formId);

  const std::string& userName() const { return userName_; }
  const std::string& password() const { return password_; }
  const LoginStatus& status() const { return status_; }
  // The page being fetched or worked through is the answer to a login request.
  bool isAnswerDue() const { return isAnswerDue_; }
  // It is, and the form is gone: the page that showed the form is worth reading again.
  bool isLetIn() const { return isAnswerDue_ && status_.state == LoginState::Answered; }

  // The start page's address as lists show it: in place of user name and password stands a mask, whatever characters
  // they hold.
  std::string listedStartPage() const;
  // A page is to be fetched: the address to ask for. It holds user name and password when they are used and the page,
  // at `location` without scheme, is on the site's own host. `isReadAgain`: it has shown the form and comes once more,
  // after a login that let the scan in.
  std::string beginPage(const std::string& url, const std::string& location, bool isReadAgain);
  // Its request failed.
  void pageFailed(long code, const std::string& reason);
  // Is there something to be done with the form of a page?
  bool wantsForms() const;
  // A page has come, with this form. The request that logs in, when one is to be sent now; a page that answers one, or
  // that is read again after one, is not answered with another, for a wrong password would go on for ever. Raises
  // DatabaseError.
  std::optional<LoginRequest> submit(const PageForm& form);

 private:
  void readCredentials();
  // withCredentials() by the scheme of the site.
  std::string withLogin(std::string_view address, std::string_view user, std::string_view password) const;
  void answered(const LoginRequest& request);
  void explain(const LoginRequest& request);
  bool isGivenUp() const;

  Id siteId_ = 0;
  SiteLocation site_;
  Id formId_ = 0;
  bool usesCredentials_ = false;
  std::string userName_;
  std::string password_;
  bool credentialsSent_ = false;  // with the page's request
  bool isAnswerDue_ = false;
  bool isReadAgain_ = false;
  bool everSent_ = false;  // a login request, by this process
  int refusals_ = 0;       // of the requests sent last
  LoginStatus status_;
};

}  // namespace mv
