#include "scan/ScanProcess.h"

#include <utility>

#include "BasePath.h"
#include "app/Events.h"
#include "app/ReportError.h"
#include "base/WebAddress.h"
#include "decoding/Encoding.h"
#include "net/Address.h"
#include "net/StoredAddress.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr int kWorkInterval = 3000;  // milliseconds

}  // namespace

ScanProcess::ScanProcess() : Process({"Done", "ID", "URL"}, kWorkInterval) {}

void ScanProcess::initWindow() {
  run([this] { start(); });
}

void ScanProcess::start() {
  location_ = SiteLocation(SiteName);
  location_.announce();
  if (location_.address() != SiteName) Domain = location_.host();
  Inet2.setSite(SiteID);
  login_.start(SiteID, location_, LoginFormID);
  show(status_.login, login_.status());
  parser_.SiteID = SiteID;
  parser_.Domain = Domain;
  parser_.DomainHops = DomainHops;
  parser_.UserName = login_.userName();
  parser_.Password = login_.password();
  beginRound();
}

void ScanProcess::beginRound() {
  disableWorkTimer();
  queue_.beginRound(SiteID);
  show(status_.page, {});
  updateStatus("pagestoscan");
  buildQueue();
}

void ScanProcess::buildTagArray() {
  if (!StopRequested()) walk_.setTags(loadTags());
}

void ScanProcess::buildQueue() {
  if (StopRequested()) return;
  page_.location = location_.address();
  queue_.build(SiteID, login_.listedStartPage());
  fillQueue();
}

void ScanProcess::fillQueue() {
  if (!queue_.isFilling()) return;  // built meanwhile by a second call
  if (!queue_.fill()) {
    setRowsOpened(queue_.rowsAdded());
    yieldThen([this] { fillQueue(); });
    return;
  }
  setRowsOpened(std::nullopt);
  updateStatus("pagestoscan");
  setProgress(queue_.pagesProcessed(), queue_.pagesLeft());
  if (!started_) {
    buildTagArray();
    parser_.BuildFilters();
    parser_.InitializeDomainHopper();
    started_ = true;
  }
  enableWorkTimer();
}

void ScanProcess::crawlStep() {
  run([this] { tick(); });
}

void ScanProcess::tick() {
  if (!started_) {
    start();
    return;
  }
  // Whatever fails here must not fail again at every tick: the page counts as finished from now on.
  if (page_.linkId != 0) queue_.finish(std::exchange(page_.linkId, 0), page_.failed);
  const int row = lvwLinks.nextWaiting();
  if (row >= 0)
    takeUp(row);
  else
    beginRound();
}

void ScanProcess::takeUp(int index) {
  disableWorkTimer();
  const WorkRow& row = lvwLinks.row(index);
  page_ = {.linkId = row.linkId, .url = plainAddress(row.url)};
  page_.location = row.linkId == ScanQueue::kStartPageLinkId ? location_.address() : page_.url;
  showPage();
  queue_.takeUp(index);
  rowTaken(index);
  updateStatus("pagestoscan");
  setProgress(queue_.pagesProcessed(), progressMaximum());
  Inet2.Execute(login_.beginPage(page_.url, page_.location), "GET", BodyMode::Text);
}

void ScanProcess::showPage() {
  show(status_.page, maskPassword(page_.url));
  show(status_.lastPage, status_.page);
}

void ScanProcess::updateStatus(const std::string& kind, const std::string& reason, long code) {
  if (StopRequested()) return;
  if (kind == "pagestoscan") {
    show(status_.pagesLeft, queue_.pagesLeft());
    show(status_.pagesProcessed, queue_.pagesProcessed());
  } else if (kind == "error") {
    showError(maskPassword(page_.url), reason, code);
  }
}

void ScanProcess::transferEvent(int state) {
  if (state == kError) pageFailed();
  if (state != kResponseCompleted) return;
  disableWorkTimer();
  page_.encoding = Inet2.TextEncoding();
  if (page_.linkId == ScanQueue::kStartPageLinkId && !login_.isAnswerDue())
    parser_.setAnsweringHost(hostOf(Inet2.ResponseAddress()));
  walk_.begin(
      {.text = Inet2.TakeText(),
       .basePath = computeBasePath(),
       .address = answeringAddress(),
       .contentType = Inet2.GetHeader("Content-Type"),
       .encode = [encoding = page_.encoding](std::string_view query) { return encodedForQuery(query, encoding); }});
  walkPage();
}

void ScanProcess::pageFailed() {
  ++errorCount_;
  updateStatus("error", Inet2.ResponseInfo(), Inet2.ResponseCode());
  logError(page_.linkId, page_.url);
  page_.failed = true;
  login_.pageFailed(Inet2.ResponseCode(), Inet2.ResponseInfo());
  show(status_.login, login_.status());
  enableWorkTimer();
}

void ScanProcess::walkPage() {
  if (!walk_.goOn([this] { return storeLink(); })) {
    yieldThen([this] { walkPage(); });
    return;
  }
  if (StopRequested()) return;
  const bool loggingIn = logIn();
  walk_.end();
  if (!loggingIn) enableWorkTimer();
  Q_EMIT pageProcessed();
}

bool ScanProcess::storeLink() {
  try {
    parser_.URL = storedAddress(std::move(parser_.URL), page_.encoding);
    queue_.store(parser_);
  } catch (const NoLinkId&) {
    return false;  // the user has been told, and would be told again for every further link of the page
  } catch (const std::exception& error) {
    report(error);
  }
  return !StopRequested();
}

bool ScanProcess::logIn() {
  if (!login_.wantsForms()) return false;
  const std::optional<LoginRequest> request = login_.submit(walk_.form());
  show(status_.login, login_.status());
  // Downloads that were answered with the form may go on.
  if (login_.isAnswerDue() && login_.status().state == LoginState::Answered) Q_EMIT events().siteLoggedIn(SiteID);
  if (!request) return false;
  page_.url = request->shownAddress();
  page_.reported.clear();
  showPage();
  Inet2.Execute(request->address(), "GET", BodyMode::Text);
  return true;
}

std::string ScanProcess::computeBasePath() const {
  if (login_.isAnswerDue()) return folderOf(Inet2.ResponseAddress());
  return basePathOf(page_.location, Domain, queue_.alternateMatchpath());
}

// As a link to it is stored: when nobody led the request elsewhere, the address that was asked for, as readable as a
// page wrote it.
std::string ScanProcess::answeringAddress() const {
  std::string answered = Inet2.ResponseAddress();
  const auto asked = toRequestAddress(page_.location);
  return asked && withoutScheme(asked->url) == withoutScheme(answered) ? page_.location : answered;
}

void ScanProcess::failed(const std::exception& error) {
  queue_.stopFilling();
  setRowsOpened(std::nullopt);
  report(error);
  // A request that was started before the failure will switch the timer on itself.
  if (!Inet2.StillExecuting()) enableWorkTimer();
}

void ScanProcess::report(const std::exception& error) {
  if (page_.reported == error.what()) return;
  page_.reported = error.what();
  parser_.forgetLookups();
  reportException(error, "frmScan");
}

}  // namespace mv
