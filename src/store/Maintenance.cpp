#include "store/Maintenance.h"

#include <optional>
#include <utility>

#include "app/Settings.h"
#include "store/LinkCleaner.h"
#include "store/ProgramDatabase.h"

namespace mv {

namespace {

// A copy that was overtaken by a change is made anew; a program that changes its database all the time is busy.
constexpr int kMostCopies = 5;
constexpr int kCancelInterval = 10;  // milliseconds

}  // namespace

Compaction::Compaction(std::string databasePath, std::string tempPath)
    : databasePath_(std::move(databasePath)), tempPath_(std::move(tempPath)), copiesLeft_(kMostCopies) {}

Compaction::~Compaction() {
  writing_.abandon();
  while (!writing_.wait(kCancelInterval)) copy_->cancel();
}

int Compaction::percentWritten() const { return copy_->percentWritten(); }

void Compaction::writeCopy() {
  --copiesLeft_;
  CompactCopy::removeFiles(tempPath_);
  copy_ = std::make_unique<CompactCopy>(databasePath_, tempPath_);
  const auto write = [copy = copy_.get()]() -> std::exception_ptr {
    try {
      copy->write();
      return nullptr;
    } catch (...) {
      return std::current_exception();
    }
  };
  writing_.start(write, [this](std::exception_ptr failure) { copyWritten(std::move(failure)); });
}

void Compaction::copyWritten(std::exception_ptr failure) {
  try {
    if (failure) std::rethrow_exception(failure);
    if (!copy_->isCurrent() && copiesLeft_ > 0) {
      copy_.reset();
      writeCopy();
      return;
    }
    replace();
  } catch (...) {
    failure = std::current_exception();
  }
  Q_EMIT finished(failure);
}

// No event runs in here: nothing can use gDatabase while it is closed, nor change it after the last look.
void Compaction::replace() {
  if (!copy_->isCurrent())
    throw DatabaseError(DatabaseError::kLocked, "The database is being changed. Please try again in a moment.");
  gDatabase.close();
  std::optional<DatabaseError> failure;
  try {
    deleting_.start([replaced = copy_->replaceSource()]() mutable { replaced.reset(); });
  } catch (const DatabaseError& error) {
    failure = error;
  }
  try {
    openProgramDatabase(databasePath_);
  } catch (const DatabaseError& error) {
    if (!failure) throw;
    // The first one is what went wrong, the second what it has led to.
    throw DatabaseError(failure->number(), failure->description() + "\r\n" + error.description(), failure->source());
  }
  if (failure) throw *failure;
}

std::unique_ptr<Compaction> compactDatabase(const std::string& databasePath, const std::string& tempPath) {
  std::unique_ptr<Compaction> compaction(new Compaction(databasePath, tempPath));
  compaction->writeCopy();
  return compaction;
}

void clearLinkCache() { LinkCleaner::instance().clearAll(); }

}  // namespace mv
