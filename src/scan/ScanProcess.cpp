#include "scan/ScanProcess.h"

#include <string_view>
#include <utility>

#include "app/ReportError.h"
#include "app/Settings.h"
#include "database/Database.h"
#include "net/Address.h"
#include "net/TextBody.h"
#include "store/BuiltInForms.h"
#include "store/EscapeText.h"
#include "store/NoneOf.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr int kWorkInterval = 3000;                           // milliseconds
constexpr std::int64_t kStartPageLinkId = 1;                  // the sequence of link ids begins behind it
constexpr std::size_t kSearchStretch = std::size_t{1} << 18;  // bytes searched between two looks at the clock
constexpr const char* kBaseTag = "<base href=";
constexpr const char* kFileType = "File";
constexpr long kUnauthorized = 401;
constexpr long kForbidden = 403;
constexpr int kMostRefusals = 3;  // of logins in a row: after some more a server locks the account

// `path` before its last "/"; the whole when there is none.
std::string_view beforeLastSlash(std::string_view path) { return path.substr(0, path.rfind('/')); }

std::string endedBySlash(std::string_view path) {
  std::string result(path);
  if (!result.ends_with('/')) result += '/';
  return result;
}

// The folder in which the page of `address` lies, without scheme, ended by "/".
std::string folderOf(std::string_view address) {
  address = withoutScheme(address);
  return endedBySlash(beforeLastSlash(address.substr(0, address.find_first_of("?#"))));
}

}  // namespace

ScanProcess::ScanProcess() : Process({"Done", "ID", "URL"}, kWorkInterval) {}

void ScanProcess::initWindow() {
  run([this] { start(); });
}

void ScanProcess::start() {
  lvwLinks.clear();
  readCredentials();
  startLogin();
  reloadLimits();
  updateStatus("pagestoscan");
  buildQueue();
}

void ScanProcess::finishStart() {
  buildTagArray();
  parser_.SiteID = SiteID;
  parser_.DomainHops = DomainHops;
  parser_.BuildFilters();
  parser_.InitializeDomainHopper();
  started_ = true;
}

void ScanProcess::readCredentials() {
  for (const AuthenticationForm& form : kAuthenticationForms) {
    if (form.formId != LoginFormID) continue;
    useUrlCredentials_ = true;
    userName_ = siteField(form.userNameField);
    password_ = siteField(form.passwordField);
  }
}

// The site's files, which another process fetches, need its user name and password from the first one on.
void ScanProcess::startLogin() {
  refusals_ = 0;
  if (useUrlCredentials_) {
    InternetTransfer::rememberCredentials(SiteName, userName_, password_);
    showLogin(userName_.empty() && password_.empty() ? "no user name and password given"
                                                     : "user name and password in use");
  } else if (hasLoginForm()) {
    showLogin("no page has shown the login form yet");
  }
}

bool ScanProcess::hasLoginForm() const { return LoginFormID != 0 && LoginFormID != kNoLoginForm; }

std::string ScanProcess::siteField(int fieldId) const {
  const Recordset rows = gDatabase.query("select field_value from site_field_xref where field_id = " + number(fieldId) +
                                         " and site_id = " + number(SiteID));
  return rows.endOfRows() ? std::string() : rows.text("field_value");
}

void ScanProcess::reloadLimits() {
  const Recordset site =
      gDatabase.query("select pages_to_scan, alternate_matchpath from site where id = " + number(SiteID));
  pagesLeft_ = static_cast<long>(site.number("pages_to_scan"));
  alternateMatchpath_ = site.text("alternate_matchpath");
}

void ScanProcess::buildTagArray() {
  if (StopRequested()) return;
  tags_.clear();
  tags_.reserve(static_cast<std::size_t>(gDatabase.count("select count(*) as outCount from valid_tag")));
  for (Recordset rows = gDatabase.query("select tag from valid_tag"); !rows.endOfRows(); rows.moveNext())
    tags_.push_back(rows.text("Tag"));
  std::vector<std::string> searchStrings = tags_;
  searchStrings.push_back(kBaseTag);
  scanner_.expect(searchStrings);
}

