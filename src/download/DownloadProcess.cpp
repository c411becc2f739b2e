#include "download/DownloadProcess.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "DownloadQueue.h"
#include "DownloadReport.h"
#include "ErrorNumber.h"
#include "FileName.h"
#include "FileReceiver.h"
#include "FileSize.h"
#include "LoginWatch.h"
#include "SaveQueue.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "download/DownloadTexts.h"
#include "net/Address.h"
#include "net/TextBody.h"
#include "store/LinkStore.h"
#include "store/ProcessData.h"
#include "transfer/SiteLocation.h"

namespace mv {

namespace {

constexpr int kWorkInterval = 200;      // milliseconds
constexpr int kArrivingInterval = 100;  // milliseconds
constexpr int kRetryInterval = 1000;    // milliseconds
constexpr const char* kSkip = "skip";
constexpr const char* kContentType = "Content-Type";
constexpr std::size_t kLongestLoginPage = std::size_t{1} << 20;  // bytes
constexpr const char* kWaitsForLogin = "The login page came instead. The file waits for the next login.";
constexpr const char* kLoginInVain = "The login page came instead, after logins too.";

}  // namespace

DownloadProcess::DownloadProcess()
    : Process({"Done", "ID", "URL", "Username", "Password", "File Name", "File Type"}, kWorkInterval),
      queue_(std::make_unique<DownloadQueue>(lvwLinks)),
      login_(std::make_unique<LoginWatch>()),
      receiver_(std::make_unique<FileReceiver>()),
      report_(std::make_unique<DownloadReport>([this] { touch(); })) {
  Inet2.setTextLimit(kLongestLoginPage);
  arriving_.setInterval(kArrivingInterval);
  connect(&arriving_, &QTimer::timeout, this, [this] { run([this] { showArriving(); }); });
  // A file half received when the process is stopped goes at once, not with the window.
  connect(this, &Process::stopped, this, [this] { receiver_->drop(); });
  SaveQueue& queue = SaveQueue::instance();
  connect(&queue, &SaveQueue::settled, this, [this](const SaveResult& result) { run([&] { saveSettled(result); }); });
  connect(&queue, &SaveQueue::hasRoom, this, [this] {
    if (std::exchange(awaitsRoom_, false)) enableWorkTimer();
  });
  connect(&events(), &Events::siteLoggedIn, this, [this](std::int64_t site) {
    if (site == SiteId) login_->loggedIn();
  });
}

DownloadProcess::~DownloadProcess() = default;

const DownloadStatus& DownloadProcess::status() const { return report_->status(); }

void DownloadProcess::initWindow() {
  run([this] {
    belongTo(SiteId, downloadTitle(SiteName));
    Inet2.setSite(SiteId);
    SiteLocation(SiteName).announce();
    queue_->loadLimits(SiteId);
    login_->start(SiteId);
    showCounters("filesinqueue", "", 0);
    buildQueue();
    enableWorkTimer();
  });
}

void DownloadProcess::buildQueue() {
  if (StopRequested()) return;
  const long rows = queue_->build(SiteId, kQueueLimit, [this](std::int64_t link) {
    return SaveQueue::instance().holdsLink(link) || login_->isPutOff(link);
  });
  // The list is there by the next repaint, so the count is announced once. A process that waits for links must not
  // disturb its window five times a second.
  if (rows > 0) setRowsOpened(rows);
  setRowsOpened(std::nullopt);
  showCounters("filesinqueue", "", 0);
  setProgress(0, static_cast<long>(queue_->left()));
}

void DownloadProcess::rebuildQueue() {
  if (!isSiteStored(SiteId)) {
    endWithSite();
    return;
  }
  // Rows whose files are on their way to the disk stay until it is known what became of them.
  queue_->clear([this](std::int64_t link) { return saving_.contains(link); });
  queue_->loadLimits(SiteId);
  buildQueue();
  report_->showNoFile();
  enableWorkTimer();
}

void DownloadProcess::tick() {
  if (entry_.outcomeDue) {
    markLinkDone();
    entry_.outcomeDue = false;
  }
  if (SaveQueue::instance().isFull()) {
    disableWorkTimer();
    awaitsRoom_ = true;
  } else {
    downloadNext();
  }
}

void DownloadProcess::downloadNext() {
  const TimeBudget budget;
  while (!StopRequested()) {
    const int next = lvwLinks.nextWaiting();
    if (next < 0) {
      rebuildQueue();
      return;
    }
    if (!takeUp(next)) return;
    if (budget.spent()) {
      yieldThen([this] { downloadNext(); });
      return;
    }
  }
}

bool DownloadProcess::takeUp(int index) {
  disableWorkTimer();
  beginEntry(lvwLinks.row(index));
  std::string answer;
  try {
    findSavePath();
    report_->showSavePath(entry_.savePath);
    rowTaken(index);
    queue_->takeUp(index);
    showCounters("filesinqueue", "", 0);
    checkIfFileExists(answer);
    if (answer != kSkip) {
      entry_.mode = kGetHeader;
      login_->beginRequest();
      Inet2.Execute(entry_.url, "GET", BodyMode::HeadersOnly);
      return false;
    }
  } catch (const DatabaseError& error) {
    // It has not been asked for: when the failure has passed it is taken up anew.
    entry_.outcomeDue = !error.mayPass();
    entry_.failed = true;
    throw;
  } catch (...) {
    entry_.failed = true;
    throw;
  }
  skipEntry(index);
  return true;
}

void DownloadProcess::beginEntry(const WorkRow& row) {
  entry_ = {.linkId = row.linkId,
            .url = plainAddress(row.url),
            .fileName = row.fileName,
            .fileType = row.fileType,
            .outcomeDue = true};
  report_->showFile(entry_.fileName, FileStatus::Note::None);
}

bool DownloadProcess::hasNothingLeft() const {
  return lvwLinks.count() == 0 && !entry_.outcomeDue && saving_.empty() && !Inet2.StillExecuting();
}

const std::string& DownloadProcess::folder() const { return queue_->limits().folder; }

void DownloadProcess::fileIsAt(std::int64_t linkId, const std::string& path) {
  if (const int row = lvwLinks.findLink(linkId); row >= 0) lvwLinks.setSavedPath(row, path);
}

void DownloadProcess::skipEntry(int index) {
  report_->existing();
  fileIsAt(entry_.linkId, filePath(entry_.savePath, entry_.fileName));
  report_->showFile(entry_.fileName, FileStatus::Note::Exists);
  lvwLinks.setState(index, RowState::Exists);
  markLinkDone();
  entry_.outcomeDue = false;
}

void DownloadProcess::transferEvent(int state) {
  if (state == kError || state == kResponseCompleted) arriving_.stop();
  if (state == kError) transferFailed();
  if (state != kResponseCompleted) return;
  if (entry_.mode == kGetFile)
    receiveFile();
  else if (entry_.mode == kGetHeader)
    checkHeader();
  else if (entry_.mode == kGetPage)
    checkPage();
}

void DownloadProcess::transferFailed() {
  setProgress(0, progressMaximum());
  if (entry_.mode == kGetPage)
    refuseFile();  // its headers have come before
  else
    entryFailed(Inet2.ResponseInfo(), Inet2.ResponseCode());
}

void DownloadProcess::entryFailed(const std::string& reason, long code) {
  countError(reason, code);
  entry_.failed = true;
  settle();
}

// The tick writes the status again, which repeats a statement that has failed here.
void DownloadProcess::settle() {
  login_->forget(entry_.linkId);
  try {
    mv::markLinkDone(entry_.linkId);
  } catch (const DatabaseError&) {
    enableWorkTimer();
    return;
  }
  enableWorkTimer();
}

void DownloadProcess::countError(const std::string& reason, long code) {
  ++errorCount_;
  showCounters("error", reason, code);
  logDownloadError();
}

void DownloadProcess::checkHeader() {
  if (StopRequested()) return;
  entry_.size = announcedSize(Inet2.GetHeader("Content-Length"));
  if (entry_.size.bytes != 0) report_->showSize(entry_.size);
  if (fits(entry_.size.bytes, queue_->limits()))
    requestFile();
  else if (login_->beginAnswer(Inet2.GetHeader(kContentType)))
    requestPage();
  else
    refuseFile();
}

void DownloadProcess::refuseFile() {
  report_->refused(entry_.fileName, refusal(entry_.size, queue_->limits()));
  Inet2.cancel();  // nobody will read the body
  settle();
}

// Not to be saved, by its size: but it may be the login page, which says nothing of the file.
void DownloadProcess::requestPage() {
  entry_.mode = kGetPage;
  Inet2.Execute(entry_.url, "GET", BodyMode::Text);
}

void DownloadProcess::checkPage() {
  login_->look(Inet2.TakeText());
  if (login_->isLoginPage())
    awaitLogin();
  else
    refuseFile();
}

void DownloadProcess::awaitLogin() {
  receiver_->drop();
  if (!login_->putOff(entry_.linkId)) {
    entryFailed(kLoginInVain, 0);
    return;
  }
  entry_.outcomeDue = false;
  showCounters("error", kWaitsForLogin, 0);
  logDownloadError();
  enableWorkTimer();
}

void DownloadProcess::requestFile() {
  entry_.mode = kGetFile;
  Inet2.setTargetFolder(entry_.savePath);
  Inet2.Execute(entry_.url, "Get", BodyMode::File);
  showArriving();
  arriving_.start();
}

// The body is read from memory or the spool when it is whole; over a network it is the arriving that takes the time.
void DownloadProcess::showArriving() {
  if (entry_.mode != kGetFile || !Inet2.StillExecuting()) {
    arriving_.stop();
    return;
  }
  const std::int64_t bytes = std::min(Inet2.BytesReceived(), entry_.size.bytes);
  showReceived(bytes);
}

// When the statement fails it is tried again, with the same outcome.
void DownloadProcess::markLinkDone() {
  if (StopRequested() || saving_.contains(entry_.linkId)) return;
  if (showOutcome(entry_)) mv::markLinkDone(entry_.linkId);
}

bool DownloadProcess::showOutcome(const Entry& entry) {
  const int row = lvwLinks.findLink(entry.linkId);
  if (row < 0) return false;
  RowState outcome = RowState::Done;
  if (entry.skippedExisting) outcome = RowState::Exists;
  if (entry.failed) outcome = RowState::Error;
  lvwLinks.setState(row, outcome);
  return true;
}

void DownloadProcess::showCounters(const std::string& kind, const std::string& reason, long code) {
  if (StopRequested()) return;
  if (kind == "filesinqueue") {
    report_->showQueue(*queue_);
  } else if (kind == "error") {
    showError(fileText(status()), reason, code);
  }
}

void DownloadProcess::logDownloadError() {
  if (!StopRequested()) logError(entry_.linkId, entry_.url);  // which masks user information
}

void DownloadProcess::findSavePath() {
  if (StopRequested()) return;
  entry_.savePath = loadSitePath(SiteId, entry_.fileType);
  if (entry_.savePath.empty()) entry_.savePath = queue_->limits().folder;
}

void DownloadProcess::checkIfFileExists(std::string& result) {
  result.clear();
  if (!isTaken(filePath(entry_.savePath, entry_.fileName))) return;
  result = kSkip;
  entry_.skippedExisting = true;
}

void DownloadProcess::receiveFile() {
  if (!StopRequested()) receive(&DownloadProcess::beginReceiving);
}

void DownloadProcess::receive(void (DownloadProcess::*step)()) {
  try {
    (this->*step)();
  } catch (const DatabaseError& error) {
    error.mayPass() ? receiveLater(step, error) : receivingFailed(error);
  } catch (const std::exception& error) {
    receivingFailed(error);
  }
}

// The file is here, and waits for a number to be drawn for its name.
void DownloadProcess::receiveLater(void (DownloadProcess::*step)(), const DatabaseError& error) {
  showCounters("error", error.what(), error.number());
  QTimer::singleShot(kRetryInterval, this, [this, step] { run([this, step] { receive(step); }); });
}

void DownloadProcess::beginReceiving() {
  entry_.bytesReceived = 0;
  showReceived(0);
  FileTarget target{entry_.savePath, entry_.fileName};
  if (isYes(UniqueNames)) target.numbered = {BaseName, entry_.fileType};
  if (!receiver_->choosePath(target)) {
    yieldThen([this] { receive(&DownloadProcess::beginReceiving); });
    return;
  }
  receiver_->makeFolder();
  // Both may have asked the user something, and the user may have stopped the site meanwhile.
  if (StopRequested()) return;
  receiver_->open();
  entry_.isPage = login_->beginAnswer(Inet2.GetHeader(kContentType));
  receiveChunks();
}

void DownloadProcess::receiveChunks() {
  const bool whole = receiver_->goOn(Inet2, entry_.isPage ? login_.get() : nullptr);
  entry_.bytesReceived = receiver_->bytes();
  if (whole) {
    fileReceived();
    return;
  }
  showReceived(entry_.bytesReceived);
  yieldThen([this] { receive(&DownloadProcess::receiveChunks); });
}

void DownloadProcess::showReceived(std::int64_t bytes) {
  showSaveProgress(bytes);
  report_->showReceived(bytes, entry_.size.bytes);
}

void DownloadProcess::showSaveProgress(std::int64_t bytes) {
  // Progress bars count in int: a larger file is shown in larger units.
  const std::int64_t maximum = entry_.size.bytes + std::int64_t{kChunkSize};
  const std::int64_t unit = maximum / std::numeric_limits<int>::max() + 1;
  setProgress(static_cast<long>(std::min(bytes, maximum) / unit), static_cast<long>(maximum / unit));
}

void DownloadProcess::fileReceived() {
  if (entry_.isPage && login_->isLoginPage()) {
    awaitLogin();
    return;
  }
  if (entry_.bytesReceived != entry_.size.bytes)
    throw std::runtime_error("The file has " + std::to_string(entry_.bytesReceived) + " bytes, the server announced " +
                             std::to_string(entry_.size.bytes) + ".");
  showSaveProgress(entry_.size.bytes + std::int64_t{kChunkSize});
  report_->showReceived(entry_.size.bytes, entry_.size.bytes);
  save();
}

// The next file is fetched while this one is brought to the disk.
void DownloadProcess::save() {
  saving_[entry_.linkId] = entry_;
  SaveQueue::instance().add(receiver_->take(entry_.linkId));
  enableWorkTimer();
}

void DownloadProcess::saveSettled(const SaveResult& result) {
  auto saved = saving_.extract(result.linkId);
  if (saved.empty()) return;
  login_->forget(result.linkId);
  // The tick shows the outcome of the entry that was taken up last.
  const bool isTickDue = entry_.outcomeDue && entry_.linkId == result.linkId;
  Entry& entry = isTickDue ? entry_ : saved.mapped();
  entry.skippedExisting = result.outcome == SaveResult::Outcome::Exists;
  entry.failed = result.outcome == SaveResult::Outcome::Failed;
  if (entry.failed) saveFailed(entry, result);
  if (entry.skippedExisting && entry_.linkId == result.linkId)
    report_->showFile(entry_.fileName, FileStatus::Note::Exists);
  if (!isTickDue) showOutcome(entry);
  if (!entry.failed) fileIsAt(result.linkId, result.path);
  if (entry.skippedExisting) report_->existing();
  if (result.outcome != SaveResult::Outcome::Saved) return;
  report_->saved(entry.bytesReceived);
  Q_EMIT fileSaved(result.path);
}

void DownloadProcess::saveFailed(const Entry& entry, const SaveResult& result) {
  ++errorCount_;
  DownloadStatus ofFile;
  ofFile.file = FileStatus{entry.fileName};
  showError(fileText(ofFile), result.reason, result.code);
  logError(entry.linkId, entry.url);
}

void DownloadProcess::receivingFailed(const std::exception& error) {
  receiver_->drop();
  if (!gAppClosing) entryFailed(error.what(), errorNumber(error));
}

// The database refused a statement, most likely for a while only. The entry taken up, if there is one, is marked as an
// error after the pause; then the process goes on.
void DownloadProcess::failed(const std::exception& error) {
  if (StopRequested()) return;
  disableWorkTimer();
  tmrWaitForAWhile.start();
  countError(error.what(), errorNumber(error));
}

}  // namespace mv
