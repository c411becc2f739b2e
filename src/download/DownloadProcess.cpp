#include "download/DownloadProcess.h"

#include <QString>
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
#include "base/Text.h"
#include "net/Address.h"
#include "net/TextBody.h"
#include "store/EscapeText.h"
#include "store/NoneOf.h"
#include "store/Sequence.h"

namespace mv {

namespace {

constexpr int kWorkInterval = 200;  // milliseconds
constexpr const char* kSkip = "skip";
constexpr const char* kUnknownSize = " Zero Conetnt-Length - File Size Unknown";

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

// Rounded to two decimals, without trailing zeros.
std::string kilobytes(std::int64_t bytes) {
  QString text = QString::number(static_cast<double>(bytes) / 1024.0, 'f', 2);
  while (text.endsWith(u'0')) text.chop(1);
  if (text.endsWith(u'.')) text.chop(1);
  return toUtf8(text);
}

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

WorkRow workRow(const Recordset& rows) {
  WorkRow row;
  row.linkId = rows.number("id");
  row.url = rows.text("url");
  row.userName = rows.text("username");
  row.password = rows.text("password");
  row.fileName = restored(std::string(lastSegment(row.url)));
  row.fileType = rows.text("file_type");
  return row;
}

}  // namespace

DownloadProcess::DownloadProcess()
    : Process({"Done", "ID", "URL", "Username", "Password", "File Name", "File Type"}, kWorkInterval) {
  // A file half received when the process is stopped goes at once, not with the window.
  connect(this, &Process::stopped, this, [this] { file_.reset(); });
}

DownloadProcess::~DownloadProcess() = default;

void DownloadProcess::show(std::string& shown, std::string text) {
  if (shown == text) return;
  shown = std::move(text);
  touch();
}

void DownloadProcess::initWindow() {
  run([this] {
    loadSiteLimits();
    showCounters("filesinqueue", "", 0);
    buildQueue();
    enableWorkTimer();
  });
}

void DownloadProcess::loadSiteLimits() {
  const Literal site = number(SiteId);
  const Recordset limits =
      gDatabase.query("select upper_limit, lower_limit, files_to_download, download_path from site where id = " + site);
  upperLimitMB_ = limits.number("upper_limit");
  lowerLimitKB_ = limits.number("lower_limit");
  downloadPath_ = limits.text("download_path");
  savePath_ = downloadPath_;
  queueSize_ = gDatabase.query("select pages_to_scan from site where id = " + site).number("pages_to_scan");
}

void DownloadProcess::buildQueue() {
  if (StopRequested()) return;
  const Statement ofSite = "site_id = " + number(SiteId);
  Recordset links = gDatabase.query(
      "select id, status, site_id, link_type, url, username, password, file_type from link where " + ofSite +
      " and link_type = " + mv::quoted("File") + " and " + noneOf("status", {"Done"}, "link", ofSite));
  const std::int64_t most = std::min(kQueueLimit, queueSize_);
  std::vector<WorkRow> rows;
  for (; std::ssize(rows) < most && !links.endOfRows(); links.moveNext()) rows.push_back(workRow(links));
  // The list is there by the next repaint, so the count is announced once. A process that waits for links must not
  // disturb its window five times a second.
  if (!rows.empty()) {
    setCaption("Opening. Please wait..." + std::to_string(rows.size()));
    lvwLinks.append(std::move(rows));
  }
  setCaption(title());
  showCounters("filesinqueue", "", 0);
  setProgress(0, static_cast<long>(queueSize_));
}

std::string DownloadProcess::title() const { return kDownloadTitle + maskUserInfo(SiteName); }

void DownloadProcess::rebuildQueue() {
  if (lvwLinks.count() > 0) lvwLinks.clear();
  loadSiteLimits();
  buildQueue();
  processedCount_ = 0;
  showCounters("filesinqueue", "", 0);
  show(fileLabel_, "File: ");
  enableWorkTimer();
}

void DownloadProcess::tick() {
  if (pendingLinkId_ != 0) {
    markLinkDone();
    pendingLinkId_ = 0;
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
    show(savePathText_, "Saving to: " + savePath_);
    rowTaken(index);
    lvwLinks.setState(index, RowState::Working);
    --queueSize_;
    ++processedCount_;
    showCounters("filesinqueue", "", 0);
    checkIfFileExists(answer);
    if (answer != kSkip) {
      requestKind_ = kGetHeader;
      Inet2.Execute(url_, "GET", BodyMode::HeadersOnly);
      return false;
    }
  } catch (...) {
    errorFlag_ = true;
    throw;
  }
  skipEntry(index);
  return true;
}

void DownloadProcess::beginEntry(const WorkRow& row) {
  show(fileLabel_, "File: " + row.fileName);
  fileName_ = row.fileName;
  fileType_ = row.fileType;
  url_ = restored(row.url);
  linkId_ = row.linkId;
  pendingLinkId_ = row.linkId;
}

void DownloadProcess::skipEntry(int index) {
  show(fileLabel_, "File: " + fileName_ + " Exists");
  lvwLinks.setState(index, RowState::Exists);
  markLinkDone();
  pendingLinkId_ = 0;
}

void DownloadProcess::transferEvent(int state) {
  if (state == kError) transferFailed();
  if (state != kResponseCompleted) return;
  if (requestKind_ == kGetFile)
    receiveFile();
  else if (requestKind_ == kGetHeader)
    checkHeader();
}

void DownloadProcess::transferFailed() {
  setProgress(0, progressMaximum());
  countError(Inet2.ResponseInfo(), Inet2.ResponseCode());
  errorFlag_ = true;
  enableWorkTimer();
}

void DownloadProcess::countError(const std::string& reason, long code) {
  ++errorCount_;
  showCounters("error", reason, code);
  logDownloadError();
}

void DownloadProcess::checkHeader() {
  if (StopRequested()) return;
  contentLengthText_ = Inet2.GetHeader("Content-Length");
  contentLength_ = leadingSize(contentLengthText_);
  if (contentLength_ != 0) {
    show(sizeText_, "Size (In Kilobytes) : " + kilobytes(contentLength_));
    if (inBytes(lowerLimitKB_, 1024) <= contentLength_ && contentLength_ <= inBytes(upperLimitMB_, 1024 * 1024)) {
      requestFile();
      return;
    }
  }
  refuseFile();
  Inet2.cancel();  // nobody will read the body
  enableWorkTimer();
}

void DownloadProcess::refuseFile() {
  const std::string size = "File Size:  " + contentLengthText_;
  if (contentLength_ == 0) {
    show(sizeText_, size + kUnknownSize);
    return;
  }
  const std::int64_t lower = inBytes(lowerLimitKB_, 1024);
  const std::int64_t upper = inBytes(upperLimitMB_, 1024 * 1024);
  if (contentLength_ < lower) {
    show(sizeText_, size + " Below threshold of " + std::to_string(lower));
    show(fileLabel_, "File: " + fileName_ + " Too Small");
  }
  if (contentLength_ > upper) {
    show(sizeText_, size + " Above threshold of " + std::to_string(upper));
    show(fileLabel_, "File: " + fileName_ + " Too Big");
  }
}

void DownloadProcess::requestFile() {
  requestKind_ = kGetFile;
  Inet2.setTargetFolder(savePath_);
  Inet2.Execute(url_, "Get", BodyMode::File);
}

void DownloadProcess::markLinkDone() {
  if (StopRequested()) return;
  const int row = lvwLinks.findLink(pendingLinkId_);
  if (row < 0) return;
  RowState outcome = RowState::Done;
  if (skippedExisting_) outcome = RowState::Exists;
  if (errorFlag_) outcome = RowState::Error;
  lvwLinks.setState(row, outcome);
  gDatabase.execute("update link set status = " + mv::quoted("Done") + " where id = " + number(pendingLinkId_));
  // Only now: when the statement fails it is tried again, with the same outcome.
  skippedExisting_ = false;
  errorFlag_ = false;
}

void DownloadProcess::showCounters(const std::string& kind, const std::string& reason, long code) {
  if (StopRequested()) return;
  if (kind == "filesinqueue") {
    show(queueText_, "Queue: " + std::to_string(queueSize_));
    show(processedText_, "Processed: " + std::to_string(processedCount_));
  } else if (kind == "error") {
    showError(fileLabel_, reason, code);
  }
}

void DownloadProcess::logDownloadError() {
  if (!StopRequested()) logError(linkId_, url_);  // which masks user information
}

void DownloadProcess::findSavePath() {
  if (StopRequested()) return;
  Recordset rows =
      gDatabase.query("select sp.path from site_paths sp, valid_filetypes vf where sp.site_id = " + number(SiteId) +
                      " and (vf.id = sp.filetype_id and vf.name = " + mv::quoted(fileType_) + ")");
  savePath_.clear();
  for (; !rows.endOfRows(); rows.moveNext()) savePath_ = rows.text("sp.path");
  if (savePath_.empty()) savePath_ = downloadPath_;
}

void DownloadProcess::checkIfFileExists(std::string& result) {
  result.clear();
  if (isYes(gOverwriteExisting) || !fileExists(joined(savePath_, cleanFileName(fileName_)))) return;
  result = kSkip;
  skippedExisting_ = true;
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
  bytesReceived_ = 0;
  showSaveProgress(0);
  showReceived(0);
  chooseFullPath();
  path_.Path = savePath_;
  path_.checkPath();
  // Both may have asked the user something, and the user may have stopped the site meanwhile.
  if (StopRequested()) return;
  file_ = std::make_unique<AtomicFile>(fullPath_);
  if (Inet2.MoveBodyTo(*file_)) {
    bytesReceived_ = static_cast<std::int64_t>(file_->size());
    fileReceived();
  } else {
    receiveChunks();
  }
}

void DownloadProcess::chooseFullPath() {
  if (isYes(UniqueNames)) {
    const std::int32_t number = nextSequenceValue("filename_id");
    if (number == 0) throw std::runtime_error("No number for the file's name could be drawn.");
    fileName_ = BaseName + std::to_string(number) + "." + fileType_;
  }
  fullPath_ = joined(savePath_, cleanFileName(fileName_));
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
    bytesReceived_ += std::ssize(chunk);
  }
  showSaveProgress(bytesReceived_);
  showReceived(bytesReceived_);
  yieldThen([this] { receive(&DownloadProcess::receiveChunks); });
}