void ScanProcess::buildQueue() {
  if (StopRequested()) return;
  WorkRow startPage;
  startPage.linkId = kStartPageLinkId;
  // Whatever characters it holds, the password itself stays out of everything that is shown.
  startPage.url = useUrlCredentials_ ? maskUserInfo(withCredentials(SiteName, {}, {})) : "http://" + SiteName;
  startPage.tagged = false;
  lvwLinks.append(std::move(startPage));
  rowsAdded_ = 1;
  baseUrl_ = SiteName;

  // Only waiting links are asked for: walking past the finished ones would cost every cycle of an old site a million
  // rows.
  const Statement ofSite = "site_id = " + number(SiteID);
  const Statement waiting = " and status = " + quoted("False");
  waitingLinks_.emplace(
      gDatabase.query("select id, status, site_id, url, link_type  from link where " + ofSite + " and " +
                      noneOf("link_type", {kFileType, "Email Address"}, "link", ofSite + waiting) + waiting));
  fillQueue();
}

void ScanProcess::fillQueue() {
  if (!waitingLinks_) return;  // built meanwhile by a second call
  const TimeBudget budget;
  Recordset& links = *waitingLinks_;
  std::vector<WorkRow> rows;
  const auto moreWanted = [&] { return !links.endOfRows() && rowsAdded_ < kQueueLimit && rowsAdded_ < pagesLeft_; };
  for (; moreWanted() && !budget.spent(); links.moveNext(), ++rowsAdded_) {
    WorkRow& row = rows.emplace_back();
    row.linkId = links.number("id");
    row.url = restored(links.text("url"));
  }
  lvwLinks.append(std::move(rows));
  if (moreWanted()) {
    setCaption("Opening. Please wait..." + std::to_string(rowsAdded_));
    yieldThen([this] { fillQueue(); });
    return;
  }
  waitingLinks_.reset();
  setCaption(title());
  updateStatus("pagestoscan");
  setProgress(pagesProcessed_, pagesLeft_);
  if (!started_) finishStart();
  enableWorkTimer();
}

void ScanProcess::tick() {
  if (started_)
    crawl();
  else
    start();
}

void ScanProcess::crawlStep() {
  run([this] { crawl(); });
}

void ScanProcess::crawl() {
  if (currentLinkId_ != 0) markPageDone();
  const int row = lvwLinks.nextWaiting();
  if (row >= 0)
    takeUp(row);
  else
    rebuildQueue();
}

void ScanProcess::takeUp(int index) {
  disableWorkTimer();
  const WorkRow& row = lvwLinks.row(index);
  const bool isStartPage = row.linkId == kStartPageLinkId;
  currentUrl_ = restored(row.url);
  currentLinkId_ = row.linkId;
  labelUrl_ = shownUrl_ = maskUserInfo(currentUrl_);
  reported_.clear();
  lvwLinks.setState(index, RowState::Working);
  rowTaken(index);
  --pagesLeft_;
  ++pagesProcessed_;
  updateStatus("pagestoscan");
  setProgress(pagesProcessed_, progressMaximum());
  baseUrl_ = isStartPage ? SiteName : currentUrl_;
  requestKind_ = kGetPage;
  isLoginAnswer_ = false;
  // A page of a foreign host never gets to see the site's password.
  const std::string withPassword = withCredentials(baseUrl_, userName_, password_);
  credentialsSent_ = useUrlCredentials_ && hostOf(withPassword) == hostOf(SiteName);
  Inet2.Execute(credentialsSent_ ? withPassword : currentUrl_, "GET", BodyMode::Text);
}

void ScanProcess::rebuildQueue() {
  disableWorkTimer();
  lvwLinks.clear();
  reloadLimits();
  pagesProcessed_ = 0;
  labelUrl_.clear();
  buildQueue();
}

void ScanProcess::markPageDone() {
  // Whatever fails here must not fail again at every tick.
  const std::int64_t id = std::exchange(currentLinkId_, 0);
  const bool error = std::exchange(pageError_, false);
  const int row = lvwLinks.findLink(id);
  if (row >= 0) lvwLinks.setState(row, error ? RowState::Error : RowState::Done);
  gDatabase.execute("update link set status = \"Done\" where id = " + number(id));
}

