// Working the whole program through its main window, with the mouse and the keyboard only.
#pragma once

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>

#include "program/ProgramMenus.h"
#include "shell/frmDownloadManager.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace mvtest {

class WholeUse : public ProgramTest {
 protected:
  WholeUse() {
    main_.resize(1100, 850);
    main_.show();
    main_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&main_));
  }
  ~WholeUse() override { main_.close(); }

  // Opens a menu of the menu bar with the mouse and clicks one of its entries.
  void chooseFromMenu(const char* menuName, const char* itemName) {
    auto* menu = main_.findChild<QMenu*>(menuName);
    QMenuBar* bar = main_.menuBar();
    QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(menu->menuAction()).center());
    ASSERT_TRUE(waitFor([&] { return menu->isVisible(); }));
    auto* item = main_.findChild<QAction*>(itemName);
    ASSERT_TRUE(item->isEnabled());
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(item).center());
    ASSERT_TRUE(waitFor([&] { return !menu->isVisible(); }));
  }

  template <class Window>
  Window* window() {
    EXPECT_NE(find<Window>(), nullptr);
    return find<Window>();
  }

  // Brings the control into view (tabs, scroll areas) as a user would, and answers it.
  template <class Control>
  Control* control(QWidget* owner, const char* name) {
    auto* found = owner->findChild<Control*>(name);
    EXPECT_NE(found, nullptr) << name;
    for (QWidget* page = found; page && page != owner; page = page->parentWidget())
      if (auto* tabs = qobject_cast<QTabWidget*>(page->parentWidget() ? page->parentWidget()->parentWidget() : nullptr))
        if (const int index = tabs->indexOf(page); index >= 0)
          QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(index).center());
    EXPECT_TRUE(found->isVisible()) << name;
    return found;
  }

  void click(QWidget* owner, const char* name) {
    auto* button = control<QAbstractButton>(owner, name);
    ASSERT_TRUE(button->isEnabled()) << name;
    QTest::mouseClick(button, Qt::LeftButton);
  }

  void type(QWidget* owner, const char* name, const QString& text) {
    auto* box = control<QLineEdit>(owner, name);
    QTest::mouseClick(box, Qt::LeftButton);
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(box, text);
    EXPECT_EQ(box->text(), text) << name;
  }

  void choose(mv::ListView* list, const QString& text) { clickRow(*list, list->findRow(0, text)); }

  mv::frmDownloadManager main_{mv::programMenus()};
};

}  // namespace mvtest
