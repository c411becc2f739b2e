#include "WindowList.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPointer>

#include "windows/ChildWindow.h"

namespace mv {

namespace {

constexpr int kMostMnemonics = 9;

// A key for each of the first ones; what the caption has of "&" is no key.
QString entryCaption(int number, QString caption) {
  caption.replace('&', "&&");
  return number <= kMostMnemonics ? QString("&%1 %2").arg(number).arg(caption) : caption;
}

class WindowList : public QObject {
 public:
  WindowList(QMenu& menu, QMdiArea& area) : QObject(&menu), menu_(menu), area_(area) {
    connect(&menu, &QMenu::aboutToShow, this, [this] { list(); });
  }

 private:
  void list() {
    qDeleteAll(entries_);
    entries_.clear();
    for (QMdiSubWindow* frame : area_.subWindowList(QMdiArea::CreationOrder))
      if (auto* window = qobject_cast<ChildWindow*>(frame->widget()); window && !frame->isHidden())
        add(*window, *frame);
  }

  void add(ChildWindow& window, const QMdiSubWindow& frame) {
    if (entries_.isEmpty()) entries_ << menu_.addSeparator();
    const auto number = static_cast<int>(entries_.size());
    QAction* entry = menu_.addAction(entryCaption(number, window.settledCaption()));
    entry->setCheckable(true);
    entry->setChecked(&frame == area_.currentSubWindow());
    connect(entry, &QAction::triggered, this, [wanted = QPointer<ChildWindow>(&window)] {
      if (wanted) wanted->showChild();
    });
    entries_ << entry;
  }

  QMenu& menu_;
  QMdiArea& area_;
  QList<QAction*> entries_;
};

}  // namespace

void listOpenWindows(QMenu& menu, QMdiArea& area) { new WindowList(menu, area); }

}  // namespace mv
