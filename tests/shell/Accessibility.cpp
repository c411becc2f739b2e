#include "Accessibility.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMetaEnum>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <algorithm>

#include "Pages.h"

namespace mvtest {

namespace {

QString nameOf(const QAccessibleInterface& item) { return item.text(QAccessible::Name).trimmed(); }

QString shown(const QObject* object) {
  QString name = object ? object->objectName() : QString("part");
  for (; object && name.isEmpty(); object = object->parent())
    name = object->parent() ? object->parent()->objectName() : "?";
  return name;
}

QString shown(const QAccessibleInterface& item) {
  const QMetaEnum roles = QMetaEnum::fromType<QAccessible::Role>();
  return QString("%1 (%2 \"%3\")").arg(shown(item.object()), roles.valueToKey(item.role()), nameOf(item));
}

// What holds others and is passed over by those who read.
bool isHolder(QAccessible::Role role) {
  static const QList<QAccessible::Role> holders{
      QAccessible::Client,      QAccessible::Pane,       QAccessible::ToolBar,  QAccessible::MenuBar,
      QAccessible::ScrollBar,   QAccessible::Separator,  QAccessible::Splitter, QAccessible::Border,
      QAccessible::LayeredPane, QAccessible::PageTabList};
  return holders.contains(role);
}

// Its parts are rows and columns, which have their texts for names.
bool isList(QAccessible::Role role) {
  return role == QAccessible::Table || role == QAccessible::Tree || role == QAccessible::List ||
         role == QAccessible::ComboBox || role == QAccessible::EditableText;
}

QString plain(QString caption) { return caption.remove(u'&').trimmed(); }

bool hasLetters(const QString& text) {
  return std::any_of(text.begin(), text.end(), [](QChar character) { return character.isLetter(); });
}

class Listener {
 public:
  QStringList faults;

  void listenTo(QAccessibleInterface& window) {
    const QAccessible::State state = window.state();
    if (state.invisible || state.offscreen) say(window, "is not said to be showing");
    if (nameOf(window).isEmpty()) say(window, "a window without a name");
    lookUp(window);
    read(window);
  }

 private:
  void say(const QAccessibleInterface& item, const QString& what) { faults << shown(item) + ": " + what; }

  // Whoever comes down from the main window must meet it.
  void lookUp(QAccessibleInterface& item) {
    QAccessibleInterface* parent = item.parent();
    if (!parent || parent->role() == QAccessible::Application) return;
    const int index = parent->indexOfChild(&item);
    if (index < 0 || parent->child(index) != &item) say(item, "is not found in " + shown(*parent));
    if (parent->state().invisible) say(item, "stands in what is not showing: " + shown(*parent));
    lookUp(*parent);
  }

  void read(QAccessibleInterface& item) {
    if (item.state().invisible) return;
    readOne(item);
    if (isList(item.role())) return;
    for (int i = 0; i < item.childCount(); ++i)
      if (QAccessibleInterface* child = item.child(i)) readChild(item, *child);
  }

  void readChild(const QAccessibleInterface& item, QAccessibleInterface& child) {
    if (!child.state().invisible && !nameOf(child).isEmpty() && nameOf(child) == nameOf(item))
      say(child, "is read twice, with " + shown(item));
    read(child);
  }

  void readOne(const QAccessibleInterface& item) {
    const QString name = nameOf(item);
    if (item.role() == QAccessible::NoRole) say(item, "no role");
    if (name.isEmpty() && !isHolder(item.role())) readNameless(item);
    if (name.isEmpty()) return;
    const QString description = item.text(QAccessible::Description);
    if (description.trimmed() == name || description.contains("<span>"))
      say(item, "reads twice, or markup: \"" + description + '"');
    readOwnName(item);
  }

  void readNameless(const QAccessibleInterface& item) {
    // A line that has nothing to say at the moment.
    const auto* label = qobject_cast<QLabel*>(item.object());
    if (label && label->text().isEmpty() && label->pixmap().isNull()) return;
    say(item, "no name");
  }

