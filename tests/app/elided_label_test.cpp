// What a label shows of a text that has no room.

#include <gtest/gtest.h>

#include <QApplication>

#include "windows/ElidedLabel.h"

namespace {

using namespace mv;

const QString kUsual = "378 files saved, 12 there already, 9 too small, 2 failed. At least 50 files wait.";

TEST(ElidedLabel, ALineIsMeasuredAsItIsDrawn) {
  const QString blanks = "a line  broken twice";
  for (const char* text : {"a line\n\nbroken twice", "a line\t\tbroken twice", "a line  broken twice"}) {
    ElidedLabel label;
    label.setText(text);
    EXPECT_EQ(label.sizeHint(), QSize(label.fontMetrics().horizontalAdvance(blanks), label.fontMetrics().height()));
    label.resize(label.sizeHint());
    EXPECT_FALSE(label.isCut());
    label.resize(label.width() - 1, label.height());
    EXPECT_TRUE(label.isCut());
    EXPECT_EQ(label.text(), text);
  }
}

// Whatever it shows, its height stays, so that no window grows while it works.
TEST(ElidedLabel, TheUsualTextIsShownWholeInTheHeightThatIsAskedFor) {
  for (const int points : {9, 10, 11, 12})
    for (const int width : {230, 304, 410, 900}) {
      ElidedLabel label;
      label.setFont(QFont("Noto Sans", points));
      label.setUsualText(kUsual);
      const int height = label.heightForWidth(width);
      EXPECT_EQ(height % label.fontMetrics().lineSpacing(), 0);
      label.resize(width, height);
      for (const QString& text : {kUsual, QString("No file yet. Nothing waits."), QString()}) {
        label.setText(text);
        EXPECT_FALSE(label.isCut()) << points << " pt, " << width << ": " << qPrintable(text);
        EXPECT_EQ(label.heightForWidth(width), height);
      }
      label.setText(QString(100, u'w') + ' ' + QString(100'000, u'w'));
      EXPECT_TRUE(label.isCut());
    }
}

}  // namespace
