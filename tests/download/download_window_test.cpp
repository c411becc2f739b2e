// The download window, driven as its user and the other windows drive it.

#include <QBuffer>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QTabWidget>

#include "app/WindowRegistry.h"
#include "download/DownloadTest.h"
#include "download/frmDownload.h"
#include "platform/PictureDisplay.h"
#include "support/Controls.h"

namespace {

using mv::frmDownload;
using mvtest::waitFor;

class DownloadWindowTest : public mvtest::DownloadTest<mvtest::WindowTest> {
 protected:
  DownloadWindowTest() : window(new frmDownload) {
    frame.resize(900, 700);
    frame.show();
    prepare(window->process());
    window->setCaption(title());
    window->showChild();
  }

  QString title() const { return "Download: " + QString::fromStdString(site.host()); }
  QString text(const char* label) const { return window->findChild<QLabel*>(label)->text(); }
  void closeForGood() {
    mv::gClosingProcesses = true;
    window->unload();
    mv::gClosingProcesses = false;
  }

  QPointer<frmDownload> window;
};

TEST_F(DownloadWindowTest, ShowsItsDesignTextsUntilItIsInitialised) {
  const struct {
    const char *label, *text;
  } texts[] = {{"lblFile", "File:"},
               {"lblFilesInQueue", "Queue:"},
               {"lblFilesProcessed", "Processed:"},
               {"lblSiteId", "Please Wait..."},
               {"lblInfoSize", "Size (In Kilobytes) :"},
               {"lblInfoBytesReceived", "Received:"},
               {"lblInfoBytesLeft", "Left:"},
               {"lblInfoErrorFile", "File:"},
               {"lblInfoErrorReason", "Code:"},
               {"lblInfoErrorTime", "Time:"},
               {"lblInfoErrorCount", "Total Errors:"}};
  for (const auto& t : texts) EXPECT_EQ(text(t.label), t.text) << t.label;
  EXPECT_NEAR(window->place().height, mv::kCollapsedHeight, mv::kTwipsPerPixel);
  QStringList titles;
  for (int column = 0; column < 7; ++column)
    titles << window->process().lvwLinks.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  EXPECT_EQ(titles, QStringList({"Done", "ID", "URL", "Username", "Password", "File Name", "File Type"}));

  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return text("lblFilesInQueue") == "Queue: 50"; }));
  EXPECT_EQ(text("lblFilesProcessed"), "Processed: 0");
  EXPECT_EQ(text("lblSiteId"), QString::number(siteId));
  EXPECT_FALSE(window->findChild<QLabel*>("lblSiteId")->isVisible());
  EXPECT_EQ(mv::WindowRegistry::instance().findByCaption(title()), window);
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

  mvtest::click(window, "btnDetails");
  EXPECT_FALSE(window->DetailsCollapsed());
  EXPECT_EQ(preview->picturePath(), "");  // the tab "Links" is in front
  mvtest::control<QTabWidget>(window, "SSTab1").setCurrentIndex(1);
  EXPECT_EQ(preview->picturePath(), path("two.png"));
  ASSERT_TRUE(waitFor([&] { return preview->hasPicture(); }));
  EXPECT_EQ(preview->Zoom(), 100);

  addFile("/three.png", png.toStdString(), "png");
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(preview->picturePath(), path("three.png"));
}

TEST_F(DownloadWindowTest, ClosedByItsUserItHidesAndGoesOn) {
  window->initWindow();
  window->closeRequested();
  EXPECT_FALSE(window->isChildVisible());
  addFile("/a.jpg", "a");
  ASSERT_TRUE(waitFor([this] { return allDone(); }));
  EXPECT_EQ(mvtest::readFile(path("a.jpg")), "a");

  closeForGood();
  EXPECT_EQ(mv::WindowRegistry::instance().findByCaption(title()), nullptr);
  EXPECT_TRUE(waitFor([this] { return window.isNull(); }));
  EXPECT_EQ(count("win_pos", "wname = " + mv::quoted(title().toStdString())), 1);
}

TEST_F(DownloadWindowTest, ClosingTheSiteWhileAFileIsSavedLeavesNoPartOfIt) {
  setSite("upper_limit = 100");
  addFile("/large.bin", std::string(std::size_t{16} << 20, 'x'));
  QObject::connect(&window->process(), &mv::Process::viewChanged, [this] {
    const std::string& received = window->process().receivedText();
    if (received != "Received:" && received != "Received: 0") closeForGood();
  });
  window->initWindow();
  ASSERT_TRUE(waitFor([this] { return window.isNull(); }));
  EXPECT_TRUE(savedFiles().empty());
  EXPECT_FALSE(allDone());
}

}  // namespace
