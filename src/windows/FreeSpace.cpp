#include "FreeSpace.h"

#include <algorithm>
#include <set>

namespace mv {

// The leftmost place stands at the left edge or right of a window, the topmost at the upper edge or below one.
std::optional<QPoint> freePlace(const QSize& room, const QSize& size, const std::vector<QRect>& taken) {
  std::set<int> lefts{0};
  std::set<int> tops{0};
  for (const QRect& window : taken) {
    lefts.insert(window.right() + 1);
    tops.insert(window.bottom() + 1);
  }
  const QRect whole(QPoint(), room);
  for (const int left : lefts)
    for (const int top : tops) {
      const QRect place(QPoint(left, top), size);
      const bool free =
          std::none_of(taken.begin(), taken.end(), [&](const QRect& other) { return other.intersects(place); });
      if (free && whole.contains(place)) return place.topLeft();
    }
  return std::nullopt;
}

}  // namespace mv
