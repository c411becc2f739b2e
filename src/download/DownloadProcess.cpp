#include "download/DownloadProcess.h"

#include <utility>

#include "DownloadQueue.h"
#include "DownloadReport.h"
#include "ErrorNumber.h"
#include "FileName.h"
#include "FileReceiver.h"
#include "FileSize.h"
#include "FileTransfer.h"
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

constexpr int kWorkInterval = 200;    // milliseconds
constexpr int kRetryInterval = 1000;  // milliseconds
constexpr const char* kSkip = "skip";
constexpr const char* kWaitsForLogin = "The login page came instead. The file waits for the next login.";
constexpr const char* kLoginInVain = "The login page came instead, after logins too.";

}  // namespace

DownloadProcess::DownloadProcess()
    : Process({"Done", "ID", "URL", "Username", "Password", "File Name", "File Type"}, kWorkInterval),
      queue_(std::make_unique<DownloadQueue>(lvwLinks)),
      login_(std::make_unique<LoginWatch>()),
      receiver_(std::make_unique<FileReceiver>(Inet2, *login_)),
      report_(std::make_unique<DownloadReport>([this] { touch(); })),
      request_(std::make_unique<FileTransfer>(
          Inet2, *login_, [this](std::int64_t bytes) { run([this, bytes] { showReceived(bytes); }); })) {
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
    readSettings();
    showCounters("filesinqueue", "", 0);
    buildQueue();
    enableWorkTimer();
  });
}

// What the database refuses at the start is read when the queue is built anew.
void DownloadProcess::readSettings() {
  queue_->loadLimits(SiteId);
  if (!login_->isStarted()) login_->start(SiteId);
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
  if (!isSiteStored(SiteId)) return endWithSite();
  // Rows whose files are on their way to the disk stay until it is known what became of them.
  queue_->clear([this](std::int64_t link) { return saving_.contains(link); });
  readSettings();
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
    if (next < 0) return rebuildQueue();
    if (!takeUp(next)) return;
    if (budget.spent()) return yieldThen([this] { downloadNext(); });
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
    if (answer != kSkip) request_->askForHeader(entry_.url);
  } catch (const std::exception& error) {
    entryBroken(error);
    throw;
  }
  if (answer == kSkip) skipEntry();
  return answer == kSkip;
}

