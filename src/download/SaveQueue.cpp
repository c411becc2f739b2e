#include "SaveQueue.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "ErrorNumber.h"
#include "FileName.h"
#include "app/Events.h"
#include "app/Settings.h"
#include "store/LinkStore.h"

namespace mv {

namespace {

constexpr std::size_t kMostHeld = 256;
constexpr int kRetryInterval = 1000;  // milliseconds
constexpr int kPatience = 20'000;     // milliseconds, at the end of the program

SaveResult resultOf(const GroupCommit::File& file, const std::string& path) {
  SaveResult result{.linkId = file.key, .path = path};
  if (file.error) {
    result.outcome = SaveResult::Outcome::Failed;
    result.reason = file.error->what();
    result.code = file.error->number();
  } else if (!file.committed) {
    result.outcome = SaveResult::Outcome::Exists;
  }
  return result;
}

}  // namespace

bool isTaken(const std::string& path) {
  return !isYes(gOverwriteExisting) && (fileExists(path) || SaveQueue::instance().holdsPath(path));
}

SaveQueue& SaveQueue::instance() {
  static SaveQueue queue;
  return queue;
}

SaveQueue::SaveQueue() : commits_([this](GroupCommit::Files files) { take(std::move(files)); }) {
  retry_.setSingleShot(true);
  retry_.setInterval(kRetryInterval);
  connect(&retry_, &QTimer::timeout, this, [this] { take(std::exchange(nameless_, {})); });
  connect(&events(), &Events::programEnding, this, &SaveQueue::finish);
}

void SaveQueue::add(Save save) {
  held_.insert_or_assign(save.linkId, Held{save.file->path(), save.existing, std::move(save.nextPath)});
  commits_.add({.key = save.linkId, .file = std::move(save.file), .existing = save.existing});
}

bool SaveQueue::holdsPath(const std::string& path) const {
  return std::any_of(held_.begin(), held_.end(), [&path](const auto& held) { return held.second.path == path; });
}

bool SaveQueue::isFull() const { return held_.size() >= kMostHeld; }

void SaveQueue::take(GroupCommit::Files files) {
  for (GroupCommit::File& file : files) {
    const std::int64_t linkId = file.key;
    try {
      if (tryNextPath(file)) continue;
      unmarked_.push_back(resultOf(file, held_[linkId].path));
    } catch (const std::exception& error) {
      unmarked_.push_back({linkId, SaveResult::Outcome::Failed, held_[linkId].path, error.what(), errorNumber(error)});
    }
  }
  markLinks();
}

bool SaveQueue::tryNextPath(GroupCommit::File& file) {
  Held& held = held_[file.key];
  if (file.committed || file.error || !held.nextPath) return false;
  try {
    held.path = held.nextPath();
  } catch (const DatabaseError& error) {
    if (!error.mayPass()) throw;
    nameless_.push_back(std::move(file));
    retry_.start();
    return true;
  }
  file.file->setPath(held.path);
  commits_.add({.key = file.key, .file = std::move(file.file), .existing = held.existing});
  return true;
}

void SaveQueue::markLinks() {
  if (unmarked_.empty()) return;
  std::vector<std::int64_t> links;
  for (const SaveResult& result : unmarked_) links.push_back(result.linkId);
  try {
    CommitGroup withoutPatience(gDatabase);  // a lock is waited for by the timer, not by the thread
    markLinksDone(links);
    withoutPatience.commit();
  } catch (const std::exception&) {
    // A lock or a full disk, which whoever works on the database tells the user about. The files have their names.
    retry_.start();
    return;
  }
  const std::vector<SaveResult> results = std::exchange(unmarked_, {});
  for (const SaveResult& result : results) held_.erase(result.linkId);
  for (const SaveResult& result : results) Q_EMIT settled(result);
  if (!isFull()) Q_EMIT hasRoom();
}

void SaveQueue::finish() {
  commits_.finish(kPatience);
  markLinks();
  retry_.stop();
  for (const GroupCommit::File& file : nameless_) held_.erase(file.key);
  nameless_.clear();
  // The database is about to be closed: links that could not be marked are found again at the next start.
  for (const SaveResult& result : std::exchange(unmarked_, {})) held_.erase(result.linkId);
}

}  // namespace mv
