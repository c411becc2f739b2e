// A one-line text box that selects its whole text when it gets the focus, and takes only some characters: unwanted keys
// are discarded, unwanted characters of any other text, set or pasted, are left out.
#pragma once

#include <QLineEdit>

namespace mv {

class EntryBox : public QLineEdit {
  Q_OBJECT
  Q_PROPERTY(Accepts accepts READ accepts WRITE setAccepts)
  Q_PROPERTY(int digits READ digits WRITE setDigits)
 public:
  enum class Accepts {
    AnyText,
    OneLine,  // no line breaks, tabs or other control characters
    Digits,
    NoQuotes,
    NoQuoteKeys,      // quotes cannot be typed, but a text that has some keeps them
    NoApostropheKey,  // the apostrophe cannot be typed, but a text that has one keeps it
  };
  Q_ENUM(Accepts)

  // The longest run of digits that can be typed: whatever is computed from it stays within 64 bits.
  static constexpr int kMaxDigits = 9;

  // Takes any text.
  explicit EntryBox(QWidget* parent = nullptr);

  Accepts accepts() const { return accepts_; }
  // Of a box that has no text yet.
  void setAccepts(Accepts accepts);
  // As wide as shows so many digits whole; 0: as wide as its layout makes it.
  int digits() const { return digits_; }
  void setDigits(int digits);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  Accepts accepts_ = Accepts::AnyText;
  int digits_ = 0;
  bool focusedByMouse_ = false;
};

// The width in pixels at which `box` shows so many digits of its font, whole.
int widthForDigits(const QLineEdit& box, int digits);

}  // namespace mv
