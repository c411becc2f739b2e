#include "scan/ScanTexts.h"

#include "app/Settings.h"
#include "base/WebAddress.h"
#include "net/Address.h"
#include "process/ProcessTexts.h"

namespace mv {

namespace {

std::string stateText(const LoginStatus& login) {
  switch (login.state) {
    case LoginState::NotNeeded:
      return {};
    case LoginState::NoCredentials:
      return "no user name and password given";
    case LoginState::CredentialsInUse:
      return "user name and password in use";
    case LoginState::CredentialsRefused:
      return "user name and password refused (401)";
    case LoginState::FormAwaited:
      return "no page has shown the login form yet";
    case LoginState::FormHasNoFields:
      return "nothing sent, the form has no fields";
    case LoginState::FieldMissing:
      return "nothing sent, the form lacks \"" + login.missingField + "\"";
    case LoginState::OtherForm:
      return "nothing sent, the form is another one";
    case LoginState::Sent:
      return "request sent to " + login.address;
    case LoginState::Answered:
      return "answered, the login form is gone";
    case LoginState::FormCameAgain:
      return "refused, the login form came again";
    case LoginState::Failed:
      return "failed (" + std::to_string(login.code) + " " + login.reason + ")";
  }
  return {};
}

}  // namespace

std::string scanTitle(const std::string& siteName) { return kScanTitle + maskPassword(siteName); }

std::string pageText(const ScanStatus& status) { return "Page: " + shortened(status.page); }

std::string pageAddressText(const ScanStatus& status) { return "Page URL: " + status.lastPage; }

std::string toScanText(const ScanStatus& status) { return "To Scan: " + std::to_string(status.pagesLeft); }

std::string pagesProcessedText(const ScanStatus& status) {
  return "Processed: " + std::to_string(status.pagesProcessed);
}

std::string scanOutcomeText(const ScanStatus& status, long failed) {
  std::string outcomes = joinedCounts({{status.pagesRead, "page read", "pages read"},
                                       {status.linksFound, "link found", "links found"},
                                       {status.linksKeptOut, "kept out by filters"},
                                       {failed, "failed"}});
  if (status.pagesRead > 0 && status.linksFound == 0) outcomes += ", no new link";
  if (status.pagePercent >= 0) {
    const std::string place = "At " + std::to_string(status.pagePercent) + " % of a long page.";
    return outcomes.empty() ? place : outcomes + ". " + place;
  }
  // The first one, the start page, is on its way.
  if (outcomes.empty() && status.waiting == WaitingRows()) return "No page yet.";
  if (outcomes.empty()) return "No page yet. " + waitingText(status.waiting, "page");
  if (status.waiting.listed > 0 && !status.onlyStartPage) return outcomes + ". " + waitingText(status.waiting, "page");
  return outcomes + ". Start page next.";
}

std::string loginText(const LoginStatus& login) {
  if (login.state == LoginState::NotNeeded) return {};
  return "Login: " + stateText(login) + (login.givenUp ? "; not tried any more" : "");
}

}  // namespace mv
