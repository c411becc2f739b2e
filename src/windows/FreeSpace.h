// Where a window covers no other.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <optional>
#include <vector>

namespace mv {

// Of the places within `room` where a window of `size` overlaps none of `taken`, the topmost of the leftmost; none when
// there is no such place.
std::optional<QPoint> freePlace(const QSize& room, const QSize& size, const std::vector<QRect>& taken);

}  // namespace mv
