#include "help/ReadingBox.h"

namespace mv {

namespace {

constexpr qsizetype kLongestLine = 2000;

QString withLinesBroken(const QString& text) {
  QString broken;
  broken.reserve(text.size() + text.size() / kLongestLine);
  qsizetype length = 0;
  for (const QChar character : text) {
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

ReadingBox::ReadingBox(const QString& objectName, const QString& accessibleName, QWidget* parent)
    : QPlainTextEdit(parent) {
  setObjectName(objectName);
  setAccessibleName(accessibleName);
  setReadOnly(true);
  setTabChangesFocus(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void ReadingBox::showText(const QString& text) { setPlainText(withLinesBroken(text)); }

}  // namespace mv