void ScanProcess::updateStatus(const std::string& kind, const std::string& reason, long code) {
  if (StopRequested()) return;
  if (kind == "pagestoscan") touch();
  if (kind == "error") showError(maskUserInfo(currentUrl_), reason, code);
}

void ScanProcess::transferEvent(int state) {
  if (state == kError) {
    pageFailed();
  } else if (state == kResponseCompleted && requestKind_ == kGetPage) {
    disableWorkTimer();
    processPage();
  }
}

void ScanProcess::pageFailed() {
  ++errorCount_;
  updateStatus("error", Inet2.ResponseInfo(), Inet2.ResponseCode());
  logError(currentLinkId_, currentUrl_);
  pageError_ = true;
  if (credentialsSent_ && Inet2.ResponseCode() == kUnauthorized) showLogin("user name and password refused (401)");
  if (isLoginAnswer_) loginFailed();
  enableWorkTimer();
}

void ScanProcess::loginFailed() {
  const long code = Inet2.ResponseCode();
  if (code == kUnauthorized || code == kForbidden) ++refusals_;
  showLogin("failed (" + std::to_string(code) + " " + Inet2.ResponseInfo() + ")" + lastTryText());
}

// The page is walked through once for its base href, then once for every tag. A long walk goes on in later events, so
// that a page of any size leaves the windows alive.
void ScanProcess::processPage() {
  scanner_.setHtml(Inet2.TakeText());
  walk_ = Walk::BaseHref;
  baseHref_.clear();
  scanner_.BasePath = computeBasePath();
  scanner_.setSearchString(kBaseTag);
  walkPage();
}

void ScanProcess::walkPage() {
  const TimeBudget budget;
  const clsLinkParser::Stretch stretch(parser_);
  do {
    while (scanner_.LinkFound()) {
      if (budget.spent()) {
        yieldThen([this] { walkPage(); });
        return;
      }
      if (!scanner_.seek(kSearchStretch)) continue;
      scanner_.getLink();
      if (!scanner_.Link().empty()) linkFound(scanner_.Link());
      if (StopRequested()) return;
    }
  } while (beginNextWalk());
  finishPage();
}

void ScanProcess::linkFound(const std::string& link) {
  if (walk_ == Walk::BaseHref)
    baseHref_ = link;
  else
    handleLink(link);
}

bool ScanProcess::beginNextWalk() {
  if (walk_ == Walk::BaseHref) {
    walk_ = Walk::Links;
    tag_ = 0;
    basePath_ = baseHref_.empty() ? computeBasePath() : computeBasePath(baseHref_);
    scanner_.BasePath = basePath_;
  } else {
    ++tag_;
  }
  if (tag_ >= tags_.size()) return false;
  scanner_.restart();
  scanner_.setSearchString(tags_[tag_]);
  return true;
}

void ScanProcess::handleLink(const std::string& link) {
  try {
    storeLink(link);
  } catch (const NoLinkId&) {
    // The user has been told, and would be told again for every further link of the page.
    tag_ = tags_.size();
    scanner_.setHtml(std::string());
  } catch (const std::exception& error) {
    report(error);
  }
}

void ScanProcess::storeLink(const std::string& link) {
  parser_.BasePath = basePath_;
  parser_.Domain = Domain;
  parser_.Link = link;
  parser_.UserName = userName_;
  parser_.Password = password_;
  parser_.SiteID = SiteID;
  parser_.ProcessLink();
  if (lvwLinks.holdsAddress(parser_.URL)) return;
  parser_.AddLinkToDatabase();
  if (!parser_.Flag || parser_.LinkType == kFileType) return;
  if (rowsAdded_ >= kQueueLimit || rowsAdded_ >= pagesLeft_) return;
  WorkRow row;
  row.linkId = parser_.LinkID;
  row.url = parser_.URL;
  lvwLinks.append(std::move(row));
  ++rowsAdded_;
}

