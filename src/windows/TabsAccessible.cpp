#include "TabsAccessible.h"

#include <QAccessibleWidget>
#include <QPointer>
#include <QTabBar>
#include <vector>

namespace mv {

namespace {

QString withoutMnemonic(QString caption) { return caption.remove(u'&'); }

class Tab : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  Tab(QTabBar* bar, int index) : bar_(bar), index_(index) {}

  bool isValid() const override { return bar_ && index_ < bar_->count(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return parent() ? parent()->window() : nullptr; }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(bar_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::PageTab; }
  QString text(QAccessible::Text which) const override {
    if (!isValid()) return {};
    if (which == QAccessible::Name) return withoutMnemonic(bar_->tabText(index_));
    return which == QAccessible::Description ? bar_->tabToolTip(index_) : QString();
  }
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override {
    const QRect tab = isValid() ? bar_->tabRect(index_) : QRect();
    return isValid() ? QRect(bar_->mapToGlobal(tab.topLeft()), tab.size()) : QRect();
  }
  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) return state;
    state.invisible = !bar_->isVisible() || !bar_->isTabVisible(index_);
    state.disabled = !bar_->isTabEnabled(index_);
    state.selectable = state.focusable = true;
    state.selected = bar_->currentIndex() == index_;
    state.focused = state.selected && bar_->hasFocus();
    return state;
  }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return {pressAction()}; }
  void doAction(const QString& action) override {
    if (isValid() && action == pressAction()) bar_->setCurrentIndex(index_);
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QPointer<QTabBar> bar_;
  int index_;
};

class Bar : public QAccessibleWidget {
 public:
  explicit Bar(QTabBar& bar) : QAccessibleWidget(&bar, QAccessible::PageTabList), bar_(bar) {}
  ~Bar() override {
    for (const QAccessible::Id tab : tabs_) QAccessible::deleteAccessibleInterface(tab);
  }

  int childCount() const override { return bar_.count(); }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= bar_.count()) return nullptr;
    while (static_cast<int>(tabs_.size()) <= index)
      tabs_.push_back(QAccessible::registerAccessibleInterface(new Tab(&bar_, static_cast<int>(tabs_.size()))));
    return QAccessible::accessibleInterface(tabs_[static_cast<std::size_t>(index)]);
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    return child(bar_.tabAt(bar_.mapFromGlobal(QPoint(x, y))));
  }
  QAccessibleInterface* focusChild() const override { return bar_.hasFocus() ? child(bar_.currentIndex()) : nullptr; }
  int indexOfChild(const QAccessibleInterface* item) const override {
    for (int index = 0; index < bar_.count(); ++index)
      if (child(index) == item) return index;
    return -1;
  }

 private:
  QTabBar& bar_;
  mutable std::vector<QAccessible::Id> tabs_;
};

QAccessibleInterface* describe(const QString& className, QObject* object) {
  auto* bar = className == "QTabBar" ? qobject_cast<QTabBar*>(object) : nullptr;
  return bar ? new Bar(*bar) : nullptr;
}

}  // namespace

void describeTabs() { [[maybe_unused]] static const bool once = (QAccessible::installFactory(describe), true); }

}  // namespace mv
