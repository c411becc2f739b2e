#include "FileReceiver.h"

#include <stdexcept>
#include <utility>

#include "FileName.h"
#include "LoginWatch.h"
#include "app/ReportError.h"
#include "app/Settings.h"
#include "base/TimeBudget.h"
#include "net/TextBody.h"
#include "store/Sequence.h"

namespace mv {

namespace {

constexpr const char* kNumbers = "filename_id";

Id drawNumber() {
  CommitGroup withoutPatience(gDatabase);  // a lock is waited for by whoever tries again, not by the thread
  Transaction readAndStored(gDatabase);
  const Id number = drawSequenceValue(kNumbers);
  readAndStored.commit();
  withoutPatience.commit();
  return number;
}

// What may pass is raised, what else is wrong is shown.
Id drawNumberOrShow() {
  try {
    return drawNumber();
  } catch (const DatabaseError& error) {
    if (error.mayPass()) throw;
    reportException(error, "nextSequenceValue");
    return 0;
  }
}

std::string numberedPath(const FileTarget& target, Id number) {
  if (number == 0) throw std::runtime_error("No number for the file's name could be drawn.");
  return filePath(target.folder, target.numbered->base + std::to_string(number) + "." + target.numbered->type);
}

}  // namespace

void FileReceiver::begin(FileTarget target) {
  drop();
  target_ = std::move(target);
  hasPlace_ = false;
}

FileReceiver::Step FileReceiver::goOn() { return hasPlace_ ? receive() : choosePlace(); }

FileReceiver::Step FileReceiver::choosePlace() {
  if (!choosePath()) return Step::Cut;
  folder_.Path = target_.folder;
  folder_.checkPath();
  hasPlace_ = true;
  return Step::Done;
}

bool FileReceiver::choosePath() {
  if (!target_.numbered) {
    path_ = filePath(target_.folder, target_.name);
    return true;
  }
  const TimeBudget budget;
  do {
    path_ = numberedPath(target_, drawNumberOrShow());
    if (!isTaken(path_)) return true;
  } while (!budget.spent());
  return false;
}

FileReceiver::Step FileReceiver::receive() {
  if (!file_) {
    file_ = std::make_unique<AtomicFile>(path_);
    isPage_ = login_.beginAnswer(transfer_);
  }
  if (!receiveSome()) return Step::Cut;
  if (isPage_ && login_.isLoginPage()) return Step::LoginPage;
  checkSize();
  return Step::Whole;
}

// True when the body has ended.
bool FileReceiver::receiveSome() {
  if (!isPage_ && transfer_.MoveBodyTo(*file_)) return true;
  const TimeBudget budget;
  while (!budget.spent()) {
    const std::string chunk = transfer_.GetChunk(kChunkSize, ChunkType::Bytes);
    if (chunk.empty()) return true;
    if (isPage_) login_.look(chunk);
    file_->write(chunk);
  }
  return false;
}

void FileReceiver::checkSize() const {
  if (bytes() == target_.size) return;
  throw std::runtime_error("The file has " + std::to_string(bytes()) + " bytes, the server announced " +
                           std::to_string(target_.size) + ".");
}

SaveQueue::Save FileReceiver::take(std::int64_t linkId) {
  SaveQueue::Save save{.linkId = linkId, .file = std::move(file_)};
  if (isYes(gOverwriteExisting)) save.existing = Existing::Replace;
  if (target_.numbered) save.nextPath = [target = target_] { return numberedPath(target, drawNumber()); };
  return save;
}

}  // namespace mv
