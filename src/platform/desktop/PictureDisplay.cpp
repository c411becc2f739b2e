#include "desktop/PictureDisplay.h"

#include <QImageReader>
#include <QMetaObject>
#include <QPainter>
#include <QResizeEvent>
#include <QThreadPool>
#include <atomic>
#include <mutex>
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
};

// Where the decoding thread leaves its result. It outlives the window as long as a decoder holds it, and knows which
// request is the last one, so that overtaken ones end early.
class PictureDisplay::Mailbox {
 public:
  explicit Mailbox(PictureDisplay& owner) : owner_(&owner) {}

  void close() {
    const std::lock_guard lock(mutex_);
    owner_ = nullptr;
    ++last_;
  }
  quint64 newRequest() { return ++last_; }
  bool isCurrent(quint64 request) const { return last_ == request; }
  void deliver(quint64 request, Decoded decoded) {
    const std::lock_guard lock(mutex_);
    if (!owner_ || !isCurrent(request)) return;
    // Still a posted event when the owner dies: it goes with the owner.
    QMetaObject::invokeMethod(
        owner_,
        [owner = owner_, request, result = std::move(decoded)] {
          if (owner->mailbox_->isCurrent(request)) owner->take(result);
        },
        Qt::QueuedConnection);
  }

 private:
  std::mutex mutex_;
  PictureDisplay* owner_;
  std::atomic<quint64> last_ = 0;
};

PictureDisplay::PictureDisplay(QWidget* parent) : QWidget(parent), mailbox_(std::make_shared<Mailbox>(*this)) {
  resized_.setSingleShot(true);
  resized_.setInterval(kRestMs);
  connect(&resized_, &QTimer::timeout, this, [this] {
    if (!image_.isNull() && shownSize(naturalSize_) != decodedFor_) startDecoding();
  });
}

PictureDisplay::~PictureDisplay() { mailbox_->close(); }

void PictureDisplay::setPicture(const std::string& path) {
  path_ = path;
  image_ = QImage();
  naturalSize_ = QSize();
  note_.clear();
  zoom_ = 100;
  update();
  announced_ = path.empty();
  if (path.empty())
    mailbox_->newRequest();
  else
    startDecoding();
}

void PictureDisplay::startDecoding() {
  QThreadPool::globalInstance()->start([mailbox = mailbox_, request = mailbox_->newRequest(), path = toQString(path_),
                                        space = size(), scale = devicePixelRatioF()] {
    if (!mailbox->isCurrent(request)) return;
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
    mailbox->deliver(request, {std::move(image), natural, shown});
  });
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
  if (image_.isNull()) {
    painter.drawText(rect(), static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), note_);
    return;
  }
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
