#include "windows/EntryBox.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QValidator>
#include <algorithm>

namespace mv {

namespace {

bool isWanted(QChar character, EntryBox::Accepts accepts) {
  switch (accepts) {
    case EntryBox::Accepts::Digits:
      return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    case EntryBox::Accepts::NoQuotes:
    case EntryBox::Accepts::NoQuoteKeys:
      return character != QLatin1Char('"') && character != QLatin1Char('\'');
    case EntryBox::Accepts::NoApostropheKey:
      return character != QLatin1Char('\'');
    case EntryBox::Accepts::OneLine: {
      using enum QChar::Category;
      const QChar::Category category = character.category();
      return category != Other_Control && category != Separator_Line && category != Separator_Paragraph;
    }
    case EntryBox::Accepts::AnyText:
      break;
  }
  return true;
}

// Leaves unwanted characters out of every change, whichever way it comes.
class CleaningValidator : public QValidator {
 public:
  CleaningValidator(EntryBox::Accepts accepts, QObject* parent) : QValidator(parent), accepts_(accepts) {}

  State validate(QString& text, int& position) const override {
    QString wanted;
    int newPosition = position;
    for (qsizetype i = 0; i < text.size(); ++i) {
      if (isWanted(text[i], accepts_))
        wanted += text[i];
      else if (i < position)
        --newPosition;
    }
    text = wanted;
    position = newPosition;
    const bool tooLong = accepts_ == EntryBox::Accepts::Digits && text.size() > EntryBox::kMaxDigits;
    return tooLong ? Invalid : Acceptable;
  }

 private:
  EntryBox::Accepts accepts_;
};

}  // namespace

EntryBox::EntryBox(QWidget* parent) : QLineEdit(parent) {}

void EntryBox::setAccepts(Accepts accepts) {
  accepts_ = accepts;
  if (accepts == Accepts::Digits || accepts == Accepts::NoQuotes || accepts == Accepts::OneLine)
    setValidator(new CleaningValidator(accepts, this));
}

void EntryBox::setDigits(int digits) {
  digits_ = digits;
  if (digits > 0) setFixedWidth(widthForDigits(*this, digits));
}

void EntryBox::keyPressEvent(QKeyEvent* event) {
  // Left to the validator alone, an unwanted key would still replace the selected text.
  const QString text = event->text();
  const bool shortcut = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
  const bool typed = !shortcut && !text.isEmpty() && text[0].isPrint();
  if (typed && std::none_of(text.begin(), text.end(), [this](QChar c) { return isWanted(c, accepts_); })) {
    event->accept();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

void EntryBox::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  focusedByMouse_ = event->reason() == Qt::MouseFocusReason;
  const bool comesBack = event->reason() == Qt::PopupFocusReason || event->reason() == Qt::MenuBarFocusReason;
  if (!comesBack) selectAll();
}

void EntryBox::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  // The press that brought the focus has set the cursor and so undone the selection.
  if (focusedByMouse_ && !hasSelectedText()) selectAll();
  focusedByMouse_ = false;
}

int widthForDigits(const QLineEdit& box, int digits) {
  const QString widest(digits, u'0');
  // sizeHint() is made for 17 letters x, and has the frame and the margins.
  const int around = box.sizeHint().width() - 17 * box.fontMetrics().horizontalAdvance(u'x');
  return box.fontMetrics().horizontalAdvance(widest + u'0') + around;
}

}  // namespace mv