void DownloadProcess::showReceived(std::int64_t bytes) {
  show(receivedText_, "Received: " + std::to_string(bytes));
  show(leftText_, "Left: " + std::to_string(contentLength_ - bytes));
}

void DownloadProcess::showSaveProgress(std::int64_t bytes) {
  // Progress bars count in int: a larger file is shown in larger units.
  const std::int64_t maximum = contentLength_ + std::int64_t{kChunkSize};
  const std::int64_t unit = maximum / std::numeric_limits<int>::max() + 1;
  setProgress(static_cast<long>(std::min(bytes, maximum) / unit), static_cast<long>(maximum / unit));
}

void DownloadProcess::fileReceived() {
  if (bytesReceived_ != contentLength_)
    throw std::runtime_error("The file has " + std::to_string(bytesReceived_) + " bytes, the server announced " +
                             std::to_string(contentLength_) + ".");
  showSaveProgress(contentLength_ + std::int64_t{kChunkSize});
  showReceived(contentLength_);
  file_->commit();
  file_.reset();
  Q_EMIT fileSaved(fullPath_);
  enableWorkTimer();
}

void DownloadProcess::receivingFailed(const std::exception& error) {
  file_.reset();
  if (gAppClosing) return;
  countError(error.what(), errorNumber(error));
  errorFlag_ = true;
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
