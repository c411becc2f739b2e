// A one-line text box that selects its whole text when it gets the focus, and takes only some characters: unwanted keys
// are discarded, unwanted characters of any other text, set or pasted, are left out.
#pragma once

#include <QLineEdit>

namespace mv {

class EntryBox : public QLineEdit {
  Q_OBJECT
 public:
  enum class Accepts {
    AnyText,
    OneLine,  // no line breaks, tabs or other control characters
    Digits,
    NoQuotes,
    NoQuoteKeys,      // quotes cannot be typed, but a text that has some keeps them
    NoApostropheKey,  // the apostrophe cannot be typed, but a text that has one keeps it
  };

  // The longest run of digits that can be typed: whatever is computed from it stays within 64 bits.
  static constexpr int kMaxDigits = 9;

  EntryBox(const QString& objectName, Accepts accepts, QWidget* parent);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  Accepts accepts_;
  bool focusedByMouse_ = false;
};

// The width in pixels at which `box` shows so many digits of its font, whole.
int widthForDigits(const QLineEdit& box, int digits);

}  // namespace mv
