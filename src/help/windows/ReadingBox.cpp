#include "ReadingBox.h"

#include <QTextCursor>

#include "base/TimeBudget.h"

namespace mv {

namespace {

constexpr qsizetype kLongestLine = 2000;
constexpr int kCharactersAskedFor = 40;
constexpr int kLinesAskedFor = 6;
constexpr qsizetype kPiece = 2000;  // characters

// Every line end is a line feed, so that none can be cut in two.
QString withLinesBroken(const QString& text) {
  QString broken;
  broken.reserve(text.size() + text.size() / kLongestLine);
  qsizetype length = 0;
  for (qsizetype at = 0; at < text.size(); ++at) {
    const QChar character = text[at];
    if (character == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') continue;
    if (length >= kLongestLine && !character.isLowSurrogate()) {
      broken += u'\n';
      length = 0;
    }
    length = character == u'\n' ? 0 : length + 1;
    broken += character;
  }
  return broken;
}

}  // namespace

ReadingBox::ReadingBox(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTabChangesFocus(true);
  setUndoRedoEnabled(false);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  nextSlice_.setSingleShot(true);
  connect(&nextSlice_, &QTimer::timeout, this, [this] { showSlice(); });
}

QSize ReadingBox::sizeHint() const {
  const QFontMetrics letters = fontMetrics();
  return {kCharactersAskedFor * letters.averageCharWidth(), kLinesAskedFor * letters.lineSpacing() + 2 * frameWidth()};
}

void ReadingBox::showText(const QString& text) {
  text_ = withLinesBroken(text);
  // The first piece sets the reader at the top; what is put in behind leaves the reader there.
  setPlainText(text_.left(kPiece));
  shown_ = kPiece;
  showSlice();
}

void ReadingBox::showSlice() {
  const TimeBudget budget;
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  for (; shown_ < text_.size() && !budget.spent(); shown_ += kPiece) end.insertText(text_.mid(shown_, kPiece));
  if (shown_ < text_.size()) nextSlice_.start();
}

}  // namespace mv
