// The base of the windows, in a real frame with a real database. The bases of lists and editors are tested with them.

#include <QMdiSubWindow>
#include <QPointer>
#include <QVBoxLayout>

#include "testkit/Controls.h"
#include "testkit/Fixture.h"
#include "windows/ChildWindow.h"

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
  EXPECT_EQ(window->place(), (TwipRect{0, 0, 1600, 4800})) << "as laid down, whatever its contents took";
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
  ASSERT_EQ(dialogs.messages().size(), 1U);
  EXPECT_TRUE(dialogs.messages()[0].text.contains("no place to keep it"));
  EXPECT_TRUE(goes(window));
}

}  // namespace
