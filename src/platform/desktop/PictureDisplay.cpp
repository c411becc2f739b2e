#include "desktop/PictureDisplay.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QResizeEvent>
#include <QStyleOptionFocusRect>
#include <utility>

#include "base/Text.h"

namespace mv {
namespace {

constexpr int kAllocationLimitMiB = 256;
// A resize by mouse is many resizes; the picture is decoded again when it has come to rest.
constexpr int kRestMs = 150;
constexpr QSize kPreferredSize(240, 180);

QSize fitted(const QSize& natural, const QSize& space) {
  if (natural.width() <= space.width() && natural.height() <= space.height()) return natural;
  return natural.scaled(space, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
}

}  // namespace

struct PictureDisplay::Decoded {
  QImage image;
  QSize natural;
  QSize shown;

  static Decoded of(const QString& path, const QSize& space, double scale) {
    // A pipe might never end, nor begin.
    if (!QFileInfo(path).isFile()) return {};
    QImageReader::setAllocationLimit(kAllocationLimitMiB);
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    QSize natural = reader.size();
    // The scaled size counts before the turn that a camera's orientation asks for.
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    if (turned) natural.transpose();
    QSize shown = fitted(natural, space);
    if (natural.isValid() && shown != natural) {
      const QSize pixels = (QSizeF(shown) * scale).toSize().boundedTo(natural).expandedTo(QSize(1, 1));
      reader.setScaledSize(turned ? pixels.transposed() : pixels);
    }
    QImage image = reader.read();
    if (!natural.isValid() && !image.isNull()) {
      natural = image.size();
      shown = fitted(natural, space);
    }
    return {std::move(image), natural, shown};
  }
};

PictureDisplay::PictureDisplay(QWidget* parent) : QWidget(parent) {
  resized_.setSingleShot(true);
  resized_.setInterval(kRestMs);
  connect(&resized_, &QTimer::timeout, this, [this] {
    if (!image_.isNull() && shownSize(naturalSize_) != decodedFor_) startDecoding();
  });
}

void PictureDisplay::setPicture(const std::string& path) {
  path_ = path;
  image_ = QImage();
  naturalSize_ = QSize();
  note_.clear();
  zoom_ = 100;
  update();
  announced_ = path.empty();
  if (path.empty())
    decoding_.abandon();
  else
    startDecoding();
}

void PictureDisplay::startDecoding() {
  const auto decode = [path = toQString(path_), space = size(), scale = devicePixelRatioF()] {
    return Decoded::of(path, space, scale);
  };
  decoding_.start(decode, [this](const Decoded& decoded) { take(decoded); });
}

void PictureDisplay::take(const Decoded& decoded) {
  image_ = decoded.image;
  naturalSize_ = decoded.natural;
  decodedFor_ = decoded.shown;
  note_ = image_.isNull() ? QStringLiteral("No preview for this file.") : QString();
  updateZoom();
  update();
  if (!image_.isNull() && shownSize(naturalSize_) != decodedFor_) resized_.start();
  if (!std::exchange(announced_, true)) Q_EMIT loaded();
}

QSize PictureDisplay::shownSize(const QSize& natural) const { return fitted(natural, size()); }

void PictureDisplay::updateZoom() { zoom_ = image_.isNull() || shownSize(naturalSize_) == naturalSize_ ? 100 : 0; }

QSize PictureDisplay::sizeHint() const { return kPreferredSize; }

void PictureDisplay::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  // Behind the picture, which the frame's fill would tint.
  if (hasFocus()) paintFocus(painter);
  if (image_.isNull())
    painter.drawText(rect(), static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), note_);
  else
    paintPicture(painter);
}

void PictureDisplay::paintFocus(QPainter& painter) const {
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

void PictureDisplay::paintPicture(QPainter& painter) const {
  QRect place({}, shownSize(naturalSize_));
  place.moveCenter(rect().center());
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(place, image_);
}

void PictureDisplay::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  updateZoom();
  if (!image_.isNull() && shownSize(naturalSize_) != decodedFor_) resized_.start();
}

}  // namespace mv
