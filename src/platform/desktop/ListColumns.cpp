#include "desktop/ListColumns.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QToolTip>
#include <QTreeView>
#include <algorithm>
#include <utility>
#include <vector>

#include "base/ProgramName.h"
#include "base/UserSettings.h"

namespace mv {

namespace {

constexpr const char* kSection = "ColumnWidths";

// What the style leaves free on both sides of a cell's text.
int cellMargins(const QTreeView& list) {
  return 2 * (list.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &list) + 1);
}

class CutCells : public QObject {
 public:
  explicit CutCells(QTreeView& list) : QObject(&list), list_(list) { list.viewport()->installEventFilter(this); }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::ToolTip) return QObject::eventFilter(watched, event);
    const auto& help = static_cast<const QHelpEvent&>(*event);
    const QModelIndex cell = list_.indexAt(help.pos());
    const QString text = cell.data().toString();
    if (text.isEmpty() || !isCut(cell, text)) return QObject::eventFilter(watched, event);
    QToolTip::showText(help.globalPos(), text.toHtmlEscaped(), list_.viewport(), list_.visualRect(cell));
    return true;
  }

 private:
  bool isCut(const QModelIndex& cell, const QString& text) const {
    const QVariant font = cell.data(Qt::FontRole);
    const QFontMetrics metrics(font.isValid() ? font.value<QFont>() : list_.font());
    return metrics.horizontalAdvance(text) + cellMargins(list_) > list_.visualRect(cell).width();
  }

  QTreeView& list_;
};

// Drawn before the view draws its rows, which then are none.
class EmptyText : public QObject {
 public:
  EmptyText(QTreeView& list, QString text) : QObject(&list), list_(list), text_(std::move(text)) {
    list.viewport()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && list_.model()->rowCount() == 0) draw();
    return QObject::eventFilter(watched, event);
  }

 private:
  void draw() {
    QPainter painter(list_.viewport());
    painter.setPen(list_.palette().color(QPalette::PlaceholderText));
    const QRect room = list_.viewport()->rect().marginsRemoved({kMargin, kMargin, kMargin, kMargin});
    painter.drawText(room, static_cast<int>(Qt::AlignCenter) | static_cast<int>(Qt::TextWordWrap), text_);
  }

  static constexpr int kMargin = 8;
  QTreeView& list_;
  QString text_;
};

class RoomyColumn : public QObject {
 public:
  RoomyColumn(QTreeView& list, int column)
      : QObject(&list), list_(list), header_(*list.header()), column_(column), least_(header_.sectionSize(column)) {
    list.viewport()->installEventFilter(this);
    connect(&header_, &QHeaderView::sectionResized, this, &RoomyColumn::columnResized);
    giveRoom();
  }

  int spare() const { return header_.sectionSize(column_) - least_; }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize) giveRoom();
    return QObject::eventFilter(watched, event);
  }

 private:
  void columnResized(int column, int, int width) {
    if (giving_) return;
    if (column == column_)
      least_ = width;
    else
      giveRoom();
  }

  void giveRoom() {
    const int others = header_.length() - header_.sectionSize(column_);
    const QScopedValueRollback giving(giving_, true);
    header_.resizeSection(column_, std::max(least_, list_.viewport()->width() - others));
  }

  QTreeView& list_;
  QHeaderView& header_;
  int column_;
  int least_;  // pixels
  bool giving_ = false;
};

const RoomyColumn* roomyColumn(const QTreeView& list) {
  for (const QObject* child : list.children())
    if (const auto* roomy = dynamic_cast<const RoomyColumn*>(child)) return roomy;
  return nullptr;
}

// Only what the mouse does to a column is the user's.
class LastingWidths : public QObject {
 public:
  LastingWidths(QTreeView& list, const QString& name) : QObject(&list), header_(*list.header()), name_(name) {
    restore();
    header_.viewport()->installEventFilter(this);
    connect(&header_, &QHeaderView::sectionResized, this, [this] { changed_ = pressed_; });
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonPress) pressed_ = true;
    if (event->type() == QEvent::MouseButtonRelease) {
      if (changed_) keep();
      pressed_ = changed_ = false;
    }
    return QObject::eventFilter(watched, event);
  }

 private:
  void restore() {
    const QStringList widths = readUserSetting(kProgramName, kSection, name_).split(' ', Qt::SkipEmptyParts);
    if (widths.size() != header_.count()) return;
    for (int column = 0; column < header_.count(); ++column)
      if (const int width = widths[column].toInt(); width > 0) header_.resizeSection(column, width);
  }

  void keep() {
    QStringList widths;
    for (int column = 0; column < header_.count(); ++column) widths << QString::number(header_.sectionSize(column));
    saveUserSetting(kProgramName, kSection, name_, widths.join(' '));
  }

  QHeaderView& header_;
  QString name_;
  bool pressed_ = false;
  bool changed_ = false;
};

// The room of the arrow that shows the order, which comes and goes.
int arrowWidth(const QHeaderView& header) {
  if (header.isSortIndicatorShown()) return 0;
  return header.style()->pixelMetric(QStyle::PM_HeaderMarkSize, nullptr, &header) +
         header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
}

}  // namespace

int columnWidth(const QTreeView& list, int column, int characters) {
  const int text = characters * list.fontMetrics().averageCharWidth() + cellMargins(list);
  return std::max(text, list.header()->sectionSizeHint(column) + arrowWidth(*list.header()));
}

int columnsWidth(const QTreeView& list) {
  const int bar = list.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &list);
  const RoomyColumn* roomy = roomyColumn(list);
  return list.header()->length() - (roomy ? roomy->spare() : 0) + 2 * list.frameWidth() + bar;
}

void giveRoom(QTreeView& list, int column) { new RoomyColumn(list, column); }

void tellCutCells(QTreeView& list) { new CutCells(list); }

void setEmptyText(QTreeView& list, const QString& text) { new EmptyText(list, text); }

void keepColumnWidths(QTreeView& list, const QString& name) { new LastingWidths(list, name); }

}  // namespace mv
