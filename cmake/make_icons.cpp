// The program's icon in the sizes that desktops ask for: make_icons <folder of the drawings> <target folder>
//
// Writes <size>.png. Small sizes are drawn from a simpler drawing, whose lines are wider than a pixel there.

#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

namespace {

constexpr int kSizes[] = {16, 22, 24, 32, 48, 64, 128, 256};  // pixels
constexpr int kLargestSmall = 24;

bool draw(const QString& drawing, int size, const QString& target) {
  QSvgRenderer renderer(drawing);
  QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  renderer.render(&painter);
  painter.end();
  return renderer.isValid() && image.save(target);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  for (const int size : kSizes) {
    const QString drawing =
        QString("%1/morvane2000%2.svg").arg(argv[1], QString(size <= kLargestSmall ? "-small" : ""));
    if (draw(drawing, size, QString("%1/%2.png").arg(argv[2]).arg(size))) continue;
    std::fprintf(stderr, "The icon of %d pixels cannot be made\n", size);
    return 1;
  }
}
