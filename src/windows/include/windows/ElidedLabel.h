// A label for a line of any length in a narrow window: shortened in the middle where it does not fit, and then whole in
// a tool tip. text() is always the whole line. Addresses in it are never taken for markup.
#pragma once

#include <QLabel>
#include <optional>
#include <string>

namespace mv {

class ElidedLabel : public QLabel {
  Q_OBJECT
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  // A line that it shows already is not laid out again.
  void setText(const QString& text);
  void setLine(const std::string& line);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  int lineWidth() const;  // pixels

  mutable std::optional<int> lineWidth_;
};

}  // namespace mv
