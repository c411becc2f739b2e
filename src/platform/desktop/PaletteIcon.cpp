#include "desktop/PaletteIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QRegularExpression>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>

namespace mv {

namespace {

constexpr double kContrast = 4.5;
constexpr int kLightnessStep = 8;  // of 255
constexpr int kLightest = 255;
constexpr double kDisabledOpacity = 0.4;

// WCAG 2.1, "relative luminance".
double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
  return (lighter + 0.05) / (darker + 0.05);
}

// The drawing with the colours of `palette`.
QByteArray coloured(const QString& drawing, const QPalette& palette) {
  static const QRegularExpression colours("currentColor|#[0-9a-fA-F]{6}");
  const QColor ground = palette.color(QPalette::Window);
  QString result;
  qsizetype copied = 0;
  for (auto found = colours.globalMatch(drawing); found.hasNext();) {
    const QRegularExpressionMatch each = found.next();
    const QString name = each.captured();
    const QColor wanted = name.startsWith('#') ? QColor(name) : palette.color(QPalette::WindowText);
    result += drawing.mid(copied, each.capturedStart() - copied) + readableOn(ground, wanted).name();
    copied = each.capturedEnd();
  }
  return (result + drawing.mid(copied)).toUtf8();
}

class PaletteIconEngine : public QIconEngine {
 public:
  explicit PaletteIconEngine(QString drawing) : drawing_(std::move(drawing)) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
    QSvgRenderer renderer(coloured(drawing_, QGuiApplication::palette()));
    painter->save();
    if (mode == QIcon::Disabled) painter->setOpacity(kDisabledOpacity);
    renderer.render(painter, place);
    painter->restore();
  }
  // Asked at every paint of a button.
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    const QPalette palette = QGuiApplication::palette();
    const QString key = QString("%1 %2 %3 %4 %5 %6")
                            .arg(qHash(drawing_))
                            .arg(size.width())
                            .arg(size.height())
                            .arg(mode)
                            .arg(palette.color(QPalette::Window).name(), palette.color(QPalette::WindowText).name());
    QPixmap picture;
    if (QPixmapCache::find(key, &picture)) return picture;
    picture = QPixmap(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    painter.end();
    QPixmapCache::insert(key, picture);
    return picture;
  }
  QIconEngine* clone() const override { return new PaletteIconEngine(drawing_); }

 private:
  QString drawing_;
};

}  // namespace

QColor readableOn(const QColor& ground, const QColor& colour) {
  const bool darker = contrast(Qt::black, ground) > contrast(Qt::white, ground);
  const int end = darker ? 0 : kLightest;
  QColor readable = colour.toRgb();
  for (int lightness = colour.lightness(); contrast(readable, ground) < kContrast && lightness != end;) {
    lightness = std::clamp(lightness + (darker ? -kLightnessStep : kLightnessStep), 0, kLightest);
    readable = QColor::fromHsl(colour.hslHue(), colour.hslSaturation(), lightness);
  }
  return readable;
}

QIcon paletteIcon(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QIcon(new PaletteIconEngine(QString::fromUtf8(file.readAll())));
}

}  // namespace mv
