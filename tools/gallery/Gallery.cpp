#include "gallery/Gallery.h"

#include <QBuffer>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <algorithm>
#include <cmath>

#include "base/UserSettings.h"

namespace mvtest {

namespace {

// Hills of colour under some grain, so that the pictures look like something and do not compress to nothing.
QRgb colourAt(double x, double y, int kind, quint32 grain) {
  const double wave = std::sin(x * 5 + kind) + std::sin(y * 4 - kind) + std::sin((x + y) * 3);
  const auto part = [&](double phase, unsigned shift) {
    const double value = 128 + 90 * std::sin(wave + phase) + static_cast<int>((grain >> shift) & 31) - 16;
    return static_cast<int>(std::clamp(value, 0.0, 255.0));
  };
  return qRgb(part(0.3, 0), part(1.7, 8), part(2.9, 16));
}

QImage paint(const Picture& picture) {
  QImage image(picture.side, picture.side, QImage::Format_RGB32);
  QRandomGenerator grain(static_cast<quint32>(picture.side));
  for (int y = 0; y < picture.side; ++y)
    for (int x = 0; x < picture.side; ++x)
      image.setPixel(x, y,
                     colourAt(double(x) / picture.side, double(y) / picture.side, picture.side % 7, grain.generate()));
  return image;
}

std::string readPage(const QString& path, const std::string& host) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromUtf8(file.readAll()).replace("@HOST@", QString::fromStdString(host)).toStdString();
}

}  // namespace

const std::vector<Picture>& galleryPictures() {
  static const std::vector<Picture> pictures = {
      {"/pictures/entrance.png", "png", 240, true},
      {"/pictures/founder.png", "png", 180, true},
      {"/pictures/poster.bmp", "bmp", 700, false},  // above the largest size
      {"/gallery/hall.jpg", "jpg", 320, true},
      {"/gallery/map.png", "png", 200, true},
      {"/gallery/birds/heron.jpg", "jpg", 300, true},
      {"/gallery/birds/heron-thumb.png", "png", 16, false},  // below the smallest
      {"/gallery/birds/wren.jpg", "jpg", 280, true},
      {"/gallery/trees/oak.jpg", "jpg", 340, true},
      {"/gallery/trees/leaf.bmp", "bmp", 80, true},
  };
  return pictures;
}

std::string pictureBytes(const Picture& picture) {
  QBuffer buffer;
  buffer.open(QIODevice::WriteOnly);
  paint(picture).save(&buffer, picture.format);
  return buffer.data().toStdString();
}

void fillGallery(TestSite& site) {
  const QString root = MORVANE_GALLERY;
  QDirIterator pages(root, {"*.html", "*.txt"}, QDir::Files, QDirIterator::Subdirectories);
  while (pages.hasNext()) {
    const QString file = pages.next();
    const std::string path = file.mid(root.size()).toStdString();
    const std::string text = readPage(file, site.host());
    site.file(path, path.ends_with(".txt") ? "text/plain" : "text/html", text);
    if (path == "/index.html") site.page("/", text);
  }
  for (const Picture& picture : galleryPictures())
    site.file(picture.path, std::string("image/") + picture.format, pictureBytes(picture));
}

void useAsUpdateServer(const TestSite& site) {
  mv::saveUserSetting("Morvane2000", "Servers", "UpdateHost", QString::fromStdString(site.host()));
  mv::saveUserSetting("Morvane2000", "TheSection", "LastMessageID", "1");
}

}  // namespace mvtest
