// What a process still has before it, as far as it knows without counting the table of links.
#pragma once

namespace mv {

struct WaitingRows {
  long listed = 0;         // rows of the work list that have not been taken up
  bool mayBeMore = false;  // the table may hold further ones

  bool operator==(const WaitingRows&) const = default;
};

}  // namespace mv
