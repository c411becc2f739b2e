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
constexpr qsizetype kMostMeasured = 1000;  // characters; what is longer is wide without being measured
}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void ElidedLabel::setText(const QString& text) {
  if (text == this->text()) return;
  lineWidth_.reset();
  QLabel::setText(text);
}

// Layouts ask for it three times a change, and so does every painting.
int ElidedLabel::lineWidth() const {
  if (!lineWidth_)
    lineWidth_ = text().size() > kMostMeasured ? QWIDGETSIZE_MAX : fontMetrics().horizontalAdvance(text());
  return *lineWidth_;
}

void ElidedLabel::changeEvent(QEvent* event) {
  lineWidth_.reset();  // the font may be another one
  QLabel::changeEvent(event);
}

// Kept as the widget's tool tip the line would be read a second time, as its description.
bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  const bool cut = lineWidth() > contentsRect().width();
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), cut ? plainToolTip(text()) : QString(), this);
  return true;
}

void ElidedLabel::setLine(const std::string& line) { setText(toQString(line)); }

QSize ElidedLabel::sizeHint() const { return {std::min(kWidestHint, lineWidth()), fontMetrics().height()}; }

QSize ElidedLabel::minimumSizeHint() const { return {std::min(kUsefulWidth, lineWidth()), fontMetrics().height()}; }

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const int room = contentsRect().width();
  QString line = text();
  for (QChar& character : line)
    if (character.isSpace()) character = u' ';
  // Only as much of a long address as could ever show is measured.
  if (line.size() > 2 * room) line = line.left(room) + QChar(0x2026) + line.right(room);
  if (lineWidth() > room) line = fontMetrics().elidedText(line, Qt::ElideMiddle, room);
  style()->drawItemText(&painter, contentsRect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, palette(),
                        isEnabled(), line, foregroundRole());
}

}  // namespace mv
