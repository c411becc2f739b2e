// A box of plain text to be read: selectable, never changed by the user, nothing in it taken for markup.
#pragma once

#include <QPlainTextEdit>

namespace mv {

class ReadingBox : public QPlainTextEdit {
  Q_OBJECT
 public:
  ReadingBox(const QString& objectName, const QString& accessibleName, QWidget* parent);

  // Lines of more than two thousand characters are broken: laying out a word of a million would take a minute.
  void showText(const QString& text);
};

}  // namespace mv
