// The tag list and its editor, worked by clicks and keys.

#include "frmNewTag.h"
#include "scan_windows/frmTagManager.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

class Tags : public WindowTest {
 protected:
  Tags() {
    mv::gDatabase.execute("delete from valid_tag");
    insert("valid_tag", {{"3", "<a href="}, {"20", "<IMG SRC="}});
    manager = mv::showSingle<mv::frmTagManager>();
  }

  mv::ListView& list() const { return control<mv::ListView>(manager, "lvwTags"); }
  static mv::frmNewTag* editor() { return find<mv::frmNewTag>(); }
  static QLineEdit& box() { return control<QLineEdit>(editor(), "txtTagName"); }
  void expectMessage(const char* title) const {
    ASSERT_EQ(dialogs.messages().size(), 1u);
    EXPECT_EQ(dialogs.messages()[0].title, title);
  }
  std::string tag(int id) const { return value("select tag from valid_tag where id = " + std::to_string(id)); }

  mv::frmTagManager* manager = nullptr;
};

TEST_F(Tags, ANewTagNeedsATextAndIsListedInTheOrderOfTheIds) {
  click(manager, "New");
  click(editor(), "cmdOK");
  expectMessage("No Tag Text Provided");
  ASSERT_TRUE(editor());
  EXPECT_EQ(editor()->caption(), "New Tag");
  QTest::keyClicks(&box(), " data-\"src\"= ");
  QTest::keyClick(&box(), Qt::Key_Return);
  EXPECT_FALSE(editor());
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"<a href=", "<IMG SRC=", " data-\"src\"= "}));
  EXPECT_EQ(tag(list().cell(2, 1).toInt()), " data-\"src\"= ");
}

TEST_F(Tags, AStarThatMakesNoTagIsRefusedWithAReason) {
  click(manager, "New");
  EXPECT_TRUE(control<QLabel>(editor(), "lblKinds").isVisible());
  for (const char* bad : {"<a *", "<a * * href=", "<a * href"}) {
    box().setText(bad);
    click(editor(), "cmdOK");
    ASSERT_TRUE(editor()) << bad;
    EXPECT_EQ(box().text(), bad);
  }
  ASSERT_EQ(dialogs.messages().size(), 3U);
  EXPECT_EQ(dialogs.messages()[0].title, "No Tag With A Star");
  EXPECT_TRUE(dialogs.messages()[0].text.contains("the name of an attribute behind the star"));
  box().setText("<a * HREF=");
  click(editor(), "cmdOK");
  EXPECT_EQ(columnTexts(list()).back(), "<a * HREF=") << "as typed";
}

TEST_F(Tags, EnterGoesToTheButtonWithTheFocusAndElseToOK) {
  frame.activateWindow();
  for (const char* focused : {"cmdCancel", "txtTagName"}) {
    click(manager, "New");
    QTest::keyClicks(&box(), "data-src=");
    auto& target = control<QWidget>(editor(), focused);
    target.setFocus();
    QTest::keyClick(&target, Qt::Key_Enter);
    EXPECT_FALSE(editor());
    EXPECT_EQ(count("valid_tag"), focused == std::string("cmdCancel") ? 2 : 3);
  }
}

TEST_F(Tags, ADoubleClickEditsTheTag) {
  doubleClickRow(list(), 1);
  ASSERT_TRUE(editor());
  EXPECT_EQ(editor()->caption(), "Edit Tag: <IMG SRC=");
  ASSERT_TRUE(waitFor([] { return box().selectedText() == "<IMG SRC="; }));
  QTest::keyClicks(&box(), "<img src=");
  click(editor(), "cmdOK");
  EXPECT_EQ(tag(20), "<img src=");
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"<a href=", "<img src="}));
}

TEST_F(Tags, ATagDeletedMeanwhileIsNotWrittenAndTheTextIsKept) {
  doubleClickRow(list(), 0);
  ASSERT_TRUE(editor());
  mv::gDatabase.execute("delete from valid_tag where id = 3");
  box().setText("kept");
  click(editor(), "cmdOK");
  EXPECT_EQ(dialogs.messages().size(), 1u);
  ASSERT_TRUE(editor());
  EXPECT_EQ(box().text(), "kept");
  EXPECT_EQ(count("valid_tag"), 1);
}

TEST_F(Tags, WhatIsGoneOrUnmarkedIsNotChosen) {
  clickRow(list(), 0);
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, {10, list().viewport()->height() - 5});
  click(manager, "Edit");
  ASSERT_TRUE(editor()) << "a click beside the rows unchooses nothing";
  editor()->unload();
  mv::gDatabase.execute("delete from valid_tag");
  manager->buildWorkingLists("init");
  insert("valid_tag", {{"3", "<a href="}});
  manager->buildWorkingLists("init");
  click(manager, "Edit");
  EXPECT_FALSE(editor()) << "it was gone in between";
  clickRow(list(), 0);
  const QPoint row = middleOf(list(), 0);
  QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ControlModifier, row);
  click(manager, "Edit");
  EXPECT_FALSE(editor()) << "unmarked";
}

TEST_F(Tags, TheListIsRebuiltOnceAtTheNextActivationAndAFailureIsShown) {
  EXPECT_EQ(frame.clipboardEnabled, true);
  const auto comeBack = [this] {
    click(manager, "New");
    manager->showChild();
    return list().rowCount();
  };
  mv::gDatabase.execute("delete from valid_tag");
  EXPECT_EQ(comeBack(), 2);
  mv::WindowRegistry::instance().markRefreshPending(manager->caption());
  EXPECT_EQ(comeBack(), 0);
  EXPECT_EQ(frame.clipboardEnabled, false) << "an empty list";
  insert("valid_tag", {{"3", "<a href="}});
  EXPECT_EQ(comeBack(), 0) << "until it is told again";
  manager->buildWorkingLists("init");
  clickRow(list(), 0);
  mv::gDatabase.execute("alter table valid_tag rename to away");
  QTest::keyClick(&list(), Qt::Key_Delete);
  EXPECT_EQ(dialogs.messages().size(), 1u);
  mv::gDatabase.execute("alter table away rename to valid_tag");
}

TEST_F(Tags, DeleteActsAtOnceAndOnASelectionOnly) {
  click(manager, "Edit");
  EXPECT_FALSE(editor());
  clickRow(list(), 0);
  manager->buildWorkingLists("reset");
  EXPECT_EQ(list().rowCount(), 0);
  click(manager, "Delete");
  expectMessage("No Tag Selected");
  manager->buildWorkingLists("init");
  EXPECT_EQ(list().rowCount(), 2);

  clickRow(list(), 1);
  click(manager, "Delete");
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"<a href="}));
  EXPECT_EQ(tag(20), "");
  EXPECT_EQ(dialogs.messages().size(), 1u);
}

}  // namespace
