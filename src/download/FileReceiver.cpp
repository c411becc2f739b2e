#include "FileReceiver.h"

#include <stdexcept>
#include <utility>

#include "FileName.h"
#include "LoginWatch.h"
#include "app/Settings.h"
#include "base/TimeBudget.h"
#include "net/TextBody.h"
#include "store/Sequence.h"

namespace mv {

namespace {

constexpr const char* kNumbers = "filename_id";

std::string numberedPath(const FileTarget& target, Id number) {
  if (number == 0) throw std::runtime_error("No number for the file's name could be drawn.");
  return filePath(target.folder, target.numbered->base + std::to_string(number) + "." + target.numbered->type);
}

}  // namespace

bool FileReceiver::choosePath(const FileTarget& target) {
  target_ = target;
  if (!target_.numbered) {
    path_ = filePath(target_.folder, target_.name);
    return true;
  }
  const TimeBudget budget;
  do {
    path_ = numberedPath(target_, nextSequenceValue(kNumbers));
    if (!isTaken(path_)) return true;
  } while (!budget.spent());
  return false;
}

void FileReceiver::makeFolder() {
  folder_.Path = target_.folder;
  folder_.checkPath();
}

void FileReceiver::open() { file_ = std::make_unique<AtomicFile>(path_); }

bool FileReceiver::goOn(InternetTransfer& transfer, LoginWatch* watch) {
  if (!watch && transfer.MoveBodyTo(*file_)) return true;
  const TimeBudget budget;
  while (!budget.spent()) {
    const std::string chunk = transfer.GetChunk(kChunkSize, ChunkType::Bytes);
    if (chunk.empty()) return true;
    if (watch) watch->look(chunk);
    file_->write(chunk);
  }
  return false;
}

SaveQueue::Save FileReceiver::take(std::int64_t linkId) {
  SaveQueue::Save save{.linkId = linkId, .file = std::move(file_)};
  if (isYes(gOverwriteExisting)) save.existing = Existing::Replace;
  if (target_.numbered)
    save.nextPath = [target = target_] { return numberedPath(target, drawSequenceValue(kNumbers)); };
  return save;
}

}  // namespace mv
