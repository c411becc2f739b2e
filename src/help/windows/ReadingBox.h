// A box of plain text to be read: selectable, never changed by the user, nothing in it taken for markup.
#pragma once

#include <QPlainTextEdit>
#include <QTimer>

namespace mv {

class ReadingBox : public QPlainTextEdit {
  Q_OBJECT
 public:
  explicit ReadingBox(QWidget* parent = nullptr);

  // Some lines; more is for the window to give.
  QSize sizeHint() const override;
  // In place of the text before; a long one comes in slices, its first thousands of characters at once. Lines of more
  // than two thousand characters are broken: laying out a word of a million would take a minute.
  void showText(const QString& text);

 private:
  void showSlice();

  QString text_;  // to be shown, with its lines broken
  qsizetype shown_ = 0;
  QTimer nextSlice_;
};

}  // namespace mv
