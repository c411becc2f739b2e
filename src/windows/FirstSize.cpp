#include "windows/FirstSize.h"

#include <algorithm>
#include <cstdlib>

#include "desktop/Twips.h"

namespace mv {

namespace {

// What was stored by pixels is off by less than one.
bool isSame(int stored, int own) { return std::abs(stored - own) < kTwipsPerPixel; }

int grown(int own, int needed, int room) { return std::max(own, std::min(needed, room)); }

}  // namespace

bool FirstSize::isOwnWidth(int twips) const {
  return std::any_of(own_.begin(), own_.end(), [=](const QSize& own) { return isSame(twips, own.width()); });
}

bool FirstSize::isOwnHeight(int twips) const {
  return std::any_of(own_.begin(), own_.end(), [=](const QSize& own) { return isSame(twips, own.height()); });
}

QSize FirstSize::shown(const QSize& given, const QSize& needed, const QSize& room) const {
  QSize size(twipsToPixels(given.width()), twipsToPixels(given.height()));
  if (isOwnWidth(given.width())) size.setWidth(grown(size.width(), needed.width(), room.width()));
  if (isOwnHeight(given.height())) size.setHeight(grown(size.height(), needed.height(), room.height()));
  return size;
}

QSize FirstSize::kept(const QSize& pixels) const {
  return {pixels.width() == shown_.width() ? given_.width() : pixelsToTwips(pixels.width()),
          pixels.height() == shown_.height() ? given_.height() : pixelsToTwips(pixels.height())};
}

}  // namespace mv
