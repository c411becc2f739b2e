// The bases of the windows, in a real frame with a real database.
#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/ChildWindow.h"
#include "app/EditorWindow.h"
#include "app/ListWindow.h"
#include "app/ToolIcons.h"
#include "app/WindowPosition.h"
#include "app/WindowRegistry.h"
#include "platform/Text.h"
#include "support/Controls.h"
#include "support/Fixture.h"

namespace {

using namespace mvtest;
using mv::TwipRect;
using mv::WindowRegistry;

QMdiSubWindow* frameOf(mv::ChildWindow& window) { return qobject_cast<QMdiSubWindow*>(window.parentWidget()); }

// A window that counts what happens to it.
class Child : public mv::ChildWindow {
 public:
  explicit Child(const QString& caption, int width = 6200, int height = 3600) : ChildWindow(width, height) {
    setCaption(caption);
  }
  using ChildWindow::readyToDelete;
  using ChildWindow::restorePosition;
  using ChildWindow::run;

  int activations = 0;
  bool hideOnly = false;
  bool atRest = true;
  bool failOnUnload = false;

 protected:
  bool queryUnload() override {
    if (hideOnly) hideChild();
    return !hideOnly;
  }
  void unloading() override {
    if (failOnUnload) throw std::runtime_error("no place to keep it");
    savePosition();
  }
  bool canDeleteNow() const override { return atRest; }
  void activated() override { ++activations; }
};

class ChildWindowTest : public WindowTest {
 protected:
  template <class Window>
  static bool goes(QPointer<Window> window) {
    return waitFor([&] { return window.isNull(); }, 5000);
  }
};

TEST_F(ChildWindowTest, IsLoadedHiddenAndShownInItsFrame) {
  auto* window = new Child("Scan: a", 4800, 1600);
  auto* big = new QLabel("contents do not force a size");
  big->setMinimumSize(900, 700);
  (new QVBoxLayout(window))->addWidget(big);
  EXPECT_FALSE(window->isChildVisible());
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Scan: a"), window);
  window->showChild();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(frameOf(*window)->windowTitle(), "Scan: a");
  EXPECT_EQ(window->place(), (TwipRect{0, 0, 1605, 4800})) << "to the nearest pixel";
  window->hideChild();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Scan: a"), window);
  window->setCaption("Scan: b");
  EXPECT_EQ(frameOf(*window)->windowTitle(), "Scan: b");
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Scan: a"), nullptr);
}

TEST_F(ChildWindowTest, PlacesRoundTripAndStayWithinReach) {
  auto* window = new Child("Placed");
  window->showChild();
  const int width = mv::pixelsToTwips(frame.mdiArea().viewport()->width());
  const struct {
    TwipRect set, got;
  } cases[] = {
      {{150, 300, 3000, 6000}, {150, 300, 3000, 6000}},
      {{0, -3000, 3000, 6000}, {0, -3000, 3000, 6000}},
      {{-4500, 0, 3000, 6000}, {0, 0, 3000, 6000}},
      {{0, 900'000, 3000, 6000}, {0, width - 1200, 3000, 6000}},
      {{0, -900'000, 3000, 6000}, {0, 1200 - 6000, 3000, 6000}},
  };
  for (const auto& c : cases) {
    window->setPlace(c.set);
    EXPECT_EQ(window->place(), c.got);
  }
  window->setPlace({900'000, 0, 3000, 6000});
  EXPECT_LT(frameOf(*window)->y(), frame.mdiArea().viewport()->height());
  EXPECT_GT(frameOf(*window)->y(), 0);
}

TEST_F(ChildWindowTest, RemembersItsPlaceUnderItsTitle) {
  const TwipRect place{150, 300, 3000, 6000};
  auto* window = new Child("Kept");
  EXPECT_FALSE(window->restorePosition());
  window->setPlace(place);
  window->showChild();
  frameOf(*window)->showMaximized();
  EXPECT_EQ(window->place(), place) << "a maximised window keeps the place it comes back to";
  window->unload();

  window = new Child("Kept");
  EXPECT_TRUE(window->restorePosition());
  EXPECT_EQ(window->place(), place);
  window->setPlace({450, 450, 3000, 6000});
  window->showChild();
  frameOf(*window)->showMinimized();
  EXPECT_TRUE(window->isMinimised());
  window->showChild();
  EXPECT_FALSE(window->isMinimised());
  frameOf(*window)->showMinimized();
  window->unload();
  EXPECT_EQ(value("select wtop from win_pos where wname = \"Kept\""), "150") << "minimised: the place before stays";

  window = new Child("Kept");
  window->setPlace({600, 450, 3000, 6000});
  window->showChild();
  window->hideChild();
  window->unload();
  EXPECT_EQ(value("select wtop from win_pos where wname = \"Kept\""), "600") << "hidden: kept like any other";

  mv::saveWindowPosition("Kept", 10, 10, 0, 10);
  EXPECT_FALSE((new Child("Kept"))->restorePosition()) << "no height, no place";
}

TEST_F(ChildWindowTest, IsToldOnceWhenItBecomesActive) {
  auto* one = new Child("one");
  auto* two = new Child("two");
  one->showChild();
  EXPECT_EQ(one->activations, 1);
  two->showChild();
  EXPECT_EQ(two->activations, 1);
  two->showChild();
  EXPECT_EQ(two->activations, 1);
  frame.mdiArea().setActiveSubWindow(frameOf(*one));
  EXPECT_EQ(one->activations, 2);
  // As when the user goes to another program and comes back.
  frame.mdiArea().setActiveSubWindow(nullptr);
  frame.mdiArea().setActiveSubWindow(frameOf(*one));
  EXPECT_EQ(one->activations, 2);

  one->unload();
  EXPECT_EQ(two->activations, 2) << "the next window takes over";
  two->hideChild();
  two->showChild();
  EXPECT_EQ(two->activations, 3);
}

TEST_F(ChildWindowTest, TheCloseBoxHidesItOrUnloadsIt) {
  QPointer<Child> window = new Child("Gone");
  QPointer<QMdiSubWindow> itsFrame = frameOf(*window);
  window->showChild();
  window->hideOnly = true;
  itsFrame->close();
  EXPECT_FALSE(window->isChildVisible());
  EXPECT_FALSE(window->unload());
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Gone"), window);
  window->hideOnly = false;
  itsFrame->close();
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Gone"), nullptr);
  EXPECT_TRUE(goes(window));
  EXPECT_TRUE(itsFrame.isNull());
}

TEST_F(ChildWindowTest, WaitsForItsOwnCodeBeforeItDies) {
  QPointer<Child> window = new Child("Busy");
  window->atRest = false;
  window->showChild();
  EXPECT_TRUE(window->unload());
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Busy"), nullptr);
  EXPECT_FALSE(window->isChildVisible());
  waitFor([] { return false; }, 30);
  ASSERT_FALSE(window.isNull());
  window->readyToDelete();
  EXPECT_TRUE(goes(window));
}

TEST_F(ChildWindowTest, UnloadedUnderItsOwnMessageBoxItDiesAfterwards) {
  QPointer<Child> window = new Child("Boxed");
  window->showChild();
  dialogs.duringMessage = [&] {
    EXPECT_TRUE(window->unload());
    waitFor([] { return false; }, 30);
    EXPECT_FALSE(window.isNull()) << "its code is still on the stack";
  };
  window->run([&] { mv::showMessage(window, "t", "x", mv::MessageIcon::None); });
  dialogs.duringMessage = {};
  EXPECT_TRUE(goes(window));
}

TEST_F(ChildWindowTest, AFailureAtTheEndIsShownAndTheWindowGoes) {
  QPointer<Child> window = new Child("Failing");
  window->failOnUnload = true;
  EXPECT_TRUE(window->unload());
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.contains("no place to keep it"));
  EXPECT_TRUE(goes(window));
}

// A list of the tags that were put into the table, ordered by id.
class TagList : public mv::ListWindow {
 public:
  explicit TagList(bool keepSorted = false) : ListWindow("Tags", 6200, 3600) {
    list().setColumns({{"Tag", 100}, {"Id", 60}});
    setIdColumn(1);
    setKeepSorted(keepSorted);
    addButton("      New      ", "Create", mv::toolIcon("new"), [this] { ++news; });
    edit = addButton("Edit", "Edit it", mv::toolIcon("edit"), [] { throw std::runtime_error("edit failed"); });
    load();
  }
  using ListWindow::chosenId;
  using ListWindow::chosenRow;
  using ListWindow::chosenText;
  using ListWindow::list;

  int news = 0;
  int edited = 0;
  int deleted = 0;
  int fills = 0;
  QToolButton* edit;

 protected:
  void fillList() override {
    ++fills;
    auto rows = mv::gDatabase.query("select id, tag from valid_tag where id > 900 order by id");
    for (; !rows.endOfRows(); rows.moveNext())
      list().addRow({mv::toQString(rows.text("tag")), mv::toQString(rows.text("id"))});
  }
  void editChosen() override { ++edited; }
  void deleteChosen() override { ++deleted; }
};

class ListWindowTest : public ChildWindowTest {
 protected:
  ListWindowTest() {
    for (const char* row : {"(901, \"b\")", "(902, \"a\")", "(903, \"c\")"})
      mv::gDatabase.execute(std::string("insert into valid_tag (id, tag) values ") + row);
    window = new TagList;
    window->showChild();
  }
  void click(int row) { clickRow(window->list(), row); }

  TagList* window;
};

TEST_F(ListWindowTest, FillsItsListBelowTheToolbar) {
  EXPECT_EQ(window->fills, 1);
  EXPECT_EQ(frame.clipboardEnabled, true);
  for (const TwipRect place : {window->place(), TwipRect{0, 0, 5100, 7500}}) {
    window->setPlace(place);
    EXPECT_EQ(control<QToolBar>(window, "Toolbar1").geometry(), QRect(0, 0, window->width(), 58));
    EXPECT_EQ(window->list().geometry(), QRect(0, 58, window->width(), window->height() - 58));
  }
  auto& button = control<QToolButton>(window, "New");
  EXPECT_EQ(button.text(), "      New      ");
  EXPECT_EQ(button.toolTip(), "Create");
  EXPECT_FALSE(button.icon().isNull());
  QTest::mouseClick(&button, Qt::LeftButton);
  EXPECT_EQ(window->news, 1);
  QTest::mouseClick(window->edit, Qt::LeftButton);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "An error has occured\r\n0\r\nedit failed\r\nListWindow\r\n");
}

TEST_F(ListWindowTest, RemembersTheChosenRowOverRebuilds) {
  EXPECT_EQ(window->chosenId(), 0);
  EXPECT_EQ(window->chosenRow(), -1);
  click(1);
  EXPECT_EQ(window->chosenId(), 902);
  EXPECT_EQ(window->chosenText(), "a");
  QTest::mouseClick(window->list().viewport(), Qt::LeftButton, Qt::NoModifier,
                    QPoint(10, window->list().viewport()->height() - 5));
  EXPECT_EQ(window->chosenId(), 902);

  mv::gDatabase.execute("delete from valid_tag where id = 901");
  window->buildWorkingLists("init");
  EXPECT_EQ(window->chosenRow(), 0);
  EXPECT_EQ(window->list().selectedRows(), std::vector<int>({0}));
  mv::gDatabase.execute("delete from valid_tag where id = 902");
  window->buildWorkingLists("nonsense");
  EXPECT_EQ(window->chosenId(), 902);
  window->buildWorkingLists("init");
  EXPECT_EQ(window->chosenId(), 0);
  EXPECT_EQ(window->chosenText(), "");
  EXPECT_TRUE(window->list().selectedRows().empty());
}

TEST_F(ListWindowTest, ARebuildKeepsTheOrderThatTheWindowWants) {
  auto* sorted = new TagList(true);
  sorted->showChild();
  EXPECT_EQ(columnTexts(window->list()), std::vector<QString>({"b", "a", "c"}));
  EXPECT_EQ(columnTexts(sorted->list()), std::vector<QString>({"a", "b", "c"}));
  for (TagList* each : {window, sorted}) {
    clickHeader(each->list(), 0);
    clickHeader(each->list(), 0);
    EXPECT_EQ(columnTexts(each->list()), std::vector<QString>({"c", "b", "a"}));
    each->buildWorkingLists("init");
  }
  EXPECT_EQ(columnTexts(window->list()), std::vector<QString>({"b", "a", "c"}));
  EXPECT_EQ(columnTexts(sorted->list()), std::vector<QString>({"c", "b", "a"}));
}

TEST_F(ListWindowTest, KeysAndDoubleClickReachTheSubclass) {
  click(2);
  QTest::keyClick(&window->list(), Qt::Key_Return);
  QTest::keyClick(&window->list(), Qt::Key_F2);
  EXPECT_EQ(window->edited, 2);
  doubleClickRow(window->list(), 0);
  EXPECT_EQ(window->edited, 3);
  EXPECT_EQ(window->chosenId(), 901);
  QTest::keyClick(&window->list(), Qt::Key_Delete);
  EXPECT_EQ(window->deleted, 1);
}

TEST_F(ListWindowTest, ARefreshWaitsForTheNextActivation) {
  auto* other = new Child("Other");
  other->showChild();
  WindowRegistry::instance().markRefreshPending("Tags");
  WindowRegistry::instance().markRefreshPending("Not loaded");
  mv::gDatabase.execute("delete from valid_tag where id > 900");
  EXPECT_EQ(window->fills, 1);
  window->showChild();
  EXPECT_EQ(window->fills, 2);
  EXPECT_FALSE(window->RefreshPending);
  EXPECT_EQ(frame.clipboardEnabled, false) << "an empty list";
  WindowRegistry::instance().tell("Tags", "init");
  EXPECT_EQ(window->fills, 3);
}

class Editor : public mv::EditorWindow {
 public:
  Editor() : EditorWindow("Editor", 6000, 3000) {
    auto* layout = new QVBoxLayout(this);
    line = new QLineEdit;
    text = new QPlainTextEdit;
    other = new QPushButton("Other");
    connect(other, &QPushButton::clicked, this, [this] { ++others; });
    for (QWidget* widget : {static_cast<QWidget*>(line), static_cast<QWidget*>(text), static_cast<QWidget*>(other)})
      layout->addWidget(widget);
    layout->addLayout(makeButtons("btnOK", "btnApply", "btnCancel", "&OK", "&Cancel"));
  }

  QLineEdit* line;
  QPlainTextEdit* text;
  QPushButton* other;
  bool good = true;
  bool failing = false;
  int inits = 0;
  int accepts = 0;
  int applies = 0;
  int others = 0;
  int* cancels = nullptr;

 protected:
  void initWindow() override { ++inits; }
  bool accept() override {
    ++accepts;
    if (failing) mv::gDatabase.execute("delete from nowhere");
    return good;
  }
  void apply() override { ++applies; }
  void cancel() override {
    if (cancels) ++*cancels;
  }
};

class EditorWindowTest : public ChildWindowTest {
 protected:
  EditorWindowTest() : editor(new Editor) {
    editor->cancels = &cancels;
    editor->open();
    frame.activateWindow();
  }
  QPushButton* button(const char* name) { return editor->findChild<QPushButton*>(name); }
  void key(QWidget* widget, Qt::Key which) {
    widget->setFocus();
    QTest::keyClick(widget, which);
  }

  int cancels = 0;
  QPointer<Editor> editor;
};

TEST_F(EditorWindowTest, OkClosesOnlyWhenTheContentsAreSaved) {
  editor->good = false;
  QTest::mouseClick(button("btnOK"), Qt::LeftButton);
  EXPECT_EQ(editor->accepts, 1);
  EXPECT_TRUE(editor->isVisible());

  editor->good = true;
  editor->failing = true;
  QTest::mouseClick(button("btnOK"), Qt::LeftButton);
  EXPECT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(editor->isVisible());

  editor->failing = false;
  QTest::mouseClick(button("btnOK"), Qt::LeftButton);
  EXPECT_TRUE(goes(editor));
  EXPECT_EQ(cancels, 0);
}

TEST_F(EditorWindowTest, ApplyKeepsItOpenAndTheCloseBoxIsNoCancel) {
  EXPECT_EQ(editor->inits, 1);
  QTest::mouseClick(button("btnApply"), Qt::LeftButton);
  EXPECT_EQ(editor->applies, 1);
  EXPECT_TRUE(editor->isVisible());
  frameOf(*editor)->close();
  EXPECT_TRUE(goes(editor));
  EXPECT_EQ(cancels, 0);
}

TEST_F(EditorWindowTest, EnterIsOkExceptWhereItMeansSomethingElseAndEscapeIsCancel) {
  editor->good = false;
  key(editor->line, Qt::Key_Return);
  EXPECT_EQ(editor->accepts, 1);
  key(editor->line, Qt::Key_Enter);
  EXPECT_EQ(editor->accepts, 2);
  key(editor->text, Qt::Key_Return);
  EXPECT_EQ(editor->accepts, 2);
  EXPECT_EQ(editor->text->toPlainText(), "\n");
  key(editor->other, Qt::Key_Return);
  EXPECT_EQ(editor->accepts, 2);
  EXPECT_EQ(editor->others, 1);
  button("btnOK")->setEnabled(false);
  key(editor->line, Qt::Key_Return);
  EXPECT_EQ(editor->accepts, 2) << "OK is disabled";
  key(editor->line, Qt::Key_Escape);
  EXPECT_EQ(cancels, 1);
  EXPECT_TRUE(goes(editor));
}

TEST(ToolIconsTest, EveryButtonHasAPicture) {
  for (const QString name : {"new", "edit", "delete", "start", "stop", "connections", "expand"})
    EXPECT_FALSE(mv::toolIcon(name).pixmap(24, 24).isNull()) << name.toStdString();
  EXPECT_TRUE(mv::toolIcon("unknown").isNull());
}

}  // namespace
