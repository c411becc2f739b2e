#include "download/DownloadProcess.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "FileName.h"
#include "app/Settings.h"
#include "database/Database.h"
#include "download/DownloadTexts.h"
#include "net/Address.h"
#include "net/TextBody.h"
#include "store/LinkStore.h"
#include "store/Sequence.h"
#include "transfer/SiteLocation.h"

namespace mv {

namespace {

constexpr int kWorkInterval = 200;  // milliseconds
constexpr const char* kSkip = "skip";

// The leading whole number of a header's value; 0 for anything that is no size.
std::int64_t leadingSize(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::int64_t size = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
  if (error == std::errc::result_out_of_range) return std::numeric_limits<std::int64_t>::max();
  return std::max<std::int64_t>(size, 0);
}

// A limit in bytes; a limit beyond 64 bits is the largest number.
std::int64_t inBytes(std::int64_t limit, std::int64_t unit) {
  std::int64_t bytes = 0;
  if (__builtin_mul_overflow(limit, unit, &bytes)) return std::numeric_limits<std::int64_t>::max();
  return bytes;
}

std::int64_t lowerLimit(const DownloadLimits& limits) { return inBytes(limits.lowerKilobytes, 1024); }

std::int64_t upperLimit(const DownloadLimits& limits) { return inBytes(limits.upperMegabytes, 1024 * 1024); }

std::string joined(const std::string& folder, const std::string& name) {
  return (std::filesystem::path(folder) / name).string();
}

// Folders do not count.
bool fileExists(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_status found = std::filesystem::status(path, error);
  return std::filesystem::exists(found) && !std::filesystem::is_directory(found);
}

long errorNumber(const std::exception& error) {
  if (const auto* failure = dynamic_cast<const DatabaseError*>(&error)) return failure->number();
  if (const auto* failure = dynamic_cast<const FileError*>(&error)) return failure->number();
  return 0;
}

WorkRow workRow(LinkRow link) {
  WorkRow row;
  row.linkId = link.id;
  row.userName = std::move(link.userName);
  row.password = std::move(link.password);
  row.fileName = lastSegment(link.url.restored());
  row.fileType = std::move(link.fileType);
  row.url = std::move(link.url);
  return row;
}

}  // namespace

DownloadProcess::DownloadProcess()
    : Process({"Done", "ID", "URL", "Username", "Password", "File Name", "File Type"}, kWorkInterval) {
  // A file half received when the process is stopped goes at once, not with the window.
  connect(this, &Process::stopped, this, [this] { file_.reset(); });
}

DownloadProcess::~DownloadProcess() = default;

void DownloadProcess::initWindow() {
  run([this] {
    belongTo(SiteId, downloadTitle(SiteName));
    Inet2.setSite(SiteId);
    SiteLocation(SiteName).announce();
    loadSiteLimits();
    showCounters("filesinqueue", "", 0);
    buildQueue();
    enableWorkTimer();
  });
}

void DownloadProcess::loadSiteLimits() { limits_ = loadDownloadLimits(SiteId); }

void DownloadProcess::buildQueue() {
  if (StopRequested()) return;
  LinkRows links = unfinishedFiles(SiteId);
  const std::int64_t most = std::min(kQueueLimit, queueSize());
  std::vector<WorkRow> rows;
  while (std::ssize(rows) < most) {
    std::optional<LinkRow> link = links.next();
    if (!link) break;
    rows.push_back(workRow(std::move(*link)));
  }
  // The list is there by the next repaint, so the count is announced once. A process that waits for links must not
  // disturb its window five times a second.
  if (!rows.empty()) {
    setRowsOpened(static_cast<long>(rows.size()));
    lvwLinks.append(std::move(rows));
  }
  setRowsOpened(std::nullopt);
  showCounters("filesinqueue", "", 0);
  setProgress(0, static_cast<long>(queueSize()));
}

void DownloadProcess::rebuildQueue() {
  if (!isSiteStored(SiteId)) {
    endWithSite();
    return;
  }
  if (lvwLinks.count() > 0) lvwLinks.clear();
  loadSiteLimits();
  processedCount_ = 0;
  buildQueue();
  show(status_.file, FileStatus());
  enableWorkTimer();
}

void DownloadProcess::tick() {
  if (entry_.outcomeDue) {
    markLinkDone();
    entry_.outcomeDue = false;
  }
  downloadNext();
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
    show(status_.savePath, entry_.savePath);
    rowTaken(index);
    lvwLinks.setState(index, RowState::Working);
    ++processedCount_;
    showCounters("filesinqueue", "", 0);
    checkIfFileExists(answer);
    if (answer != kSkip) {
      entry_.mode = kGetHeader;
      Inet2.Execute(entry_.url, "GET", BodyMode::HeadersOnly);
      return false;
    }
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
  showFile(FileStatus::Note::None);
}

void DownloadProcess::showFile(FileStatus::Note note) { show(status_.file, FileStatus{entry_.fileName, note}); }

void DownloadProcess::skipEntry(int index) {
  showFile(FileStatus::Note::Exists);
  lvwLinks.setState(index, RowState::Exists);
  markLinkDone();
  entry_.outcomeDue = false;
}

void DownloadProcess::transferEvent(int state) {
  if (state == kError) transferFailed();
  if (state != kResponseCompleted) return;
  if (entry_.mode == kGetFile)
    receiveFile();
  else if (entry_.mode == kGetHeader)
    checkHeader();
}

void DownloadProcess::transferFailed() {
  setProgress(0, progressMaximum());
  countError(Inet2.ResponseInfo(), Inet2.ResponseCode());
  entry_.failed = true;
  enableWorkTimer();
}

void DownloadProcess::countError(const std::string& reason, long code) {
  ++errorCount_;
  showCounters("error", reason, code);
  logDownloadError();
}

void DownloadProcess::checkHeader() {
  if (StopRequested()) return;
  entry_.announcedLength = Inet2.GetHeader("Content-Length");
  entry_.contentLength = leadingSize(entry_.announcedLength);
  if (entry_.contentLength != 0) {
    showSize(SizeStatus::Verdict::Wanted);
    if (lowerLimit(limits_) <= entry_.contentLength && entry_.contentLength <= upperLimit(limits_)) {
      requestFile();
      return;
    }
  }
  refuseFile();
  Inet2.cancel();  // nobody will read the body
  enableWorkTimer();
}

void DownloadProcess::refuseFile() {
  if (entry_.contentLength == 0) {
    showSize(SizeStatus::Verdict::Unknown);
    return;
  }
  if (entry_.contentLength < lowerLimit(limits_)) {
    showSize(SizeStatus::Verdict::TooSmall, lowerLimit(limits_));
    showFile(FileStatus::Note::TooSmall);
  }
  if (entry_.contentLength > upperLimit(limits_)) {
    showSize(SizeStatus::Verdict::TooBig, upperLimit(limits_));
    showFile(FileStatus::Note::TooBig);
  }
}

void DownloadProcess::showSize(SizeStatus::Verdict verdict, std::int64_t limit) {
  show(status_.size, SizeStatus{verdict, entry_.contentLength, entry_.announcedLength, limit});
}

void DownloadProcess::requestFile() {
  entry_.mode = kGetFile;
  Inet2.setTargetFolder(entry_.savePath);
  Inet2.Execute(entry_.url, "Get", BodyMode::File);
}

// When the statement fails it is tried again, with the same outcome.
void DownloadProcess::markLinkDone() {
  if (StopRequested()) return;
  const int row = lvwLinks.findLink(entry_.linkId);
  if (row < 0) return;
  RowState outcome = RowState::Done;
  if (entry_.skippedExisting) outcome = RowState::Exists;
  if (entry_.failed) outcome = RowState::Error;
  lvwLinks.setState(row, outcome);
  mv::markLinkDone(entry_.linkId);
}

void DownloadProcess::showCounters(const std::string& kind, const std::string& reason, long code) {
  if (StopRequested()) return;
  if (kind == "filesinqueue") {
    show(status_.queue, queueSize());
    show(status_.processed, processedCount_);
  } else if (kind == "error") {
    showError(fileText(status_), reason, code);
  }
}

void DownloadProcess::logDownloadError() {
  if (!StopRequested()) logError(entry_.linkId, entry_.url);  // which masks user information
}

void DownloadProcess::findSavePath() {
  if (StopRequested()) return;
  entry_.savePath = loadSitePath(SiteId, entry_.fileType);
  if (entry_.savePath.empty()) entry_.savePath = limits_.folder;
}

void DownloadProcess::checkIfFileExists(std::string& result) {
  result.clear();
  if (isYes(gOverwriteExisting) || !fileExists(joined(entry_.savePath, cleanFileName(entry_.fileName)))) return;
  result = kSkip;
  entry_.skippedExisting = true;
}

void DownloadProcess::receiveFile() {
  if (!StopRequested()) receive(&DownloadProcess::beginReceiving);
}

void DownloadProcess::receive(void (DownloadProcess::*step)()) {
  try {
    (this->*step)();
  } catch (const std::exception& error) {
    receivingFailed(error);
  }
}

void DownloadProcess::beginReceiving() {
  entry_.bytesReceived = 0;
  showSaveProgress(0);
  showReceived(0);
  chooseFullPath();
  path_.Path = entry_.savePath;
  path_.checkPath();
  // Both may have asked the user something, and the user may have stopped the site meanwhile.
  if (StopRequested()) return;
  file_ = std::make_unique<AtomicFile>(entry_.fullPath);
  if (Inet2.MoveBodyTo(*file_)) {
    entry_.bytesReceived = static_cast<std::int64_t>(file_->size());
    fileReceived();
  } else {
    receiveChunks();
  }
}

void DownloadProcess::chooseFullPath() {
  if (isYes(UniqueNames)) {
    const Id number = nextSequenceValue("filename_id");
    if (number == 0) throw std::runtime_error("No number for the file's name could be drawn.");
    entry_.fileName = BaseName + std::to_string(number) + "." + entry_.fileType;
  }
  entry_.fullPath = joined(entry_.savePath, cleanFileName(entry_.fileName));
}

void DownloadProcess::receiveChunks() {
  const TimeBudget budget;
  while (!budget.spent()) {
    const std::string chunk = Inet2.GetChunk(kChunkSize, ChunkType::Bytes);
    if (chunk.empty()) {
      fileReceived();
      return;
    }
    file_->write(chunk);
    entry_.bytesReceived += std::ssize(chunk);
  }
  showSaveProgress(entry_.bytesReceived);
  showReceived(entry_.bytesReceived);
  yieldThen([this] { receive(&DownloadProcess::receiveChunks); });
}

void DownloadProcess::showReceived(std::int64_t bytes) {
  show(status_.received, bytes);
  show(status_.left, entry_.contentLength - bytes);
}

void DownloadProcess::showSaveProgress(std::int64_t bytes) {
  // Progress bars count in int: a larger file is shown in larger units.
  const std::int64_t maximum = entry_.contentLength + std::int64_t{kChunkSize};
  const std::int64_t unit = maximum / std::numeric_limits<int>::max() + 1;
  setProgress(static_cast<long>(std::min(bytes, maximum) / unit), static_cast<long>(maximum / unit));
}

void DownloadProcess::fileReceived() {
  if (entry_.bytesReceived != entry_.contentLength)
    throw std::runtime_error("The file has " + std::to_string(entry_.bytesReceived) + " bytes, the server announced " +
                             std::to_string(entry_.contentLength) + ".");
  showSaveProgress(entry_.contentLength + std::int64_t{kChunkSize});
  showReceived(entry_.contentLength);
  file_->commit();
  file_.reset();
  Q_EMIT fileSaved(entry_.fullPath);
  enableWorkTimer();
}

void DownloadProcess::receivingFailed(const std::exception& error) {
  file_.reset();
  if (gAppClosing) return;
  countError(error.what(), errorNumber(error));
  entry_.failed = true;
  enableWorkTimer();
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
