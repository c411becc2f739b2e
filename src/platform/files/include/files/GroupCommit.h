// Commits many files without waiting for the disk once for each: all that come within some milliseconds are brought to
// the disk together, on a thread of its own, get their names after that, and their folders are flushed once. What is
// added meanwhile makes the next group.
//
//   GroupCommit commits([](GroupCommit::Files files) { ... });
//   commits.add({.key = link, .file = std::move(file)});
//
// To be used on one thread with an event loop, and from nowhere else.
#pragma once

#include <QTimer>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "base/BackgroundWork.h"
#include "files/AtomicFile.h"

namespace mv {

class GroupCommit {
 public:
  struct File {
    std::int64_t key = 0;  // the caller's own
    std::unique_ptr<AtomicFile> file = {};
    Existing existing = Existing::Keep;
    // What became of it. Named and on the disk, its name too: both say so. With neither an error nor a name, the name
    // was taken.
    bool committed = false;
    std::optional<FileError> error = {};
  };
  using Files = std::vector<File>;
  // A group is through; its files are given back in the order in which they were added. May add files. Must not throw.
  using Settled = std::function<void(Files)>;

  explicit GroupCommit(Settled settled);
  // Files that have not settled lose their content; it waits for those that are being named at this moment.
  ~GroupCommit();
  GroupCommit(const GroupCommit&) = delete;
  GroupCommit& operator=(const GroupCommit&) = delete;

  void add(File file);
  // Waits until all that was added has settled, however many groups that takes, but no longer than so many
  // milliseconds. Whether it has.
  bool finish(int milliseconds);

 private:
  struct Group;
  // Starts a group soon, or at once when it is large.
  void gather();
  void startGroup();
  void settle();

  Settled settled_;
  Files waiting_;
  std::shared_ptr<Group> running_;
  QTimer gathering_;
  BackgroundWork work_;
};

}  // namespace mv
