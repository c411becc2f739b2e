// Received files of all sites on their way to the disk, and handled links on their way to their marks. A file has its
// name, and its link is marked, once its bytes are there; until then it counts as existing and its link as handled.
// Whoever received it may be gone by then: the queue belongs to the program, and what waits at the program's end is
// finished before.
#pragma once

#include <QObject>
#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "LinkMarks.h"
#include "files/GroupCommit.h"
#include "process/WorkList.h"

namespace mv {

// What became of a file.
struct SaveResult {
  std::int64_t linkId = 0;
  RowState outcome = RowState::Done;  // saved; or Exists, or Error
  std::string path = {};              // by the name that it got or was to get
  std::string reason = {};            // of a failure
  long code = 0;
};

// Is there a file of that path, or one that waits to be there, which may not be overwritten?
bool isTaken(const std::string& path);

class SaveQueue : public QObject {
  Q_OBJECT
 public:
  static SaveQueue& instance();

  struct Save {
    std::int64_t linkId = 0;
    std::unique_ptr<AtomicFile> file;
    Existing existing = Existing::Keep;
    // Another path in the same folder when the file's own is taken and to be kept. Empty: the file is dropped then. A
    // DatabaseError that it raises and that may pass has it tried again later.
    std::function<std::string()> nextPath = {};
  };
  void add(Save save);
  // The link is handled without a file. See LinkMarks::add.
  void mark(std::int64_t linkId) { marks_.add(linkId); }

  // Handled, though its row may not say so yet.
  bool holdsLink(std::int64_t linkId) const { return held_.contains(linkId) || marks_.holds(linkId); }
  bool holdsPath(const std::string& path) const;
  // Whoever has more to save waits for hasRoom(): each file that waits is open.
  bool isFull() const;

 Q_SIGNALS:
  // A file is through, and its link is marked. Slots must not throw.
  void settled(const mv::SaveResult& result);
  void hasRoom();

 private:
  struct Held {
    std::string path;
    Existing existing;
    std::function<std::string()> nextPath;
  };

  SaveQueue();
  void take(GroupCommit::Files files);
  // Tries a numbered file's next name, now or later; false when it has none.
  bool tryNextPath(GroupCommit::File& file);
  void marked(const std::vector<std::int64_t>& linkIds);
  void finish();

  std::map<std::int64_t, Held> held_;           // by link
  GroupCommit::Files nameless_;                 // no next name could be had
  std::map<std::int64_t, SaveResult> results_;  // by link: through, but for their marks
  LinkMarks marks_;
  QTimer retry_;
  GroupCommit commits_;
};

}  // namespace mv
