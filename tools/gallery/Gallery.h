// The bundled gallery: a small site of pages in nested folders, with links and pictures of many kinds, and an update
// server's three feeds: login form definitions, help topics and a news message.
#pragma once

#include <string>
#include <vector>

#include "testkit/TestSite.h"

namespace mvtest {

// A picture of the gallery: where it is, how wide and high, and whether a harvest of files from 10 KB to 1 MB saves it.
struct Picture {
  const char* path;
  const char* format;
  int side;
  bool wanted;
};

const std::vector<Picture>& galleryPictures();
// The same bytes at every call.
std::string pictureBytes(const Picture& picture);

inline constexpr int kFeedDefinitions = 3;
inline constexpr int kFeedTopics = 4;

// Serves pages, pictures and feeds.
void fillGallery(TestSite& site);

// Makes the site the update server of this user, and the message that was seen last an older one.
void useAsUpdateServer(const TestSite& site);

}  // namespace mvtest
