#include "platform/BodySpool.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>
#include <algorithm>
#include <stdexcept>

#include "platform/Text.h"

namespace mv {

namespace {

constexpr std::size_t kReadAtOnce = std::size_t{64} * 1024;

// The ordinary folder for temporary files is often kept in memory; this one is for what is large.
QString spoolFolder() {
  const QString large = "/var/tmp";
  return QFileInfo(large).isDir() && QFileInfo(large).isWritable() ? large : QDir::tempPath();
}

}  // namespace

BodySpool::BodySpool(std::size_t threshold) : threshold_(threshold) {}
BodySpool::~BodySpool() = default;

bool BodySpool::append(std::string_view bytes) {
  if (!file_ && memory_.size() + bytes.size() <= threshold_) {
    memory_.append(bytes);
    return true;
  }
  if (!file_ && !spill()) return false;
  if (file_->write(bytes.data(), static_cast<qint64>(bytes.size())) == static_cast<qint64>(bytes.size())) return true;
  error_ = toUtf8(file_->errorString());
  return false;
}

bool BodySpool::spill() {
  // The file's name is never asked for: where the system can, it has none, and nothing is left behind by a crash.
  file_ = std::make_unique<QTemporaryFile>(spoolFolder() + "/morvane2000-XXXXXX");
  const auto size = static_cast<qint64>(memory_.size());
  if (!file_->open() || file_->write(memory_.data(), size) != size) {
    error_ = toUtf8(file_->errorString());
    return false;
  }
  memory_ = std::string();
  return true;
}

bool BodySpool::rewind() {
  readAt_ = 0;
  if (!file_ || (file_->flush() && file_->seek(0))) return true;
  error_ = toUtf8(file_->errorString());
  return false;
}

bool BodySpool::refill() {
  if (!file_) return false;
  memory_.resize(kReadAtOnce);
  readAt_ = 0;
  const auto count = file_->read(memory_.data(), static_cast<qint64>(kReadAtOnce));
  memory_.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  if (count < 0) throw std::runtime_error("The received file cannot be read back: " + toUtf8(file_->errorString()));
  return count > 0;
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
    file_.reset();
    memory_ = std::string();
    readAt_ = 0;
  }
  return piece;
}

}  // namespace mv
