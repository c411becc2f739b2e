#include "FreeSpace.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <set>

namespace mv {

namespace {

// A title bar that is covered counts as much as so many times its area of the window.
constexpr std::int64_t kTitleBarWeight = 8;

std::int64_t area(const QRect& place) {
  return place.isEmpty() ? 0 : std::int64_t{place.width()} * std::int64_t{place.height()};
}

std::int64_t covered(const QRect& place, const std::vector<QRect>& taken, int titleBar) {
  std::int64_t sum = 0;
  for (const QRect& window : taken) {
    const QRect title(window.topLeft(), QSize(window.width(), titleBar));
    sum += area(window.intersected(place)) + kTitleBarWeight * area(title.intersected(place));
  }
  return sum;
}

}  // namespace

bool isFree(const QSize& room, const QRect& place, const std::vector<QRect>& taken) {
  return QRect(QPoint(), room).contains(place) &&
         std::none_of(taken.begin(), taken.end(), [&](const QRect& other) { return other.intersects(place); });
}

// The leftmost place stands at the left edge or right of a window, the topmost at the upper edge or below one.
std::optional<QPoint> freePlace(const QSize& room, const QSize& size, const std::vector<QRect>& taken) {
  std::set<int> lefts{0};
  std::set<int> tops{0};
  for (const QRect& window : taken) {
    lefts.insert(window.right() + 1);
    tops.insert(window.bottom() + 1);
  }
  for (const int left : lefts)
    for (const int top : tops)
      if (isFree(room, QRect(QPoint(left, top), size), taken)) return QPoint(left, top);
  return std::nullopt;
}

QPoint leastCoveringPlace(const QSize& room, const QSize& size, const std::vector<QRect>& taken, int titleBar) {
  const QPoint last(std::max(0, room.width() - size.width()), std::max(0, room.height() - size.height()));
  std::set<int> lefts{0, last.x()};
  std::set<int> tops{0, last.y()};
  for (const QRect& window : taken) {
    for (const int left : {window.right() + 1, window.left() - size.width()})
      lefts.insert(std::clamp(left, 0, last.x()));
    for (const int top : {window.bottom() + 1, window.top() + titleBar, window.top() - size.height()})
      tops.insert(std::clamp(top, 0, last.y()));
  }
  QPoint best;
  auto least = std::numeric_limits<std::int64_t>::max();
  for (const int left : lefts)
    for (const int top : tops) {
      const std::int64_t cost = covered({QPoint(left, top), size}, taken, titleBar);
      if (cost >= least) continue;
      least = cost;
      best = {left, top};
    }
  return best;
}

}  // namespace mv
