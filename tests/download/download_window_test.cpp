// The download window, driven as its user and the other windows drive it.

#include <QBuffer>
#include <QImage>
#include <QMenu>
#include <QPointer>
#include <QProgressBar>
#include <QScopeGuard>
#include <QTest>
#include <QTreeView>
#include <thread>

#include "desktop/Browser.h"
#include "desktop/PictureDisplay.h"
#include "download/DownloadTest.h"
#include "download_windows/frmDownload.h"
#include "testkit/Controls.h"
#include "testkit/LoopbackServer.h"

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

// The server sends a part, and then nothing for a while.
TEST_F(DownloadWindowTest, ShowsHowMuchOfAFileHasArrivedWhileItArrives) {
  const std::string part(40'000, 'x');
  LoopbackServer server([&](std::string_view, Reply& reply) {
    reply.text = "HTTP/1.1 200 OK\r\nContent-Type: image/jpeg\r\nContent-Length: 100000\r\n\r\n";
    reply.body = part;
    reply.after = AfterReply::Hold;
  });
  std::thread serving([&] { server.run(); });
  const auto stopped = qScopeGuard([&] {
    server.stop();
    serving.join();
  });
  addLink("127.0.0.1:" + std::to_string(server.port()) + "/slow.jpg", "jpg");
  window->initWindow();
  EXPECT_TRUE(waitFor([this] { return text("lblInfoBytesReceived") == "Received: 40000"; }));
  EXPECT_EQ(text("lblInfoBytesLeft"), "Left: 60000");
  const auto& bar = control<QProgressBar>(window, "pbarSave");
  EXPECT_NEAR(static_cast<double>(bar.value()) / bar.maximum(), 0.4, 0.02);
  EXPECT_FALSE(allDone());
  endForGood(window);
}

TEST_F(DownloadWindowTest, TheFootSaysWhatCameOfTheFiles) {
  setSite("lower_limit = 1");
  addFile("/good.jpg", std::string(2000, 'g'));
  addFile("/small.jpg", "s");
  addFile("/there.jpg", std::string(2000, 't'));
  write("there.jpg", "mine");
  addLink("127.0.0.1:1/closed.jpg", "jpg");
  window->initWindow();
  EXPECT_FALSE(control<QPushButton>(window, "btnDetails").isVisible() &&
               !control<QPushButton>(window, "btnDetails").icon().isNull());
  EXPECT_TRUE(waitFor([this] {
    return text("lblState") == "1 file saved, 1 there already, 1 too small, 1 failed. Nothing waits.";
  })) << qPrintable(text("lblState"));
  EXPECT_FALSE(control<QPushButton>(window, "btnDetails").icon().isNull()) << "an error that nobody has seen";
  click(window, "btnDetails");
  EXPECT_TRUE(control<QPushButton>(window, "btnDetails").icon().isNull());
}

TEST_F(DownloadWindowTest, TheFootOfASiteWithoutFilesExpectsNone) {
  window->initWindow();
  EXPECT_TRUE(waitFor([this] { return text("lblState") == "No new file. Nothing waits."; }))
      << qPrintable(text("lblState"));
}

TEST_F(DownloadWindowTest, TheFootSaysNothingWaitsOnlyWhenNoStoredFileDoes) {
  setSite("lower_limit = 0, pages_to_scan = 2");
  for (const char* name : {"/a.jpg", "/b.jpg", "/c.jpg", "/d.jpg", "/e.jpg"}) addFile(name, std::string(2000, 'x'));
  QStringList said;
  window->initWindow();
  EXPECT_TRUE(waitFor([&] {
    said << text("lblState");
    return said.last() == "5 files saved. Nothing waits.";
  })) << qPrintable(said.last());
  said.removeDuplicates();
  EXPECT_TRUE(said.contains("No file yet. At least 2 files wait.")) << qPrintable(said.join('\n'));
  EXPECT_EQ(said.filter("Nothing waits.").size(), 1) << qPrintable(said.join('\n'));
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

  QStringList opened;
  mv::setBrowserOpener([&opened](const QString& address) {
    opened << address;
    return true;
  });
  const auto reset = qScopeGuard([] { mv::setBrowserOpener({}); });
  QTest::mouseDClick(preview, Qt::LeftButton);
  QTest::keyClick(preview, Qt::Key_Return);
  const QString file = "file://" + QString::fromStdString(path("three.png"));
  EXPECT_EQ(opened, QStringList({file, file}));
}

// The rows of a round go with its end; the way to the files stays.
TEST_F(DownloadWindowTest, AnEmptyListLeadsToTheFolder) {
  window->initWindow();
  auto& list = control<QTreeView>(window, "lvwLinks");
  ASSERT_EQ(list.model()->rowCount(), 0);
  Q_EMIT list.customContextMenuRequested({5, 5});
  const auto* menu = list.findChild<QMenu*>({}, Qt::FindDirectChildrenOnly);
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->actions().size(), 1);
  EXPECT_EQ(menu->actions()[0]->objectName(), "mnuRowFolder");
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
