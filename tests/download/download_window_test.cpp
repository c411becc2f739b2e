// The download window, driven as its user and the other windows drive it.

#include <QBuffer>
#include <QHeaderView>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>

#include "app/WindowRegistry.h"
#include "download/DownloadTest.h"
#include "download/frmDownload.h"
#include "platform/PictureDisplay.h"

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
  QTabWidget& tabs() { return *window->findChild<QTabWidget*>("SSTab1"); }
  void click(const char* button) { QTest::mouseClick(window->findChild<QPushButton*>(button), Qt::LeftButton); }
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

  click("btnDetails");
  EXPECT_FALSE(window->DetailsCollapsed());
  EXPECT_EQ(preview->picturePath(), "");  // the tab "Links" is in front
  tabs().setCurrentIndex(1);
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

TEST_F(DownloadWindowTest, AColumnSortsAscendingFirstWithOneFlagForTheList) {
  setSite("pages_to_scan = 3");
  for (const char* name : {"b", "c", "a"}) addLink(site.host() + "/" + name + ".jpg", "jpg");
  window->process().tmrOKToDownload.setInterval(600'000);
  window->initWindow();
  click("btnDetails");
  auto* list = window->findChild<QTreeView*>("lvwLinks");
  const auto sortBy = [&](int column) {
    const int x = list->header()->sectionViewportPosition(column) + 5;
    QTest::mouseClick(list->header()->viewport(), Qt::LeftButton, {}, QPoint(x, 5));
    std::string order;
    for (int row = 0; row < 3; ++row) order += window->process().lvwLinks.row(row).fileName[0];
    return order;
  };
  QStringList titles;
  for (int column = 0; column < 7; ++column)
    titles << window->process().lvwLinks.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
  EXPECT_EQ(titles, QStringList({"Done", "ID", "URL", "Username", "Password", "File Name", "File Type"}));
  EXPECT_EQ(sortBy(1), "bca");
  EXPECT_EQ(sortBy(2), "cba");
  EXPECT_EQ(sortBy(2), "abc");
}

TEST_F(DownloadWindowTest, ComesBackExpandedWhenItWasLeftSo) {
  window->initWindow();
  click("btnDetails");
  EXPECT_EQ(window->place().height, mv::kExpandedHeight);
  closeForGood();
  ASSERT_TRUE(waitFor([this] { return window.isNull(); }));

  window = new frmDownload;
  prepare(window->process());
  window->setCaption(title());
  window->showChild();
  EXPECT_TRUE(window->DetailsCollapsed());
  window->initWindow();
  EXPECT_FALSE(window->DetailsCollapsed());
  EXPECT_EQ(window->findChild<QPushButton*>("btnDetails")->text(), "Hide Details");
}

}  // namespace
