// The picture viewer over real folders: stepping, following, deleting, and folders that change or are large.

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QImage>

#include "app/Events.h"
#include "base/Text.h"
#include "desktop/PictureDisplay.h"
#include "shell/frmPictureViewer.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mv;
using namespace mvtest;

class PictureViewerTest : public WindowTest {
 protected:
  PictureViewerTest() : pictures_(toQString(folder()) + "/pictures") { pictures_.mkpath("."); }

  QString add(const QString& name) {
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    EXPECT_TRUE(image.save(pictures_.filePath(name), "PNG"));
    return pictures_.filePath(name);
  }
  void addText(const QString& name) {
    QFile file(pictures_.filePath(name));
    EXPECT_TRUE(file.open(QFile::WriteOnly));
    file.write("no picture");
  }
  // Opens the viewer and a file in it.
  void open(const QString& path) {
    viewer_ = showSingle<frmPictureViewer>();
    frame.activateWindow();
    dialogs.nextFiles.push_back(path);
    click(viewer_, "cmdOpen");
  }
  static void saved(const QString& path) { Q_EMIT events().fileSaved(toUtf8(path)); }
  bool enabled(const char* button) { return mvtest::enabled(viewer_, button); }
  QString position() { return textOf(viewer_, "lblPosition"); }
  bool shows(const QString& name, const QString& where) {
    const QString path = pictures_.filePath(name);
    return waitFor([&] { return textOf(viewer_, "txtPicture") == path && position() == where; }, 5000);
  }
  void key(Qt::Key which) { QTest::keyClick(frame.windowHandle(), which); }

  QDir pictures_;
  frmPictureViewer* viewer_ = nullptr;
};

TEST_F(PictureViewerTest, StepsThroughTheFolderByButtonAndKey) {
  add("b.png");
  add("A.png");
  add("c.JPG");
  addText("d.png");
  addText("readme.txt");
  open(pictures_.filePath("b.png"));
  EXPECT_TRUE(dialogs.fileRequests[0].filter.contains("*.png"));
  ASSERT_TRUE(shows("b.png", "2 of 4"));
  ASSERT_TRUE(waitFor([&] { return control<PictureDisplay>(viewer_, "pictPicture").hasPicture(); }));

  click(viewer_, "cmdPrevious");
  EXPECT_TRUE(shows("A.png", "1 of 4"));
  EXPECT_FALSE(enabled("cmdPrevious"));
  viewer_->setFocus();
  key(Qt::Key_Left);
  EXPECT_TRUE(shows("A.png", "1 of 4"));
  control<QPushButton>(viewer_, "cmdNext").setFocus();
  for (int i = 0; i < 3; ++i) key(Qt::Key_Right);
  EXPECT_TRUE(shows("d.png", "4 of 4")) << "a damaged picture does not stop the walk";
  EXPECT_FALSE(enabled("cmdNext"));
  EXPECT_TRUE(enabled("cmdPrevious"));

  add("e.png");
  QFile::remove(pictures_.filePath("d.png"));
  key(Qt::Key_Right);
  EXPECT_TRUE(shows("e.png", "4 of 4")) << "the folder has changed meanwhile";
  key(Qt::Key_Escape);
  EXPECT_EQ(find<frmPictureViewer>(), nullptr);
  EXPECT_EQ(count("win_pos", "wname = 'Picture Viewer'"), 1);
}

TEST_F(PictureViewerTest, DeletesTheShownFileAfterAQuestion) {
  for (const char* name : {"1.png", "2.png", "3.png"}) add(name);
  open(pictures_.filePath("2.png"));
  ASSERT_TRUE(shows("2.png", "2 of 3"));
  viewer_->setFocus();
  key(Qt::Key_Delete);
  ASSERT_EQ(dialogs.questions.size(), 1u);
  EXPECT_TRUE(dialogs.questions[0].text.contains(pictures_.filePath("2.png")));
  EXPECT_TRUE(QFile::exists(pictures_.filePath("2.png"))) << "No was answered";

  dialogs.nextConfirmation = true;
  key(Qt::Key_Delete);
  EXPECT_TRUE(shows("3.png", "2 of 2"));
  EXPECT_FALSE(QFile::exists(pictures_.filePath("2.png")));
  QFile::remove(pictures_.filePath("3.png"));
  click(viewer_, "cmdDelete");
  EXPECT_TRUE(shows("1.png", "1 of 1")) << "it was gone already; the last one has a neighbour before it only";
  click(viewer_, "cmdDelete");
  EXPECT_TRUE(waitFor([&] { return position() == "No picture."; }));
  for (const char* button : {"cmdPrevious", "cmdNext", "cmdDelete"}) EXPECT_FALSE(enabled(button)) << button;
}

TEST_F(PictureViewerTest, FollowsTheLastSavedPicture) {
  viewer_ = showSingle<frmPictureViewer>(add("a.png"));
  EXPECT_TRUE(shows("a.png", ""));
  saved(pictures_.filePath("film.avi"));
  EXPECT_TRUE(shows("a.png", ""));
  saved(add("b.png"));
  EXPECT_TRUE(shows("b.png", ""));
  saved(pictures_.filePath("gone.png"));
  EXPECT_TRUE(shows("gone.png", "The file is not there any more."));

  click(viewer_, "cmdPrevious");
  EXPECT_TRUE(shows("b.png", "2 of 2"));
  EXPECT_FALSE(control<QCheckBox>(viewer_, "chkFollow").isChecked()) << "who looks around is not pulled away";
  saved(pictures_.filePath("a.png"));
  EXPECT_TRUE(shows("b.png", "2 of 2"));
  tick(control<QCheckBox>(viewer_, "chkFollow"));
  EXPECT_TRUE(shows("a.png", "1 of 2"));
}

TEST_F(PictureViewerTest, AFolderOfAHundredThousandFilesHoldsNothingUp) {
  // Links are quickly made; a file system allows one file some ten thousands.
  constexpr int kLinks = 20'000;
  QString picture;
  for (int i = 0; i < 100'000; ++i) {
    const QString name = QString("%1.png").arg(i, 6, 10, QChar('0'));
    if (i % kLinks == 0)
      picture = add(name);
    else
      ASSERT_EQ(link(qPrintable(picture), qPrintable(pictures_.filePath(name))), 0);
  }
  LoopMeter turn;
  open(pictures_.filePath("050000.png"));
  viewer_->setFocus();
  key(Qt::Key_Right);  // while the folder is read
  EXPECT_TRUE(shows("050001.png", "50002 of 100000"));
  EXPECT_LT(turn.longest, 60);
}

}  // namespace
