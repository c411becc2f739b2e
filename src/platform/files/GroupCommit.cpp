#include "files/GroupCommit.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <map>
#include <new>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace mv {

namespace {

// Threads that flush at the same time: the disk's own flush, which every one of them asks for, is then done once for
// all that wait for it.
constexpr std::size_t kFlushers = 8;

// A group costs a change of threads, a flush of each folder and a commit of the links, however small it is: files that
// follow each other closely share them.
constexpr std::chrono::milliseconds kGathering{10};
constexpr std::size_t kFullGroup = 64;

// Runs a step on a file that has not failed yet.
template <class Step>
void attempt(GroupCommit::File& file, Step step) {
  if (file.error) return;
  try {
    step(*file.file);
  } catch (const FileError& error) {
    file.error = error;
  }
}

// Each flush has the file system's journal committed, which takes the disk longer than a small file. From so many files
// on, one flush of the file system is quicker, whoever else may have something to write there.
constexpr std::size_t kManyFiles = 8;

void flushTogether(std::vector<GroupCommit::File*>& files) {
  std::vector<AtomicFile*> written;
  for (GroupCommit::File* file : files) {
    attempt(*file, [](AtomicFile& content) { content.awaitWriteback(); });
    if (!file->error) written.push_back(file->file.get());
  }
  AtomicFile::flushTogether(written);
}

void flushManyTogether(GroupCommit::Files& files) {
  std::map<std::uint64_t, std::vector<GroupCommit::File*>> byDevice;
  for (GroupCommit::File& file : files)
    if (!file.error) byDevice[file.file->device()].push_back(&file);
  for (auto& [device, members] : byDevice)
    if (members.size() >= kManyFiles) flushTogether(members);
}

void flushOne(GroupCommit::File& file) {
  attempt(file, [](AtomicFile& content) { content.flush(); });
}

// One after the other while that is quick: there is no disk, or nothing left to do. How many were flushed.
std::size_t flushQuickOnes(GroupCommit::Files& files) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::microseconds kQuick{100};
  std::size_t flushed = 0;
  for (bool isQuick = true; isQuick && flushed < files.size(); ++flushed) {
    const auto begin = Clock::now();
    flushOne(files[flushed]);
    isQuick = Clock::now() - begin < kQuick;
  }
  return flushed;
}

void flushEach(GroupCommit::Files& files) {
  const std::size_t flushed = flushQuickOnes(files);
  if (flushed == files.size()) return;
  std::atomic<std::size_t> next{flushed};
  const auto flush = [&files, &next] {
    for (std::size_t i = next++; i < files.size(); i = next++) flushOne(files[i]);
  };
  std::vector<std::jthread> helpers;
  try {
    while (helpers.size() + 1 < std::min(kFlushers, files.size() - flushed)) helpers.emplace_back(flush);
  } catch (const std::system_error&) {
    // No more threads to be had: those that run do it all.
  }
  flush();
}

void nameAll(GroupCommit::Files& files) {
  for (GroupCommit::File& file : files)
    attempt(file, [&file](AtomicFile& content) { file.committed = content.commit(file.existing); });
}

// A name that might not outlive a power cut is none. But what it was taken over from is gone: the new file stays.
void takeNameBack(GroupCommit::File& file, int error) {
  if (file.existing == Existing::Keep) ::unlink(file.file->path().c_str());
  file.committed = false;
  file.error = FileError(error, "The folder of " + file.file->path() +
                                    " cannot be written: " + std::generic_category().message(error) + '.');
}

void flushFolders(GroupCommit::Files& files) {
  std::map<std::string, int> errors;
  for (GroupCommit::File& file : files) {
    if (!file.committed) continue;
    const auto [folder, isNew] = errors.try_emplace(file.file->folder(), 0);
    if (isNew) folder->second = file.file->flushFolder();
    if (folder->second != 0) takeNameBack(file, folder->second);
  }
}

}  // namespace

struct GroupCommit::Group {
  Files files;

  void commit() {
    for (File& file : files)
      attempt(file, [](AtomicFile& content) {
        content.finish();
        content.startWriteback();
      });
    flushManyTogether(files);
    flushEach(files);
    nameAll(files);
    flushFolders(files);
    // Closing takes its time too. A file that is still without a name goes back to its owner.
    for (File& file : files)
      if (file.committed || file.error) file.file.reset();
  }
};

GroupCommit::GroupCommit(Settled settled) : settled_(std::move(settled)) {
  gathering_.setInterval(kGathering);
  QObject::connect(&gathering_, &QTimer::timeout, &gathering_, [this] { startGroup(); });
}

GroupCommit::~GroupCommit() { work_.wait(); }

void GroupCommit::add(File file) {
  waiting_.push_back(std::move(file));
  gather();
}

void GroupCommit::gather() {
  if (running_ || waiting_.empty()) return;
  if (waiting_.size() >= kFullGroup) startGroup();
  if (!running_ && !gathering_.isActive()) gathering_.start();
}

void GroupCommit::startGroup() {
  if (!running_ && !waiting_.empty()) {
    std::shared_ptr<Group> group;
    try {
      group = std::make_shared<Group>();
      group->files.swap(waiting_);
      work_.start(
          [group] {
            group->commit();
            return true;
          },
          [this](bool) { settle(); });
    } catch (const std::bad_alloc&) {
      // The files stay open, and the timer goes on.
      if (group) waiting_.swap(group->files);
      return;
    }
    running_ = std::move(group);
  }
  gathering_.stop();
}

void GroupCommit::settle() {
  const std::shared_ptr<Group> group = std::exchange(running_, nullptr);
  gather();
  settled_(std::move(group->files));
}

bool GroupCommit::finish(int milliseconds) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
  for (startGroup(); running_; startGroup()) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (!work_.wait(static_cast<int>(std::max<std::int64_t>(left.count(), 0)))) return false;
    work_.abandon();  // the event that would have settled it
    settle();
  }
  return waiting_.empty();
}

}  // namespace mv