void ScanProcess::finishPage() {
  const bool loggingIn = hasLoginForm() && !useUrlCredentials_ && submitLoginForm();
  scanner_.setHtml(std::string());
  if (!loggingIn) enableWorkTimer();
  Q_EMIT pageProcessed();
}

bool ScanProcess::submitLoginForm() {
  scanner_.restart();
  scanner_.getForm();
  if (scanner_.Form.empty() && !isLoginAnswer_) return false;
  const LoginRequest request(loadLoginFields(LoginFormID, SiteID), scanner_.Form, scanner_.FormAsFetched);
  // A page that answers a login request is not answered with another: a wrong password would go on for ever.
  if (isLoginAnswer_) {
    loginAnswered(request);
  } else if (request.outcome() != LoginRequest::Outcome::Ready) {
    showWhyNothingSent(request);
  } else if (refusals_ < kMostRefusals) {
    sendLogin(request);
    return true;
  }
  return false;
}

void ScanProcess::sendLogin(const LoginRequest& request) {
  isLoginAnswer_ = true;
  loginSent_ = true;
  credentialsSent_ = false;
  currentUrl_ = request.shownAddress();
  labelUrl_ = shownUrl_ = currentUrl_;
  reported_.clear();
  showLogin("request sent to " + currentUrl_);
  Inet2.Execute(request.address(), "GET", BodyMode::Text);
}

void ScanProcess::loginAnswered(const LoginRequest& request) {
  const bool refused = request.outcome() == LoginRequest::Outcome::Ready;
  refusals_ = refused ? refusals_ + 1 : 0;
  showLogin(refused ? "refused, the login form came again" + lastTryText() : "answered, the login form is gone");
}

std::string ScanProcess::lastTryText() const { return refusals_ < kMostRefusals ? "" : "; not tried any more"; }

void ScanProcess::showWhyNothingSent(const LoginRequest& request) {
  using Outcome = LoginRequest::Outcome;
  if (request.outcome() == Outcome::NoFields)
    showLogin("nothing sent, the form has no fields");
  else if (request.outcome() == Outcome::FieldMissing)
    showLogin("nothing sent, the form lacks \"" + request.missingField() + "\"");
  else if (!loginSent_)
    showLogin("nothing sent, the form is another one");
}

void ScanProcess::showLogin(const std::string& text) {
  loginText_ = "Login: " + text;
  touch();
}

std::string ScanProcess::computeBasePath() const {
  if (isLoginAnswer_) return folderOf(Inet2.ResponseAddress());
  const std::string_view base = baseUrl_.empty() ? Domain : baseUrl_;
  std::string_view path = base;
  if (path.ends_with('/')) path.remove_suffix(1);
  path = beforeLastSlash(path);
  if (path == Domain) path = base;
  const bool isPage = path.ends_with(".htm") || path.ends_with(".html") || path.ends_with(".shtml");
  if (isYes(alternateMatchpath_) && isPage) path = beforeLastSlash(path);
  return endedBySlash(path);
}

std::string ScanProcess::computeBasePath(const std::string& baseHref) const { return endedBySlash(baseHref); }

void ScanProcess::failed(const std::exception& error) {
  waitingLinks_.reset();
  setCaption(title());
  report(error);
  // A request that was started before the failure will switch the timer on itself.
  if (!Inet2.StillExecuting()) enableWorkTimer();
}

void ScanProcess::report(const std::exception& error) {
  if (reported_ == error.what()) return;
  reported_ = error.what();
  parser_.endStretch();
  reportException(error, "frmScan");
}

std::string ScanProcess::title() const { return kScanTitle + maskUserInfo(SiteName); }

std::string ScanProcess::pageLabel() const { return "Page: " + shortened(labelUrl_); }

std::string ScanProcess::pageUrlText() const { return "Page URL: " + shownUrl_; }

std::string ScanProcess::toScanText() const { return "To Scan: " + std::to_string(pagesLeft_); }

std::string ScanProcess::processedText() const { return "Processed: " + std::to_string(pagesProcessed_); }

}  // namespace mv