// The file has not come. When the failure has passed it is taken up anew.
void DownloadProcess::entryBroken(const std::exception& error) {
  const auto* database = dynamic_cast<const DatabaseError*>(&error);
  entry_.outcomeDue = !database || !database->mayPass();
  entry_.outcome = RowState::Error;
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

void DownloadProcess::skipEntry() {
  report_->existing();
  queue_->fileIsAt(entry_.linkId, filePath(entry_.savePath, entry_.fileName));
  report_->showFile(entry_.fileName, FileStatus::Note::Exists);
  markLinkDone();
  entry_.outcomeDue = false;
}

void DownloadProcess::transferEvent(int state) {
  try {
    takeEvent(state);
  } catch (const std::exception& error) {
    entryBroken(error);
    throw;
  }
}

void DownloadProcess::takeEvent(int state) {
  if (state == kError) transferFailed();
  if (state != kResponseCompleted) return;
  if (request_->mode() == kGetFile)
    receiveFile();
  else if (request_->mode() == kGetHeader)
    checkHeader();
  else if (request_->mode() == kGetPage)
    request_->isLoginPage() ? awaitLogin() : refuseFile();
}

void DownloadProcess::transferFailed() {
  setProgress(0, progressMaximum());
  if (request_->mode() == kGetPage)
    refuseFile();  // its headers have come before
  else
    entryFailed(Inet2.ResponseInfo(), Inet2.ResponseCode());
}

void DownloadProcess::entryFailed(const std::string& reason, long code) {
  countError(reason, code);
  entry_.outcome = RowState::Error;
  settle();
}

// The tick writes the status again. Until then the process may be stopped, and this must not be asked for twice.
void DownloadProcess::settle() {
  login_->forget(entry_.linkId);
  SaveQueue::instance().mark(entry_.linkId);
  enableWorkTimer();
}

void DownloadProcess::countError(const std::string& reason, long code) {
  ++errorCount_;
  showCounters("error", reason, code);
  logDownloadError();
}

void DownloadProcess::checkHeader() {
  if (StopRequested()) return;
  request_->readSize();
  const SizeStatus& size = request_->size();
  if (size.bytes != 0) report_->showSize(size);
  if (fits(size.bytes, queue_->limits()))
    requestFile();
  else if (request_->mayBeLoginPage())
    request_->askForPage();  // the login page says nothing of the file
  else
    refuseFile();
}

void DownloadProcess::refuseFile() {
  report_->refused(entry_.fileName, refusal(request_->size(), queue_->limits()));
  Inet2.cancel();  // nobody will read the body
  settle();
}

void DownloadProcess::awaitLogin() {
  receiver_->drop();
  if (!login_->putOff(entry_.linkId)) return entryFailed(kLoginInVain, 0);
  entry_.outcomeDue = false;
  showCounters("error", kWaitsForLogin, 0);
  logDownloadError();
  enableWorkTimer();
}

void DownloadProcess::requestFile() { request_->askForFile(entry_.savePath); }

void DownloadProcess::markLinkDone() {
  if (StopRequested() || saving_.contains(entry_.linkId)) return;
  if (queue_->settle(entry_.linkId, entry_.outcome)) SaveQueue::instance().mark(entry_.linkId);
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
  entry_.outcome = RowState::Exists;
}

void DownloadProcess::receiveFile() {
  if (StopRequested()) return;
  FileTarget target{entry_.savePath, entry_.fileName, request_->size().bytes};
  if (isYes(UniqueNames)) target.numbered = {BaseName, entry_.fileType};
  receiver_->begin(std::move(target));
  showReceived(0);
  receive();
}

void DownloadProcess::receive() {
  using Step = FileReceiver::Step;
  try {
    Step step = Step::Done;
    // Each may have asked the user something, and the user may have stopped the site meanwhile.
    while (step == Step::Done && !StopRequested()) step = receiver_->goOn();
    if (StopRequested()) return;
    if (step == Step::LoginPage) return awaitLogin();
    showReceived(receiver_->bytes());
    if (step == Step::Whole) return save();
    yieldThen([this] { receive(); });
  } catch (const DatabaseError& error) {
    error.mayPass() ? receiveLater(error) : receivingFailed(error);
  } catch (const std::exception& error) {
    receivingFailed(error);
  }
}

// The file is here, and waits for a number to be drawn for its name.
void DownloadProcess::receiveLater(const DatabaseError& error) {
  showCounters("error", error.what(), error.number());
  QTimer::singleShot(kRetryInterval, this, [this] { run([this] { receive(); }); });
}

void DownloadProcess::showReceived(std::int64_t bytes) {
  const std::int64_t size = request_->size().bytes;
  const FileProgress progress = fileProgress(bytes, size);
  setProgress(progress.value, progress.maximum);
  report_->showReceived(bytes, size);
}

// The next file is fetched while this one is brought to the disk.
void DownloadProcess::save() {
  setProgress(progressMaximum(), progressMaximum());
  saving_[entry_.linkId] = {entry_.linkId, entry_.url, entry_.fileName, request_->size().bytes};
  SaveQueue::instance().add(receiver_->take(entry_.linkId));
  enableWorkTimer();
}

void DownloadProcess::saveSettled(const SaveResult& result) {
  const auto saved = saving_.extract(result.linkId);
  if (saved.empty()) return;
  const SavingFile& file = saved.mapped();
  const bool isLast = entry_.linkId == file.linkId;
  login_->forget(file.linkId);
  if (result.outcome == RowState::Error)
    saveFailed(file, result);
  else
    queue_->fileIsAt(file.linkId, result.path);
  if (result.outcome == RowState::Exists) report_->existing();
  if (result.outcome == RowState::Exists && isLast) report_->showFile(file.name, FileStatus::Note::Exists);
  // The tick shows the outcome of the entry that was taken up last.
  if (isLast && entry_.outcomeDue)
    entry_.outcome = result.outcome;
  else
    queue_->settle(file.linkId, result.outcome);
  if (result.outcome != RowState::Done) return;
  report_->saved(file.size);
  Q_EMIT fileSaved(result.path);
}

void DownloadProcess::saveFailed(const SavingFile& file, const SaveResult& result) {
  ++errorCount_;
  DownloadStatus ofFile;
  ofFile.file = FileStatus{file.name};
  showError(fileText(ofFile), result.reason, result.code);
  logError(file.linkId, file.url);
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
