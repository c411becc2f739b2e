// Shows a picture file inside its own area: at natural size when it fits, else shrunk to fit, proportions kept.
// Decoding happens off the user-interface thread, straight to the size shown; a newer picture overtakes an older one.
#pragma once

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <string>

#include "base/BackgroundWork.h"

namespace mv {

class PictureDisplay : public QWidget {
  Q_OBJECT
 public:
  explicit PictureDisplay(QWidget* parent = nullptr);

  // Loads `path` (UTF-8); a file that is no picture, or too large to decode in 256 MiB, shows as a short text. ""
  // clears.
  void setPicture(const std::string& path);
  const std::string& picturePath() const { return path_; }
  // 100 when the picture is shown at natural size, 0 when it is shrunk to fit.
  int Zoom() const { return zoom_; }
  bool hasPicture() const { return !image_.isNull(); }
  QSize sizeHint() const override;

 Q_SIGNALS:
  // The last picture set has been decoded (or has turned out to be none).
  void loaded();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Decoded;

  void paintPicture(QPainter& painter) const;
  void paintFocus(QPainter& painter) const;
  void startDecoding();
  void take(const Decoded& decoded);
  // The size at which a picture of `natural` size is shown here.
  QSize shownSize(const QSize& natural) const;
  void updateZoom();

  std::string path_;
  QImage image_;
  QSize naturalSize_;
  QSize decodedFor_;  // the shown size that image_ was decoded for
  QString note_;
  int zoom_ = 100;
  bool announced_ = true;
  QTimer resized_;
  BackgroundWork decoding_;
};

}  // namespace mv
