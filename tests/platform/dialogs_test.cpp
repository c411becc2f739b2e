#include "desktop/Dialogs.h"

#include <QApplication>
#include <QDir>
#include <QInputDialog>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include "FolderDialog.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using mv::FolderDialog;

// Runs `work` on the modal dialog that the calling test opens next.
template <class Dialog>
void whenOpen(std::function<void(Dialog&)> work) {
  QTimer::singleShot(0, [work] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    work(*dialog);
  });
}

TEST(DialogsTest, MessageShowsItsTextAsItStands) {
  whenOpen<QMessageBox>([&](QMessageBox& box) {
    EXPECT_EQ(box.text(), "<b>one</b>\ntwo");
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    QTest::keyClick(&box, Qt::Key_Return);
  });
  mv::showMessage(nullptr, "Title", "<b>one</b>\r\ntwo", mv::MessageIcon::Exclamation);
}

TEST(DialogsTest, BoxesSurviveTheirOwnerAndInputIsTextOrNothing) {
  auto* owner = new QWidget;
  whenOpen<QMessageBox>([&](QMessageBox&) { delete owner; });
  mv::showMessage(owner, "Title", "text", mv::MessageIcon::None);
  whenOpen<QInputDialog>([](QInputDialog& box) { QTest::keyClick(&box, Qt::Key_Return); });
  EXPECT_EQ(mv::askText(nullptr, "Title", "How many?", "3"), QString("3"));
  whenOpen<QInputDialog>([](QInputDialog& box) { QTest::keyClick(&box, Qt::Key_Escape); });
  EXPECT_EQ(mv::askText(nullptr, "Title", "How many?", "3"), std::nullopt);
}

class FolderDialogTest : public ::testing::Test {
 protected:
  FolderDialogTest() {
    QDir(root.path()).mkpath("alpha/beta");
    request.initialFolder = root.filePath("alpha/beta/not/yet/made");
  }

  QTemporaryDir root;
  mv::FolderRequest request;
};

TEST_F(FolderDialogTest, StartsAtTheNearestFolderAndTakesATypedOneOnlyWhenItExists) {
  whenOpen<FolderDialog>([&](FolderDialog& dialog) {
    auto& tree = control<QTreeView>(&dialog, "folders");
    EXPECT_EQ(tree.currentIndex().data().toString(), "beta");
    auto& line = control<QLineEdit>(&dialog, "path");
    EXPECT_EQ(line.text(), root.filePath("alpha/beta"));
    line.selectAll();
    QTest::keyClicks(&line, root.path() + "/alp");
    EXPECT_FALSE(control<QPushButton>(&dialog, "ok").isEnabled());
    QTest::keyClicks(&line, "ha/");
    EXPECT_EQ(tree.currentIndex().data().toString(), "alpha");
    EXPECT_EQ(line.text(), root.path() + "/alpha/") << "the tree does not rewrite what is being typed";
    QTest::keyClick(&line, Qt::Key_Return);
  });
  EXPECT_EQ(mv::browseForFolder(request), root.filePath("alpha")) << "without the trailing separator";
}

TEST_F(FolderDialogTest, MakesANewFolderAndIsCancelledByEscape) {
  whenOpen<FolderDialog>([&](FolderDialog& dialog) {
    const auto makeFolder = [&](const QString& name) {
      whenOpen<QInputDialog>([name](QInputDialog& box) {
        box.setTextValue(name);
        box.accept();
      });
      control<QPushButton>(&dialog, "newFolder").click();
    };
    makeFolder("../escaped");
    EXPECT_FALSE(QDir(root.filePath("alpha/escaped")).exists());
    EXPECT_TRUE(control<QLabel>(&dialog, "status").text().contains("cannot be made"));
    makeFolder("gamma");
    EXPECT_TRUE(QDir(root.filePath("alpha/beta/gamma")).exists());
    EXPECT_EQ(control<QTreeView>(&dialog, "folders").currentIndex().data().toString(), "gamma");
    dialog.accept();
  });
  EXPECT_EQ(mv::browseForFolder(request), root.filePath("alpha/beta/gamma"));

  whenOpen<FolderDialog>([&](FolderDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
  EXPECT_EQ(mv::browseForFolder(request), std::nullopt);
}

}  // namespace
