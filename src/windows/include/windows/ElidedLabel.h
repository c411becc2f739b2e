// A label for a text of any length in a narrow window: shortened where it does not fit, and then whole in a tool tip.
// text() is always the whole text. Addresses in it are never taken for markup.
#pragma once

#include <QLabel>
#include <QSize>
#include <optional>
#include <string>

namespace mv {

class ElidedLabel : public QLabel {
  Q_OBJECT
  Q_PROPERTY(QString usualText READ usualText WRITE setUsualText)
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  // A text that it shows already is not laid out again.
  void setText(const QString& text);
  void setLine(const std::string& line);

  // The longest text that it is to show whole. With one the label asks for as many lines as that takes in its width,
  // whatever it shows, so that its window keeps its size; a longer text is cut at the end. Without one it is a single
  // line, cut in the middle.
  QString usualText() const { return usualText_; }
  void setUsualText(const QString& text);

  // Whether a part of the text has no room.
  bool isCut() const { return shown().cut; }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  bool hasHeightForWidth() const override { return !usualText_.isEmpty(); }
  int heightForWidth(int width) const override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Shown {
    QStringList lines;
    bool cut;
  };

  int lineWidth() const;  // pixels
  Shown shown() const;
  void forgetMeasures();

  QString usualText_;
  mutable std::optional<int> lineWidth_;
  mutable std::optional<QSize> usualSize_;  // the width that was asked for last, and the height that it takes
};

}  // namespace mv
