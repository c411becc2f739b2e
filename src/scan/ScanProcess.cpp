#include "scan/ScanProcess.h"

#include <algorithm>
#include <utility>

#include "BasePath.h"
#include "app/ErrorLog.h"
#include "app/Events.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/Clock.h"
#include "base/WebAddress.h"
#include "net/Address.h"
#include "net/StoredAddress.h"
#include "scan/ScanTexts.h"
#include "store/LinkStore.h"
#include "store/ProcessData.h"
#include "transfer/RequestAddress.h"

namespace mv {

namespace {

constexpr int kWorkInterval = 3000;   // milliseconds
constexpr int kShortestRound = 1000;  // milliseconds
constexpr const char* kSource = "frmScan";
constexpr const char* kWaiting =
    "Links cannot be stored now. The scan waits, and goes on by itself at the same place: no link is lost.";

}  // namespace

ScanProcess::ScanProcess() : Process({"Done", "ID", "URL"}, kWorkInterval), trouble_(kSource, kWaiting) {}

void ScanProcess::initWindow() {
  run([this] { start(); });
}

void ScanProcess::start() {
  belongTo(SiteID, scanTitle(SiteName));
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
  if (!isSiteStored(SiteID)) {
    endWithSite();
    return;
  }
  readAgainId_ = 0;
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
  const int idle = idleTime();
  if (idle == 0)
    enableWorkTimer();
  else
    QTimer::singleShot(idle, this, [this] { run([this] { enableWorkTimer(); }); });
}

// Milliseconds. A round of nothing but the start page is asked for once a second at most, however short the work
// timer's interval is: with pauses it never comes that soon.
int ScanProcess::idleTime() const {
  if (queue_.rowsAdded() > 1 || !sinceStartPage_.isValid()) return 0;
  return static_cast<int>(std::max<qint64>(0, kShortestRound - sinceStartPage_.elapsed()));
}

void ScanProcess::crawlStep() {
  run([this] { tick(); });
}

void ScanProcess::tick() {
  if (!started_) {
    start();
    return;
  }
  if (page_.linkId != 0 && !finishPage()) return;
  const int row = lvwLinks.nextWaiting();
  if (row >= 0)
    takeUp(row);
  else
    beginRound();
}

bool ScanProcess::finishPage() {
  try {
    CommitGroup outcome(gDatabase);
    storeOutcome();
    outcome.commit();
  } catch (const std::exception& error) {
    if (StoreTrouble::mayPass(error)) {
      trouble_.failed();
      return false;
    }
    // It must not fail again at every tick: the page counts as finished from now on.
    page_.linkId = 0;
    throw;
  }
  trouble_.passed();
  page_.linkId = 0;
  return true;
}

void ScanProcess::storeOutcome() {
  if (page_.isIncomplete) {
    queue_.giveUp(page_.linkId);
  } else if (page_.isLoginAnswered) {
    queue_.putBack(page_.linkId);
    readAgainId_ = page_.linkId;
  } else {
    queue_.finish(page_.linkId, page_.failed);
  }
}

void ScanProcess::takeUp(int index) {
  disableWorkTimer();
  const WorkRow& row = lvwLinks.row(index);
  page_ = {.linkId = row.linkId, .url = plainAddress(row.url), .isReadAgain = row.linkId == readAgainId_};
  if (page_.isReadAgain) readAgainId_ = 0;
  const bool isStartPage = row.linkId == ScanQueue::kStartPageLinkId;
  if (isStartPage) sinceStartPage_.start();
  page_.location = isStartPage ? location_.address() : page_.url;
  showPage();
  queue_.takeUp(index);
  rowTaken(index);
  updateStatus("pagestoscan");
  setProgress(queue_.pagesProcessed(), progressMaximum());
  Inet2.Execute(login_.beginPage(page_.url, page_.location, page_.isReadAgain), "GET", BodyMode::Text);
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
    show(status_.waiting, WaitingRows{lvwLinks.waitingCount(), queue_.isFull()});
    show(status_.onlyStartPage, queue_.rowsAdded() == 1);
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
  walk_.begin({.text = Inet2.TakeText(),
               .basePath = computeBasePath(),
               .address = answeringAddress(),
               .contentType = Inet2.GetHeader("Content-Type")});
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
  const std::optional<bool> walked = walkSlice();
  if (!walked) return;
  reportRefusal();
  if (*walked) {
    seekForm();
    return;
  }
  show(status_.pagePercent, walk_.percent());
  yieldThen([this] { walkPage(); });
}

std::optional<bool> ScanProcess::walkSlice() {
  const long foundBefore = status_.linksFound;
  try {
    CommitGroup slice(gDatabase);
    const bool walked = walk_.goOn([this] { return storeLink(); });
    if (slice.commit()) trouble_.passed();
    queue_.keepStored();
    return walked;
  } catch (const std::exception& error) {
    status_.linksFound = foundBefore;
    sliceFailed(error);
    return std::nullopt;
  }
}

// Called where the exception is caught. The slice is undone in memory as it is in the table.
void ScanProcess::sliceFailed(const std::exception& error) {
  walk_.takeBack();
  queue_.takeBackStored();
  refusal_ = nullptr;
  if (!StoreTrouble::mayPass(error)) throw;
  QTimer::singleShot(trouble_.failed(), this, [this] { run([this] { walkPage(); }); });
}

void ScanProcess::reportRefusal() {
  if (!refusal_) return;
  try {
    std::rethrow_exception(std::exchange(refusal_, nullptr));
  } catch (const std::exception& error) {
    report(error);
  }
}

bool ScanProcess::storeLink() {
  try {
    parser_.Flag = false;
    parser_.URL = storedAddress(std::move(parser_.URL), page_.encoding);
    queue_.store(parser_);
    if (parser_.Flag) ++status_.linksFound;
  } catch (const std::exception& error) {
    if (StoreTrouble::mayPass(error)) throw;
    page_.isIncomplete = true;
    if (!refusal_) refusal_ = std::current_exception();
    if (dynamic_cast<const NoLinkId*>(&error)) return false;
  }
  return !StopRequested();
}

void ScanProcess::seekForm() {
  if (!login_.wantsForms() || walk_.seekForm())
    pageWalked();
  else
    yieldThen([this] { seekForm(); });
}

void ScanProcess::pageWalked() {
  if (StopRequested()) return;
  show(status_.pagePercent, -1);
  logLeftOut();
  ++status_.pagesRead;
  status_.linksKeptOut = parser_.linksKeptOut();
  updateStatus("pagestoscan");
  const bool loggingIn = logIn();
  walk_.end();
  if (!loggingIn) enableWorkTimer();
  Q_EMIT pageProcessed();
}

void ScanProcess::logLeftOut() {
  const std::int64_t count = walk_.leftOut();
  if (count == 0) return;
  tryAppendToErrorLog({std::to_string(page_.linkId), asOneLine(maskPassword(page_.url)),
                       "Addresses left out: " + std::to_string(count) +
                           ". Together the page's links would take far more room than the page itself.",
                       dateTimeText(now()), ""});
}

bool ScanProcess::logIn() {
  if (!login_.wantsForms()) return false;
  const std::optional<LoginRequest> request = login_.submit(walk_.form());
  show(status_.login, login_.status());
  page_.isLoginAnswered = login_.isLetIn();
  // Downloads that were answered with the form may go on.
  if (page_.isLoginAnswered) Q_EMIT events().siteLoggedIn(SiteID);
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
  const std::string_view address = withoutScheme(answered);
  const auto asked = toRequestAddress(page_.location);
  if (asked && withoutScheme(asked->url) == address)
    answered.replace(answered.size() - address.size(), address.size(), page_.location);
  return answered;
}

// A page that was being worked on is read again.
void ScanProcess::failed(const std::exception& error) {
  page_.isIncomplete = true;
  queue_.stopFilling();
  setRowsOpened(std::nullopt);
  show(status_.pagePercent, -1);
  report(error);
  // A request that was started before the failure will switch the timer on itself.
  if (!Inet2.StillExecuting()) enableWorkTimer();
}

void ScanProcess::report(const std::exception& error) {
  if (page_.reported == error.what()) return;
  page_.reported = error.what();
  reportException(error, kSource);
}

}  // namespace mv
