// What those who listen to the windows or work them with keys only are given.

#include "Accessibility.h"

#include <QAccessible>
#include <QTimer>

#include "EveryWindow.h"
#include "catalog_windows/frmNewFilter.h"
#include "desktop/Dialogs.h"
#include "shell/frmSplash.h"
#include "windows/frmPleaseWait.h"

namespace {

using namespace mv;
using namespace mvtest;

class AccessibilityTest : public EveryWindow {
 protected:
  AccessibilityTest() { openMainWindow(); }

  static QString nameOf(QWidget& control) {
    return QAccessible::queryAccessibleInterface(&control)->text(QAccessible::Name);
  }
};

TEST_F(AccessibilityTest, EveryWindowTellsEachOfItsControlsOnceAndByItsOwnName) {
  lookAtEach([](ChildWindow& window, const QSize&) {
    const QStringList faults = accessibilityFaults(*window.parentWidget());
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(window.caption()) << ":\n  " << qPrintable(faults.join("\n  "));
  });
}

TEST_F(AccessibilityTest, TabLeadsThroughEveryWindowInTheOrderOfReading) {
  lookAtEach([](ChildWindow& window, const QSize&) {
    const QStringList faults = tabFaults(window);
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(window.caption()) << ":\n  " << qPrintable(faults.join("\n  "));
  });
}

TEST_F(AccessibilityTest, SoDoTheMainWindowAndItsDialogs) {
  frmPleaseWait wait(&mainWindow());
  wait.show();
  mainWindow().splash().show();
  for (QWidget* window : {static_cast<QWidget*>(&mainWindow()), static_cast<QWidget*>(&wait),
                          static_cast<QWidget*>(&mainWindow().splash())}) {
    const QStringList faults = accessibilityFaults(*window);
    EXPECT_TRUE(faults.isEmpty()) << qPrintable(window->objectName()) << ":\n  " << qPrintable(faults.join("\n  "));
  }
}

// Each of them asks with a title of its own.
TEST_F(AccessibilityTest, SoDoesTheFolderDialogOfEveryBrowseButton) {
  const auto scripted = qScopeGuard([recording = Dialogs::install(nullptr)] { Dialogs::install(recording); });
  QStringList titles;
  lookAtEach([&titles](ChildWindow& window, const QSize&) {
    auto* browse = window.findChild<QPushButton*>("cmdBrowse");
    if (!browse) return;
    QTimer::singleShot(0, &window, [&titles] {
      QWidget* dialog = QApplication::activeModalWidget();
      ASSERT_NE(dialog, nullptr);
      titles << dialog->windowTitle();
      const QStringList faults = accessibilityFaults(*dialog) + tabFaults(*dialog);
      EXPECT_TRUE(faults.isEmpty()) << qPrintable(dialog->windowTitle()) << ":\n  " << qPrintable(faults.join("\n  "));
      dialog->close();
    });
    browse->setEnabled(true);
    browse->click();
  });
  EXPECT_EQ(titles.size(), 3) << qPrintable(titles.join('\n'));
}

TEST_F(AccessibilityTest, AWindowIsShowingWhereverItStandsInTheMainWindow) {
  auto* window = new frmHelp;
  window->showChild();
  window->setPlace({9000, 16000, 4455, 6855});
  const QAccessible::State state = QAccessible::queryAccessibleInterface(window->parentWidget())->state();
  EXPECT_FALSE(state.invisible || state.offscreen) << "a part of it is in view";
  window->hideChild();
  EXPECT_TRUE(QAccessible::queryAccessibleInterface(window->parentWidget())->state().invisible);
  window->unload();
}

TEST_F(AccessibilityTest, AnIdentifierIsReadWithItsNumber) {
  insert("filter", {{"41", "Large pictures", "no", ""}});
  auto* filter = new frmNewFilter;
  filter->Mode = "edit";
  filter->FilterId = 41;
  filter->open();
  EXPECT_EQ(nameOf(mvtest::control<QLabel>(filter, "lblId")), "Identifier 41");
  filter->unload();
}

}  // namespace
