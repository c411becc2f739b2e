#include "scan/SiteLogin.h"

#include "base/WebAddress.h"
#include "net/Address.h"
#include "store/BuiltInForms.h"
#include "transfer/InternetTransfer.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr long kUnauthorized = 401;
constexpr long kForbidden = 403;
constexpr int kMostRefusals = 3;  // in a row: after some more a server locks the account

}  // namespace

void SiteLogin::start(Id siteId, const SiteLocation& location, Id formId) {
  siteId_ = siteId;
  site_ = location;
  formId_ = formId;
  refusals_ = 0;
  usesCredentials_ = false;
  userName_.clear();
  password_.clear();
  readCredentials();
  // The site's files, which another process fetches, need them from the first one on.
  InternetTransfer::rememberLogin(siteId_, site_.address(), userName_, password_);
  if (usesCredentials_) {
    const bool none = userName_.empty() && password_.empty();
    status_ = {.state = none ? LoginState::NoCredentials : LoginState::CredentialsInUse};
  } else if (wantsForms()) {
    status_ = {.state = LoginState::FormAwaited};
  }
}

void SiteLogin::readCredentials() {
  for (const AuthenticationForm& form : kAuthenticationForms) {
    if (form.formId != formId_) continue;
    usesCredentials_ = true;
    userName_ = loadSiteField(siteId_, form.userNameField);
    password_ = loadSiteField(siteId_, form.passwordField);
  }
}

std::string SiteLogin::withLogin(std::string_view address, std::string_view user, std::string_view password) const {
  const std::string byHttp = withCredentials(address, user, password);
  return site_.isHttps() ? "https" + byHttp.substr(byHttp.find(':')) : byHttp;
}

std::string SiteLogin::listedStartPage() const {
  return usesCredentials_ ? maskPassword(withLogin(site_.address(), userName_, {})) : site_.withScheme();
}

std::string SiteLogin::beginPage(const std::string& url, const std::string& location, bool isReadAgain) {
  isAnswerDue_ = false;
  isReadAgain_ = isReadAgain;
  const std::string withPassword = withLogin(location, userName_, password_);
  credentialsSent_ = usesCredentials_ && hostOf(withPassword) == hostOf(site_.withScheme());
  return credentialsSent_ ? withPassword : url;
}

void SiteLogin::pageFailed(long code, const std::string& reason) {
  if (credentialsSent_ && code == kUnauthorized) status_ = {.state = LoginState::CredentialsRefused};
  if (!isAnswerDue_) return;
  if (code == kUnauthorized || code == kForbidden) ++refusals_;
  status_ = {.state = LoginState::Failed, .code = code, .reason = reason, .givenUp = isGivenUp()};
}

bool SiteLogin::wantsForms() const { return formId_ != 0 && formId_ != kNoLoginForm && !usesCredentials_; }

bool SiteLogin::isGivenUp() const { return refusals_ >= kMostRefusals; }

std::optional<LoginRequest> SiteLogin::submit(const PageForm& form) {
  const bool isAnswer = isAnswerDue_ || isReadAgain_;
  if (form.text.empty() && !isAnswer) return std::nullopt;
  LoginRequest request(loadLoginFields(formId_, siteId_), form.text, form.asFetched);
  if (isAnswer) {
    answered(request);
  } else if (request.outcome() != LoginRequest::Outcome::Ready) {
    explain(request);
  } else if (!isGivenUp()) {
    isAnswerDue_ = everSent_ = true;
    credentialsSent_ = false;
    status_ = {.state = LoginState::Sent, .address = request.shownAddress()};
    return request;
  }
  return std::nullopt;
}

// `request` is the one that the answer's form would make.
void SiteLogin::answered(const LoginRequest& request) {
  const bool refused = request.outcome() == LoginRequest::Outcome::Ready;
  // An answer without the form may be a page that says no; the page that was asked for first tells.
  if (refused)
    ++refusals_;
  else if (isReadAgain_)
    refusals_ = 0;
  status_ = {.state = refused ? LoginState::FormCameAgain : LoginState::Answered, .givenUp = isGivenUp()};
}

void SiteLogin::explain(const LoginRequest& request) {
  using Outcome = LoginRequest::Outcome;
  if (request.outcome() == Outcome::NoFields)
    status_ = {.state = LoginState::FormHasNoFields};
  else if (request.outcome() == Outcome::FieldMissing)
    status_ = {.state = LoginState::FieldMissing, .missingField = request.missingField()};
  else if (!everSent_)
    status_ = {.state = LoginState::OtherForm};
}

}  // namespace mv
