// Window places and sizes are kept in twips, 1/1440 inch. A desktop at 96 dots per inch has 15 twips to a logical
// pixel; the toolkit scales logical pixels on finer screens.
#pragma once

#include <QRect>

namespace mv {

inline constexpr int kTwipsPerPixel = 15;

constexpr int twipsToPixels(int twips) { return (twips + (twips < 0 ? -7 : 7)) / kTwipsPerPixel; }
constexpr int pixelsToTwips(int pixels) { return pixels * kTwipsPerPixel; }

// A window's place in twips.
struct TwipRect {
  int top = 0;
  int left = 0;
  int height = 0;  // 0: no place known
  int width = 0;

  bool operator==(const TwipRect&) const = default;
};

}  // namespace mv
