// The pictures of the toolbars in the palettes that desktops have, measured in the pixels that are drawn.

#include <gtest/gtest.h>

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QToolButton>
#include <cmath>
#include <map>
#include <vector>

#include "windows/ToolIcons.h"

namespace {

using namespace mv;

constexpr double kWanted = 3;   // of lines, WCAG 2.1, success criterion 1.4.11
constexpr double kFaint = 1.6;  // less is the tint of an area, behind which its outline tells the shape
constexpr int kSize = 384;      // so large that lines are areas
constexpr int kArea = 2000;     // pixels; fewer are blends along an edge
constexpr const char* kNames[] = {"new", "edit", "delete", "start", "stop", "connections", "expand", "updates", "help"};

struct Colours {
  const char* name;
  const char* ground;
  const char* text;
};

void PrintTo(const Colours& colours, std::ostream* out) { *out << colours.name; }

double luminance(QRgb colour) {
  const auto linear = [](int channel) {
    const double share = channel / 255.0;
    return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other) {
  const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
  return (light + 0.05) / (dark + 0.05);
}

void setColours(const Colours& colours) {
  QPalette palette;
  for (const auto role : {QPalette::Window, QPalette::Button}) palette.setColor(role, colours.ground);
  for (const auto role : {QPalette::WindowText, QPalette::ButtonText, QPalette::Text})
    palette.setColor(role, colours.text);
  QApplication::setPalette(palette);
}

class ToolIconsTest : public ::testing::TestWithParam<Colours> {
 protected:
  ToolIconsTest() { setColours(GetParam()); }
  ~ToolIconsTest() override { QApplication::setPalette(before_); }

  QRgb ground() const { return QColor(GetParam().ground).rgb(); }

  std::vector<QRgb> areas(const char* name) const {
    QImage image(kSize, kSize, QImage::Format_RGB32);
    image.fill(ground());
    QPainter painter(&image);
    painter.drawPixmap(0, 0, toolIcon(name).pixmap(QSize(kSize, kSize), 1.0));
    painter.end();
    std::map<QRgb, int> pixels;
    for (int y = 0; y < kSize; ++y)
      for (int x = 0; x < kSize; ++x) ++pixels[image.pixel(x, y)];
    std::vector<QRgb> result;
    for (const auto& [colour, number] : pixels)
      if (number >= kArea) result.push_back(colour);
    return result;
  }

 private:
  const QPalette before_ = QApplication::palette();
};

TEST_P(ToolIconsTest, EveryLineStandsOutFromWhatIsBehindIt) {
  for (const char* name : kNames) {
    std::vector<QRgb> lines;
    std::vector<QRgb> behind;
    for (const QRgb colour : areas(name)) (contrast(colour, ground()) < kFaint ? behind : lines).push_back(colour);
    EXPECT_FALSE(lines.empty()) << name;
    for (const QRgb line : lines)
      for (const QRgb area : behind)
        EXPECT_GE(contrast(line, area), kWanted)
            << name << ": " << qPrintable(QColor(line).name()) << " on " << qPrintable(QColor(area).name());
  }
}

INSTANTIATE_TEST_SUITE_P(Palettes, ToolIconsTest,
                         ::testing::Values(Colours{"light", "#efefef", "#000000"},
                                           Colours{"white", "#ffffff", "#202020"},
                                           Colours{"dark", "#31363b", "#eff0f1"}, Colours{"grey", "#505050", "#ffffff"},
                                           Colours{"high contrast", "#000000", "#ffff00"},
                                           Colours{"high contrast, light", "#ffffff", "#000000"}));

TEST(ToolIconsTest, AShownButtonFollowsThePaletteOfTheProgram) {
  const QPalette before = QApplication::palette();
  QToolButton button;
  button.setIcon(toolIcon("new"));
  button.setIconSize({24, 24});
  button.setAutoRaise(true);
  button.show();
  for (const Colours& colours : {Colours{"light", "#efefef", "#000000"}, Colours{"dark", "#31363b", "#eff0f1"}}) {
    setColours(colours);
    QApplication::processEvents();
    const QImage shown = button.grab().toImage();
    int clear = 0;
    for (int y = 0; y < shown.height(); ++y)
      for (int x = 0; x < shown.width(); ++x) clear += contrast(shown.pixel(x, y), shown.pixel(3, 3)) >= kWanted;
    EXPECT_GE(clear, 60) << colours.name << ": of the outline's pixels";
  }
  QApplication::setPalette(before);
}

TEST(ToolIconsTest, AnUnknownNameGivesAnEmptyIcon) { EXPECT_TRUE(toolIcon("no such picture").isNull()); }

}  // namespace
