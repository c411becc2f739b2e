#include <sys/stat.h>
#include <unistd.h>

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QtEndian>
#include <memory>

#include "desktop/PictureDisplay.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using mv::PictureDisplay;

class PictureTest : public ::testing::Test {
 protected:
  PictureTest() : display(std::make_unique<PictureDisplay>()) {
    display->resize(200, 100);
    display->show();
  }

  std::string picture(const QString& name, QSize size, const QColor& color) const {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    const QString path = folder.filePath(name);
    EXPECT_TRUE(image.save(path));
    return path.toStdString();
  }
  std::string file(const QString& name, const QByteArray& content) const {
    QFile written(folder.filePath(name));
    EXPECT_TRUE(written.open(QFile::WriteOnly));
    written.write(content);
    return written.fileName().toStdString();
  }
  void load(const std::string& path) {
    QSignalSpy loaded(display.get(), &PictureDisplay::loaded);
    display->setPicture(path);
    ASSERT_TRUE(waitFor([&] { return loaded.size() == 1; }));
  }
  QColor pixel(int x, int y) const { return display->grab().toImage().pixelColor(x, y); }

  QTemporaryDir folder;
  std::unique_ptr<PictureDisplay> display;
};

TEST_F(PictureTest, ShowsSmallPicturesAsTheyAreAndShrinksLargeOnes) {
  load(picture("small.png", {40, 20}, Qt::red));
  EXPECT_EQ(display->Zoom(), 100);
  EXPECT_EQ(pixel(100, 50), QColor(Qt::red));
  EXPECT_NE(pixel(60, 50), QColor(Qt::red));

  load(picture("large.png", {1000, 1000}, Qt::blue));
  EXPECT_EQ(display->Zoom(), 0);
  EXPECT_EQ(pixel(55, 5), QColor(Qt::blue)) << "100 x 100 in the middle";
  EXPECT_NE(pixel(45, 50), QColor(Qt::blue));
}

TEST_F(PictureTest, WhatIsNoPictureIsAShortText) {
  // A well-formed header of a picture that would need 1.6 GB.
  QByteArray huge = QByteArray::fromStdString(readFile(picture("tiny.bmp", {1, 1}, Qt::red)));
  qToLittleEndian<qint32>(20'000, huge.data() + 18);
  qToLittleEndian<qint32>(20'000, huge.data() + 22);

  // Nobody writes into the one, the other never ends.
  const std::string pipe = folder.filePath("pipe.jpg").toStdString();
  const std::string endless = folder.filePath("endless.jpg").toStdString();
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  ASSERT_EQ(::symlink("/dev/zero", endless.c_str()), 0);

  for (const std::string& path : {file("text.jpg", "no picture at all"), file("empty.png", ""), file("huge.bmp", huge),
                                  folder.filePath("missing.gif").toStdString(), endless, pipe}) {
    load(path);
    EXPECT_FALSE(display->hasPicture()) << path;
    EXPECT_EQ(display->picturePath(), path);
  }
}

TEST_F(PictureTest, ANewerPictureOvertakesAnOlderOneAndTheWindowMayGo) {
  const std::string slow = picture("slow.png", {3000, 3000}, Qt::green);
  const std::string fast = picture("fast.png", {40, 40}, Qt::red);
  QSignalSpy loaded(display.get(), &PictureDisplay::loaded);
  display->setPicture(slow);
  display->setPicture(fast);
  ASSERT_TRUE(waitFor([&] { return !loaded.isEmpty(); }));
  QThreadPool::globalInstance()->waitForDone();
  QCoreApplication::processEvents();
  EXPECT_EQ(pixel(100, 50), QColor(Qt::red));
  EXPECT_EQ(loaded.size(), 1);

  display->setPicture(slow);
  display.reset();
  QThreadPool::globalInstance()->waitForDone();
  QCoreApplication::processEvents();
}

}  // namespace
