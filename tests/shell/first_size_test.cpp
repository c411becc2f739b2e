// Every window at the size that it opens with, with the fonts that desktops have: nothing in it is cut, scrolled or
// elided, and what is stored of it stays the laid-down size. Run at several scales.

#include <QApplication>
#include <QFontDatabase>

#include "CutControls.h"
#include "EveryWindow.h"

namespace {

using namespace mv;
using namespace mvtest;

struct Letters {
  const char* family;
  int points;
};

// For the test's name.
void PrintTo(const Letters& letters, std::ostream* out) { *out << letters.family << ' ' << letters.points; }

class FirstSizeTest : public EveryWindow, public ::testing::WithParamInterface<Letters> {
 protected:
  FirstSizeTest() : before_(QApplication::font()) {
    EXPECT_TRUE(QFontDatabase::families().contains(GetParam().family)) << "fonts of the test are not installed";
    QApplication::setFont(QFont(GetParam().family, GetParam().points));
    openMainWindow();
  }
  ~FirstSizeTest() override { QApplication::setFont(before_); }

  // Of a window as it stands.
  static void expectWhole(ChildWindow& window, const QSize& laidDown) {
    EXPECT_EQ(QSize(window.place().width, window.place().height), laidDown) << qPrintable(window.caption());
    const QStringList cut = cutControls(window);
    EXPECT_TRUE(cut.isEmpty()) << qPrintable(window.caption()) << " of " << window.width() << " x " << window.height()
                               << ":\n  " << qPrintable(cut.join("\n  "));
    const QWidget& frame = *window.parentWidget();
    std::printf("%-18s %2d  %-28s %4d x %4d  %s\n", GetParam().family, GetParam().points,
                qPrintable(window.caption().left(28)), frame.width(), frame.height(), cut.isEmpty() ? "whole" : "CUT");
  }

 private:
  QFont before_;
};

TEST_P(FirstSizeTest, NoWindowCutsWhatItShows) { lookAtEach(expectWhole); }

INSTANTIATE_TEST_SUITE_P(Fonts, FirstSizeTest,
                         ::testing::Values(Letters{"Noto Sans", 9}, Letters{"Noto Sans", 10}, Letters{"Noto Sans", 11},
                                           Letters{"Noto Sans", 12}, Letters{"DejaVu Sans", 10},
                                           Letters{"Cantarell", 11}));

}  // namespace
