// The download window, driven as its user and the other windows drive it.

#include <QBuffer>
#include <QImage>
#include <QPointer>

#include "desktop/PictureDisplay.h"
#include "download/DownloadTest.h"
#include "download_windows/frmDownload.h"
#include "testkit/Controls.h"

namespace {

using namespace mvtest;
using mv::frmDownload;

class DownloadWindowTest : public DownloadTest<WindowTest> {
 protected:
  DownloadWindowTest() : window(new frmDownload) {
    prepare(window->process());
    window->setCaption("Download: " + QString::fromStdString(site.host()));
    window->showChild();
  }

  QString text(const char* label) const { return textOf(window, label); }

  QPointer<frmDownload> window;
};

TEST_F(DownloadWindowTest, ShowsTheStateOfItsProcess) {
  EXPECT_EQ(text("lblFilesInQueue"), "Queue:");
  EXPECT_NEAR(window->place().height, mv::kCollapsedHeight, mv::kTwipsPerPixel);
  addLink("127.0.0.1:1/closed.jpg", "jpg");
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return text("lblInfoErrorCount") == "Errors: 1"; }));
  EXPECT_EQ(text("lblInfoErrorFile"), "File: closed.jpg");
  EXPECT_TRUE(waitFor([this] { return text("lblFilesInQueue") == "Queue: 50"; }));
}

TEST_F(DownloadWindowTest, ThePreviewShowsTheLastPictureOnceItIsLookedAt) {
  QImage picture(20, 10, QImage::Format_RGB32);
  picture.fill(Qt::red);
  QByteArray png;
  QBuffer buffer(&png);
  picture.save(&buffer, "PNG");
  addFile("/one.png", png.toStdString(), "png");
  addFile("/two.png", png.toStdString(), "png");
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  auto* preview = window->findChild<mv::PictureDisplay*>("Gear1");
  EXPECT_EQ(preview->picturePath(), "");

  click(window, "btnDetails");
  EXPECT_FALSE(window->DetailsCollapsed());
  EXPECT_EQ(preview->picturePath(), "");  // the tab "Links" is in front
  control<QTabWidget>(window, "SSTab1").setCurrentIndex(1);
  EXPECT_EQ(preview->picturePath(), path("two.png"));
  ASSERT_TRUE(waitFor([&] { return preview->hasPicture(); }));

  addFile("/three.png", png.toStdString(), "png");
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(preview->picturePath(), path("three.png"));
}

TEST_F(DownloadWindowTest, ClosingTheSiteWhileAFileIsSavedLeavesNoPartOfIt) {
  setSite("upper_limit = 100");
  addFile("/large.bin", std::string(std::size_t{16} << 20, 'x'));
  const BodiesInMemory bodies;
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, [this, &look] {
    if (window->process().status().received.value_or(0) == 0) return;
    look.stop();
    endForGood(window);
  });
  look.start(0);
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return window.isNull(); }));
  EXPECT_TRUE(savedFiles().empty());
  EXPECT_FALSE(allDone());
}

}  // namespace