  void readOwnName(const QAccessibleInterface& item) {
    const auto* group = qobject_cast<QGroupBox*>(item.object());
    const auto* button = qobject_cast<QAbstractButton*>(item.object());
    const QString title = plain(group ? group->title() : button ? button->text() : QString());
    if (hasLetters(title) && !nameOf(item).contains(title)) say(item, "its title is \"" + title + '"');
  }
};

// --- Tab

bool isControl(const QWidget& widget) {
  if (qobject_cast<const QHeaderView*>(&widget) || qobject_cast<const QScrollBar*>(&widget)) return false;
  return qobject_cast<const QAbstractButton*>(&widget) || qobject_cast<const QLineEdit*>(&widget) ||
         qobject_cast<const QComboBox*>(&widget) || qobject_cast<const QAbstractItemView*>(&widget) ||
         qobject_cast<const QAbstractSlider*>(&widget) || qobject_cast<const QPlainTextEdit*>(&widget) ||
         qobject_cast<const QTabBar*>(&widget);
}

class Walk {
 public:
  explicit Walk(QWidget& window) : window_(window) {}

  QStringList faults;

  void go() {
    QCoreApplication::processEvents();
    const QList<QWidget*> controls = controlsOfPage();
    if (controls.isEmpty()) return;
    const QList<QWidget*> way = walk(*controls.first());
    for (QWidget* control : controls)
      if (!way.contains(control)) faults << shown(control) + ": Tab does not reach it";
    judge(way);
  }

 private:
  QList<QWidget*> controlsOfPage() const {
    QList<QWidget*> controls;
    for (QWidget* widget : window_.findChildren<QWidget*>())
      if (widget->isVisible() && widget->isEnabled() && isControl(*widget)) controls << widget;
    return controls;
  }

  // Round once.
  QList<QWidget*> walk(QWidget& start) {
    constexpr int kMostSteps = 200;
    start.setFocus(Qt::TabFocusReason);
    QList<QWidget*> way;
    for (int step = 0; step < kMostSteps; ++step) {
      QWidget* focus = QApplication::focusWidget();
      if (way.contains(focus) && focus != way.first())
        faults << shown(way.last()) + ": Tab leads back to " + shown(focus);
      if (!focus || way.contains(focus)) break;
      way << focus;
      QTest::keyClick(focus, Qt::Key_Tab);
    }
    return way;
  }

  QRect placeOf(const QWidget& control) const { return {control.mapTo(&window_, QPoint()), control.size()}; }

  // Rows from top to bottom, a row from left to right; a column may begin again at the top, beside the one before.
  bool leadsBack(const QWidget& from, const QWidget& to) const {
    const QRect a = placeOf(from);
    const QRect b = placeOf(to);
    const int common = std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top());
    const bool sameRow = 2 * common > std::min(a.height(), b.height());
    if (sameRow) return b.center().x() < a.center().x();
    return b.center().y() < a.center().y() && b.left() < a.right();
  }

  // Once round leads back once.
  void judge(const QList<QWidget*>& way) {
    QStringList back;
    for (qsizetype i = 0; i < way.size(); ++i) {
      const QWidget& from = *way[i];
      const QWidget& to = *way[(i + 1) % way.size()];
      if (leadsBack(from, to)) back << shown(&from) + " -> " + shown(&to);
    }
    if (back.size() > 1) faults << "against the order of reading: " + back.join(", ");
  }

  QWidget& window_;
};

}  // namespace

QStringList accessibilityFaults(QWidget& window) {
  Listener listener;
  lookAtPages(window, [&] {
    QCoreApplication::processEvents();
    listener.listenTo(*QAccessible::queryAccessibleInterface(&window));
  });
  listener.faults.removeDuplicates();
  return listener.faults;
}

QStringList tabFaults(QWidget& window) {
  Walk walk(window);
  lookAtPages(window, [&walk] { walk.go(); });
  walk.faults.removeDuplicates();
  return walk.faults;
}

}  // namespace mvtest
