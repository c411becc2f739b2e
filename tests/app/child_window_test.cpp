// The bases of the windows, in a real frame with a real database.

#include <QMdiSubWindow>
#include <QPlainTextEdit>
#include <QPointer>
#include <QVBoxLayout>

#include "app/ChildWindow.h"
#include "app/EditorWindow.h"
#include "app/ListWindow.h"
#include "app/ToolIcons.h"
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
  using ChildWindow::restorePosition;

  int activations = 0;
  bool failOnUnload = false;

 protected:
  void unloading() override {
    if (failOnUnload) throw std::runtime_error("no place to keep it");
    savePosition();
  }
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
  window->showChild();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(window->place(), (TwipRect{0, 0, 1605, 4800})) << "to the nearest pixel";
  window->setCaption("Scan: b");
  EXPECT_EQ(frameOf(*window)->windowTitle(), "Scan: b");
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Scan: a"), nullptr);
  EXPECT_EQ(WindowRegistry::instance().findByCaption("Scan: b"), window);
}

TEST_F(ChildWindowTest, PlacesRoundTripAndStayWithinReach) {
  auto* window = new Child("Placed");
  window->showChild();
  const int width = mv::pixelsToTwips(frame.mdiArea().viewport()->width());
  const struct {
    TwipRect set, got;
  } cases[] = {
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
  window->unload();
  EXPECT_EQ(value("select wtop from win_pos where wname = \"Kept\""), "150") << "minimised: the place before stays";
}

TEST_F(ChildWindowTest, IsToldOnceWhenItBecomesActive) {
  auto* one = new Child("one");
  auto* two = new Child("two");
  one->showChild();
  two->showChild();
  two->showChild();
  EXPECT_EQ(two->activations, 1);
  // As when the user goes to another program and comes back.
  frame.mdiArea().setActiveSubWindow(nullptr);
  frame.mdiArea().setActiveSubWindow(frameOf(*two));
  EXPECT_EQ(two->activations, 1);
  frame.mdiArea().setActiveSubWindow(frameOf(*one));
  EXPECT_EQ(one->activations, 2);
  one->unload();
  EXPECT_EQ(two->activations, 2) << "the next window takes over";
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
    addButton("Edit", "Edit it", mv::toolIcon("edit"), [] { throw std::runtime_error("edit failed"); });
    load();
  }
  using ListWindow::chosenId;
  using ListWindow::chosenRow;
  using ListWindow::list;

  int edited = 0;
  int deleted = 0;
  int fills = 0;

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

  TagList* window;
};

TEST_F(ListWindowTest, AFailingButtonIsReported) {
  click(window, "Edit");
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].text, "An error has occured\r\n0\r\nedit failed\r\nListWindow\r\n");
}

TEST_F(ListWindowTest, RemembersTheChosenRowOverRebuilds) {
  EXPECT_EQ(window->chosenId(), 0);
  clickRow(window->list(), 1);
  QTest::mouseClick(window->list().viewport(), Qt::LeftButton, Qt::NoModifier,
                    QPoint(10, window->list().viewport()->height() - 5));
  EXPECT_EQ(window->chosenId(), 902) << "beside the rows nothing is unchosen";

  mv::gDatabase.execute("delete from valid_tag where id = 901");
  window->buildWorkingLists("init");
  EXPECT_EQ(window->chosenRow(), 0);
  EXPECT_EQ(window->list().selectedRows(), std::vector<int>({0}));
  mv::gDatabase.execute("delete from valid_tag where id = 902");
  window->buildWorkingLists("init");
  EXPECT_EQ(window->chosenId(), 0);
  EXPECT_TRUE(window->list().selectedRows().empty());
}

TEST_F(ListWindowTest, ARebuildKeepsTheOrderThatTheWindowWants) {
  auto* sorted = new TagList(true);
  sorted->showChild();
  for (TagList* each : {window, sorted}) {
    clickHeader(each->list(), 0);
    clickHeader(each->list(), 0);
    each->buildWorkingLists("init");
  }
  EXPECT_EQ(columnTexts(window->list()), std::vector<QString>({"b", "a", "c"}));
  EXPECT_EQ(columnTexts(sorted->list()), std::vector<QString>({"c", "b", "a"}));
}

TEST_F(ListWindowTest, KeysAndDoubleClickReachTheSubclass) {
  clickRow(window->list(), 2);
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
  EXPECT_EQ(frame.clipboardEnabled, true);
  auto* other = new Child("Other");
  other->showChild();
  WindowRegistry::instance().markRefreshPending("Tags");
  mv::gDatabase.execute("delete from valid_tag where id > 900");
  EXPECT_EQ(window->fills, 1);
  window->showChild();
  EXPECT_EQ(window->fills, 2);
  EXPECT_EQ(frame.clipboardEnabled, false) << "an empty list";
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
  int accepts = 0;
  int applies = 0;
  int others = 0;
  int* cancels = nullptr;

 protected:
  void initWindow() override {}
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
  void key(QWidget* widget, Qt::Key which) {
    widget->setFocus();
    QTest::keyClick(widget, which);
  }

  int cancels = 0;
  QPointer<Editor> editor;
};

TEST_F(EditorWindowTest, OkClosesOnlyWhenTheContentsAreSaved) {
  click(editor, "btnApply");
  EXPECT_EQ(editor->applies, 1);
  for (const bool failing : {false, true}) {
    editor->good = editor->failing = failing;
    click(editor, "btnOK");
    EXPECT_EQ(dialogs.messages.size(), failing ? 1U : 0U);
    EXPECT_TRUE(editor->isVisible());
  }
  editor->failing = false;
  click(editor, "btnOK");
  EXPECT_TRUE(goes(editor));
  EXPECT_EQ(cancels, 0);
}

TEST_F(EditorWindowTest, TheCloseBoxIsNoCancel) {
  frameOf(*editor)->close();
  EXPECT_TRUE(goes(editor));
  EXPECT_EQ(cancels, 0);
}

TEST_F(EditorWindowTest, EnterIsOkExceptWhereItMeansSomethingElseAndEscapeIsCancel) {
  editor->good = false;
  key(editor->line, Qt::Key_Return);
  key(editor->line, Qt::Key_Enter);
  EXPECT_EQ(editor->accepts, 2);
  key(editor->text, Qt::Key_Return);
  EXPECT_EQ(editor->text->toPlainText(), "\n");
  key(editor->other, Qt::Key_Return);
  EXPECT_EQ(editor->others, 1);
  control<QPushButton>(editor, "btnOK").setEnabled(false);
  key(editor->line, Qt::Key_Return);
  EXPECT_EQ(editor->accepts, 2);
  key(editor->line, Qt::Key_Escape);
  EXPECT_EQ(cancels, 1);
  EXPECT_TRUE(goes(editor));
}

}  // namespace
