// Links that have been handled and whose rows do not say so yet. They are marked "Done" at once or, while another
// program's lock or the disk is in the way, later: nobody waits for that.
#pragma once

#include <QTimer>
#include <cstdint>
#include <deque>
#include <functional>
#include <set>
#include <vector>

#include "store/StoreTrouble.h"

namespace mv {

class LinkMarks {
 public:
  // Hears of links that are marked now. Must not throw.
  using Marked = std::function<void(const std::vector<std::int64_t>& linkIds)>;
  explicit LinkMarks(Marked marked);

  // Raises nothing: whatever the failure is, it is tried again, and the user is told when it lasts.
  void add(std::int64_t linkId);
  void add(const std::vector<std::int64_t>& linkIds);
  // Not marked yet.
  bool holds(std::int64_t linkId) const { return held_.contains(linkId); }

  // Before the database is closed: the last try, which does wait for locks. What cannot be marked is given up. Raises
  // nothing.
  void finish();

 private:
  void mark();
  // They are off the list.
  void tell(const std::vector<std::int64_t>& linkIds);

  Marked marked_;
  std::deque<std::int64_t> waiting_;  // in the order of their coming
  std::set<std::int64_t> held_;       // the same ones
  QTimer retry_;
  StoreTrouble trouble_;
};

}  // namespace mv
