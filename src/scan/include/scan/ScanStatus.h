// How a scan stands: what its window shows, in numbers and addresses. ScanTexts has the words.
#pragma once

#include <string>

#include "process/WaitingRows.h"

namespace mv {

// How the login to a site stands.
enum class LoginState {
  NotNeeded,
  NoCredentials,       // requests are to carry a user name and a password, and there are none
  CredentialsInUse,    // requests carry them
  CredentialsRefused,  // with 401
  FormAwaited,         // no page has shown the login form yet
  FormHasNoFields,     // nothing was sent: the form's definition is empty
  FieldMissing,        // nothing was sent: the page's form lacks `missingField`
  OtherForm,           // nothing was sent: the page's form is another one
  Sent,                // a request is on its way to `address`
  Answered,            // and the form is gone
  FormCameAgain,       // the answer shows the form again
  Failed,              // the request failed with `code` and `reason`
};

struct LoginStatus {
  LoginState state = LoginState::NotNeeded;
  std::string address = {};       // without parameters, masked
  std::string missingField = {};  // its name
  long code = 0;
  std::string reason = {};
  bool givenUp = false;  // not tried any more until the scan is started anew

  bool operator==(const LoginStatus&) const = default;
};

struct ScanStatus {
  // The page being fetched or worked through, user information masked. The first is "" between two rounds, the second
  // stays.
  std::string page;
  std::string lastPage;
  long pagesLeft = 0;       // that this round may still fetch
  long pagesProcessed = 0;  // that it has fetched
  LoginStatus login;
  // Since the process was started.
  long pagesRead = 0;
  long linksFound = 0;         // new ones, stored
  long linksKeptOut = 0;       // by filters
  WaitingRows waiting;         // pages
  bool onlyStartPage = false;  // this round has no other page
  int pagePercent = -1;        // of a page that is worked through in several slices; -1: no such page
};

}  // namespace mv
