#include "SaveQueue.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "ErrorNumber.h"
#include "FileName.h"
#include "app/Events.h"
#include "app/Settings.h"

namespace mv {

namespace {

constexpr std::size_t kMostHeld = 256;
constexpr int kRetryInterval = 1000;  // milliseconds
constexpr int kPatience = 20'000;     // milliseconds, at the end of the program

SaveResult resultOf(const GroupCommit::File& file, const std::string& path) {
  SaveResult result{.linkId = file.key, .path = path};
  if (file.error) {
    result.outcome = RowState::Error;
    result.reason = file.error->what();
    result.code = file.error->number();
  } else if (!file.committed) {
    result.outcome = RowState::Exists;
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

SaveQueue::SaveQueue()
    : marks_([this](const std::vector<std::int64_t>& linkIds) { marked(linkIds); }),
      commits_([this](GroupCommit::Files files) { take(std::move(files)); }) {
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
  std::vector<std::int64_t> links;
  for (GroupCommit::File& file : files) {
    const std::int64_t linkId = file.key;
    try {
      if (tryNextPath(file)) continue;
      results_[linkId] = resultOf(file, held_[linkId].path);
    } catch (const std::exception& error) {
      results_[linkId] = {linkId, RowState::Error, held_[linkId].path, error.what(), errorNumber(error)};
    }
    links.push_back(linkId);
  }
  marks_.add(links);
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

void SaveQueue::marked(const std::vector<std::int64_t>& linkIds) {
  std::vector<SaveResult> settledOnes;
  for (const std::int64_t linkId : linkIds) {
    auto result = results_.extract(linkId);
    if (result.empty()) continue;
    held_.erase(linkId);
    settledOnes.push_back(std::move(result.mapped()));
  }
  for (const SaveResult& result : settledOnes) Q_EMIT settled(result);
  if (!settledOnes.empty() && !isFull()) Q_EMIT hasRoom();
}

void SaveQueue::finish() {
  take(std::exchange(nameless_, {}));
  commits_.finish(kPatience);
  retry_.stop();
  marks_.finish();
  // What is left has no name, or no mark: such links are found again at the next start.
  for (const GroupCommit::File& file : std::exchange(nameless_, {})) held_.erase(file.key);
  for (const auto& [linkId, result] : std::exchange(results_, {})) held_.erase(linkId);
}

}  // namespace mv
