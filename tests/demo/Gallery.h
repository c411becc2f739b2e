// The bundled gallery: a small site of pages in nested folders, with links and pictures of many kinds.
#pragma once

#include <string>
#include <vector>

#include "support/TestSite.h"

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

// Serves pages and pictures.
void fillGallery(TestSite& site);

}  // namespace mvtest
