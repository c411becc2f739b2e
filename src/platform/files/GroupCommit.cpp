#include "files/GroupCommit.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <map>
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

int flushFolder(const std::string& folder) {
  const int file = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (file < 0) return errno;
  const int error = ::fsync(file) == 0 ? 0 : errno;
  ::close(file);
  return error == EINVAL ? 0 : error;  // a file system that has nothing to flush there
}

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

void flushAll(GroupCommit::Files& files) {
  std::atomic<std::size_t> next{0};
  const auto flush = [&files, &next] {
    for (std::size_t i = next++; i < files.size(); i = next++)
      attempt(files[i], [](AtomicFile& file) { file.flush(); });
  };
  std::vector<std::jthread> helpers;
  try {
    while (helpers.size() + 1 < std::min(kFlushers, files.size())) helpers.emplace_back(flush);
  } catch (const std::system_error&) {
    // No more threads to be had: those that run do it all.
  }
  flush();
}

void nameAll(GroupCommit::Files& files) {
  for (GroupCommit::File& file : files)
    attempt(file, [&file](AtomicFile& content) { file.committed = content.commit(file.existing); });
}

// A name that might not outlive a power cut is none.
void takeNameBack(GroupCommit::File& file, int error) {
  ::unlink(file.file->path().c_str());
  file.committed = false;
  file.error = FileError(error, "The folder of " + file.file->path() +
                                    " cannot be written: " + std::generic_category().message(error) + '.');
}

void flushFolders(GroupCommit::Files& files) {
  std::map<std::string, int> errors;
  for (GroupCommit::File& file : files) {
    if (!file.committed) continue;
    const auto [folder, isNew] = errors.try_emplace(file.file->folder(), 0);
    if (isNew) folder->second = flushFolder(folder->first);
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
    flushAll(files);
    nameAll(files);
    flushFolders(files);
    // Closing takes its time too. A file that is still without a name goes back to its owner.
    for (File& file : files)
      if (file.committed || file.error) file.file.reset();
  }
};

GroupCommit::GroupCommit(Settled settled) : settled_(std::move(settled)) {}

GroupCommit::~GroupCommit() { work_.wait(); }

void GroupCommit::add(File file) {
  waiting_.push_back(std::move(file));
  startGroup();
}

void GroupCommit::startGroup() {
  if (running_ || waiting_.empty()) return;
  running_ = std::make_shared<Group>(Group{std::exchange(waiting_, {})});
  work_.start(
      [group = running_] {
        group->commit();
        return true;
      },
      [this](bool) { settle(); });
}

void GroupCommit::settle() {
  const std::shared_ptr<Group> group = std::exchange(running_, nullptr);
  startGroup();
  settled_(std::move(group->files));
}

bool GroupCommit::finish(int milliseconds) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::milliseconds(milliseconds);
  while (running_) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    if (!work_.wait(static_cast<int>(std::max<std::int64_t>(left.count(), 0)))) return false;
    work_.abandon();  // the event that would have settled it
    settle();
  }
  return true;
}

}  // namespace mv
