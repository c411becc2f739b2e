#include "windows/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>
#include <algorithm>

#include "base/Text.h"
#include "base/ToolTip.h"

namespace mv {

namespace {
constexpr int kUsefulWidth = 40;
constexpr int kWidestHint = 280;
}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void ElidedLabel::setText(const QString& text) {
  if (text != this->text()) QLabel::setText(text);
}

// Kept as the widget's tool tip the line would be read a second time, as its description.
bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  const bool cut = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), cut ? plainToolTip(text()) : QString(), this);
  return true;
}

void ElidedLabel::setLine(const std::string& line) { setText(toQString(line)); }

QSize ElidedLabel::sizeHint() const {
  QSize hint = QLabel::sizeHint();
  hint.setWidth(std::min(hint.width(), kWidestHint));
  hint.setHeight(minimumSizeHint().height());
  return hint;
}

QSize ElidedLabel::minimumSizeHint() const {
  return {std::min(kUsefulWidth, fontMetrics().horizontalAdvance(text())), fontMetrics().height()};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const int room = contentsRect().width();
  QString line = text();
  for (QChar& character : line)
    if (character.isSpace()) character = u' ';
  // Only as much of a long address as could ever show is measured.
  if (line.size() > 2 * room) line = line.left(room) + QChar(0x2026) + line.right(room);
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, palette(),
                        isEnabled(), fontMetrics().elidedText(line, Qt::ElideMiddle, room), foregroundRole());
}

}  // namespace mv
