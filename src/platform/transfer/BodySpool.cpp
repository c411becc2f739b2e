#include "BodySpool.h"

#include <QDir>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "base/Text.h"

namespace mv {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kAtOnce = std::size_t{256} * 1024;  // read from the file or written to it
constexpr std::uint64_t kWriteback = std::uint64_t{16} << 20;

// The ordinary folder for temporary files is often kept in memory; this one is for what is large.
std::string spoolFolder() {
  const QString large = "/var/tmp";
  return toUtf8(QFileInfo(large).isDir() && QFileInfo(large).isWritable() ? large : QDir::tempPath());
}

std::string textOf(int error) { return std::generic_category().message(error); }

}  // namespace

BodySpool::BodySpool(std::size_t threshold, std::string folder) : threshold_(threshold), folder_(std::move(folder)) {}

bool BodySpool::append(std::string_view bytes) {
  if (!file_.isOpen() && memory_.size() + bytes.size() > threshold_ && !(check(openFile()) && flush())) return false;
  memory_.append(bytes);
  return !file_.isOpen() || memory_.size() < kAtOnce || flush();
}

bool BodySpool::finish() { return !file_.isOpen() || flush(); }

bool BodySpool::flush() {
  const int error = file_.write(memory_);
  memory_.clear();
  if (file_.size() - startedTo_ >= kWriteback) startWriteback();
  return check(error);
}

void BodySpool::startWriteback() {
  startedTo_ = file_.size();
  if (!writeback_) writeback_ = std::make_unique<BackgroundWork>();
  writeback_->start([file = std::make_shared<OpenFile>(file_.duplicate())] { file->startWriteback(); });
}

// In the folder itself or, when that is still to be made, in the nearest one above it.
int BodySpool::openFile() {
  int error = ENOENT;
  for (fs::path folder = folder_; error == ENOENT && !folder.empty(); folder = folder.parent_path()) {
    error = file_.openUnnamed(folder.string());
    if (folder == folder.parent_path()) break;
  }
  return file_.isOpen() ? 0 : file_.openScratch(spoolFolder());
}

bool BodySpool::check(int error) {
  if (error != 0) error_ = textOf(error);
  return error == 0;
}

bool BodySpool::moveTo(AtomicFile& target) { return file_.isOpen() && fileReadAt_ == 0 && target.adopt(file_); }

bool BodySpool::refill() {
  if (!file_.isOpen()) return false;
  memory_.resize(kAtOnce);
  readAt_ = 0;
  const int error = file_.read(fileReadAt_, memory_);
  if (error != 0) throw std::runtime_error("The received file cannot be read back: " + textOf(error));
  fileReadAt_ += memory_.size();
  return !memory_.empty();
}

std::string BodySpool::read(std::size_t size) {
  std::string piece;
  while (piece.size() < size) {
    if (readAt_ == memory_.size() && !refill()) break;
    const auto count = std::min(size - piece.size(), memory_.size() - readAt_);
    piece.append(memory_, readAt_, count);
    readAt_ += count;
  }
  if (piece.empty() && size > 0) {
    file_ = OpenFile();
    memory_ = std::string();
    readAt_ = 0;
  }
  return piece;
}

}  // namespace mv
