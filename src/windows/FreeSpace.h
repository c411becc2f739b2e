// Where a window covers no other.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>
#include <vector>

namespace mv {

// Whether `place` lies within `room` and overlaps none of `taken`.
bool isFree(const QSize& room, const QRect& place, const std::vector<QRect>& taken);

// Of the places within `room` where a window of `size` overlaps none of `taken`, the topmost of the leftmost; none when
// there is no such place.
std::optional<QPoint> freePlace(const QSize& room, const QSize& size, const std::vector<QRect>& taken);

// Of the places within `room` along its edges and those of `taken` the one where a window of `size` covers least of
// them, title bars of `titleBar` pixels above all, by which the user gets them to the front; the topmost of the
// leftmost of several.
QPoint leastCoveringPlace(const QSize& room, const QSize& size, const std::vector<QRect>& taken, int titleBar);

}  // namespace mv
