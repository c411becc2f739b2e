#include "CutControls.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QCoreApplication>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTabBar>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

#include "Pages.h"
#include "windows/ElidedLabel.h"

namespace mvtest {

namespace {

class Look {
 public:
  explicit Look(QWidget& window) : window_(window) {}

  QStringList found;

  void go() {
    QCoreApplication::processEvents();
    for (QWidget* control : window_.findChildren<QWidget*>())
      if (control->isVisibleTo(&window_)) look(*control);
    found.removeDuplicates();
  }

 private:
  void say(const QWidget& control, const QString& what) {
    QString name = control.objectName();
    for (const QWidget* owner = &control; name.isEmpty() && owner; owner = owner->parentWidget())
      name = owner->objectName() + '/' + QString(control.metaObject()->className());
    found << name + ": " + what;
  }

  void look(QWidget& control) {
    if (qobject_cast<QScrollBar*>(&control)) return lookAtBar(static_cast<QScrollBar&>(control));
    if (auto* tabs = qobject_cast<QTabBar*>(&control)) return lookAtTabs(*tabs);
    if (auto* header = qobject_cast<QHeaderView*>(&control)) return lookAtHeader(*header);
    if (control.objectName() == "qt_toolbar_ext_button") return say(control, "the toolbar has no room for its buttons");
    if (auto* label = qobject_cast<QLabel*>(&control)) lookAtLabel(*label);
    const bool measured = qobject_cast<QAbstractButton*>(&control) || qobject_cast<QComboBox*>(&control) ||
                          qobject_cast<QGroupBox*>(&control);
    const QSize needed = control.minimumSizeHint();
    if (measured && (control.width() < needed.width() || control.height() < needed.height()))
      say(control, QString("has %1 x %2, needs %3 x %4")
                       .arg(control.width())
                       .arg(control.height())
                       .arg(needed.width())
                       .arg(needed.height()));
    if (qobject_cast<QLineEdit*>(&control)) lookAtLine(static_cast<QLineEdit&>(control));
    // Behind a page's edge, or behind another control.
    if (!control.isEnabledTo(nullptr) && control.size().isEmpty()) return;
    if (QWidget* clipped = clipper(control))
      say(control, "stands out of " + clipped->objectName() + "/" + clipped->metaObject()->className());
  }

  // The first one around `control` that it does not lie within.
  QWidget* clipper(const QWidget& control) const {
    for (QWidget* around = control.parentWidget(); around; around = around->parentWidget()) {
      const QRect place(control.mapTo(around, QPoint()), control.size());
      if (!around->rect().contains(place) && !qobject_cast<QAbstractScrollArea*>(around->parentWidget())) return around;
      if (qobject_cast<QAbstractScrollArea*>(around) || around == &window_) return nullptr;
    }
    return nullptr;
  }

  void lookAtBar(const QScrollBar& bar) {
    if (bar.minimum() == bar.maximum()) return;
    const auto* view = qobject_cast<QAbstractItemView*>(bar.parentWidget()->parentWidget());
    // The rows of a list may scroll, its columns may not.
    if (view && bar.orientation() == Qt::Vertical) return;
    const auto* text = qobject_cast<QAbstractScrollArea*>(bar.parentWidget()->parentWidget());
    if (text && text->inherits("QPlainTextEdit")) return;
    say(*bar.parentWidget()->parentWidget(), "scrolls");
  }

  void lookAtTabs(const QTabBar& tabs) {
    if (tabs.width() < tabs.sizeHint().width()) say(*tabs.parentWidget(), "its tabs have no room");
  }

  void lookAtHeader(const QHeaderView& header) {
    for (int column = 0; column < header.count(); ++column)
      if (!header.isSectionHidden(column) && header.sectionSize(column) < header.sectionSizeHint(column))
        say(*header.parentWidget(), "the title of column " + QString::number(column) + " is cut");
  }

  void lookAtLabel(const QLabel& label) {
    if (label.text().isEmpty() || label.pixmap().width() > 0) return;
    if (const auto* elided = qobject_cast<const mv::ElidedLabel*>(&label)) {
      if (elided->isCut()) say(label, "\"" + label.text() + "\" is cut");
      return;
    }
    const QRect room = label.contentsRect();
    if (!label.wordWrap()) {
      if (label.fontMetrics().horizontalAdvance(label.text().remove('&')) > room.width() ||
          label.fontMetrics().height() > label.height())
        say(label, "\"" + label.text() + "\" is cut");
    } else if (label.heightForWidth(label.width()) > label.height()) {
      say(label, "\"" + label.text().left(20) + "...\" is cut");
    }
  }

  void lookAtLine(const QLineEdit& line) {
    if (line.height() < line.sizeHint().height()) say(line, "is too low");
    const int digits =
        line.maximumWidth() == line.minimumWidth() ? line.fontMetrics().horizontalAdvance(line.text()) : 0;
    if (digits > line.width()) say(line, "is too narrow for its number");
  }

  QWidget& window_;
};

}  // namespace

QStringList cutControls(QWidget& window) {
  Look look(window);
  lookAtPages(window, [&look] { look.go(); });
  return look.found;
}

}  // namespace mvtest
