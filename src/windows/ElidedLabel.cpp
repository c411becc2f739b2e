#include "windows/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QToolTip>
#include <algorithm>

#include "base/Text.h"
#include "base/ToolTip.h"

namespace mv {

namespace {

constexpr int kUsefulWidth = 40;
constexpr int kWidestHint = 280;
constexpr int kMostLines = 4;
constexpr qsizetype kMostMeasured = 1000;  // characters; what is longer is wide without being measured

// Line breaks and tabs are drawn as blanks, and measured so.
QString withBlanks(QString text) {
  for (QChar& character : text)
    if (character.isSpace()) character = u' ';
  return text;
}

// Only as much of a long address as could ever show: no character is narrower than a pixel.
QString showable(const QString& text, int pixels) {
  return text.size() > 2 * pixels ? text.left(pixels) + QChar(0x2026) + text.right(pixels) : text;
}

// Broken between words, within a word that is wider than `width`. The last of `most` lines has all that is left.
QStringList brokenText(const QString& text, const QFont& font, int width, int most) {
  if (most <= 1) return {text};
  QTextLayout layout(text, font);
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.beginLayout();
  QStringList lines;
  for (QTextLine line = layout.createLine(); line.isValid() && lines.size() < most; line = layout.createLine()) {
    line.setLineWidth(width);
    const bool last = lines.size() + 1 == most;
    lines << (last ? text.mid(line.textStart()) : text.mid(line.textStart(), line.textLength())).trimmed();
  }
  layout.endLayout();
  return lines;
}

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void ElidedLabel::setText(const QString& text) {
  if (text == this->text()) return;
  lineWidth_.reset();
  QLabel::setText(text);
}

void ElidedLabel::setUsualText(const QString& text) {
  usualText_ = text;
  forgetMeasures();
  updateGeometry();
}

void ElidedLabel::forgetMeasures() {
  lineWidth_.reset();
  usualSize_.reset();
}

// Layouts ask for it three times a change, and so does every painting.
int ElidedLabel::lineWidth() const {
  if (!lineWidth_)
    lineWidth_ = text().size() > kMostMeasured ? QWIDGETSIZE_MAX : fontMetrics().horizontalAdvance(withBlanks(text()));
  return *lineWidth_;
}

int ElidedLabel::heightForWidth(int width) const {
  if (!hasHeightForWidth()) return QLabel::heightForWidth(width);
  if (!usualSize_ || usualSize_->width() != width) {
    const auto lines = brokenText(usualText_, font(), std::max(width, kUsefulWidth), kMostLines).size();
    usualSize_ = {width, static_cast<int>(lines) * fontMetrics().lineSpacing()};
  }
  return usualSize_->height();
}

ElidedLabel::Shown ElidedLabel::shown() const {
  const int width = std::max(contentsRect().width(), 1);
  const int most = hasHeightForWidth() ? std::max(contentsRect().height() / fontMetrics().lineSpacing(), 1) : 1;
  QStringList lines = brokenText(showable(withBlanks(text()), width * most), font(), width, most);
  if (lines.isEmpty()) return {{}, false};
  const QString rest = lines.last();
  if (most > 1 || lineWidth() > width)
    lines.last() = fontMetrics().elidedText(rest, most > 1 ? Qt::ElideRight : Qt::ElideMiddle, width);
  const bool cut = lines.last() != rest;
  return {std::move(lines), cut};
}

void ElidedLabel::changeEvent(QEvent* event) {
  forgetMeasures();  // the font may be another one
  QLabel::changeEvent(event);
}

// Kept as the widget's tool tip the text would be read a second time, as its description.
bool ElidedLabel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), isCut() ? plainToolTip(text()) : QString(), this);
  return true;
}

void ElidedLabel::setLine(const std::string& line) { setText(toQString(line)); }

QSize ElidedLabel::sizeHint() const {
  const int width = std::min(kWidestHint, lineWidth());
  return {width, hasHeightForWidth() ? heightForWidth(kWidestHint) : fontMetrics().height()};
}

QSize ElidedLabel::minimumSizeHint() const { return {std::min(kUsefulWidth, lineWidth()), fontMetrics().height()}; }

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const QStringList lines = shown().lines;
  const int height = fontMetrics().lineSpacing();
  QRect place = contentsRect();
  place.setTop(place.top() + (place.height() - height * static_cast<int>(lines.size())) / 2);
  place.setHeight(height);
  for (const QString& line : lines) {
    style()->drawItemText(&painter, place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, palette(),
                          isEnabled(), line, foregroundRole());
    place.translate(0, height);
  }
}

}  // namespace mv
