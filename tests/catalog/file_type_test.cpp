// The file-type list and its editor, worked by clicks and keys.

#include <QClipboard>
#include <QGuiApplication>

#include "catalog_windows/frmFileTypeChild.h"
#include "catalog_windows/frmFileTypeManager.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

class FileTypes : public WindowTest {
 protected:
  FileTypes() {
    mv::gDatabase.execute("delete from valid_filetypes");
    add({{"gif", "Pictures", "no", "yes"}, {"jpg", "Photographs", "yes", "no"}, {"zip", "Archives", "yes", "yes"}});
    manager = mv::showSingle<mv::frmFileTypeManager>();
  }

  static void add(const std::vector<RowValues>& types) {
    insert("valid_filetypes (name, description, can_delete, download_by_default)", types);
  }
  mv::ListView& list() const { return control<mv::ListView>(manager, "lvwFiletypes"); }
  void choose(const char* name) const { clickRow(list(), list().findRow(0, QString::fromLatin1(name))); }

  static mv::frmFileTypeChild* editor() { return find<mv::frmFileTypeChild>(); }
  static QLineEdit& extension() { return control<QLineEdit>(editor(), "txtFileTypeExtention"); }
  static QLineEdit& description() { return control<QLineEdit>(editor(), "txtFiletypeDescription"); }

  mv::frmFileTypeChild* openEditorOf(const char* name) const {
    choose(name);
    click(manager, "Edit");
    return editor();
  }
  std::string row(const std::string& name) const {
    return value(
        "select name || '|' || description || '|' || can_delete || '|' || download_by_default from valid_filetypes "
        "where name = '" +
        name + "'");
  }

  mv::frmFileTypeManager* manager = nullptr;
};

TEST_F(FileTypes, ANewTypeIsTypedSavedAndListedAtTheNextActivation) {
  click(manager, "New");
  ASSERT_TRUE(editor());
  EXPECT_FALSE(control<QAbstractButton>(editor(), "btnOK").isEnabled());
  QTest::keyClicks(&extension(), ".m.4a");
  QTest::keyClicks(&description(), "\"Sound\", 4.0");
  click(editor(), "chkDownloadByDefault");
  QTest::keyClick(&description(), Qt::Key_Return);
  EXPECT_FALSE(editor());
  EXPECT_EQ(row("m4a"), "m4a|Sound, 4.0|yes|yes");
  manager->showChild();
  EXPECT_TRUE(waitFor([&] { return list().findRow(0, "m4a") == 2; }));
}

TEST_F(FileTypes, TheExtensionBoxTakesNoPeriodAndMustNotBeEmpty) {
  click(manager, "New");
  QTest::keyClicks(&extension(), "jpeg");
  extension().selectAll();
  QTest::keyClick(&extension(), '.');
  EXPECT_EQ(extension().selectedText(), "jpeg") << "the key does not even replace the selection";

  QGuiApplication::clipboard()->setText(".tar.gz");
  extension().paste();
  EXPECT_EQ(extension().text(), "targz");
  extension().clear();
  QTest::keyClick(&extension(), Qt::Key_Return);
  EXPECT_TRUE(editor());
  QTest::keyClick(&extension(), Qt::Key_Escape);
  EXPECT_FALSE(editor());
  EXPECT_EQ(count("valid_filetypes"), 3);
}

TEST_F(FileTypes, AnExtensionOfAnotherRecordIsRefusedInBothModes) {
  choose("jpg");
  for (const char* button : {"New", "Edit"}) {
    click(manager, button);
    ASSERT_TRUE(editor());
    extension().setText("ZIP");
    click(editor(), "btnOK");
    EXPECT_EQ(lastMessage(), "Morvane2000: This Extension is already in the database.");
    ASSERT_TRUE(editor());
    EXPECT_EQ(value("select group_concat(name) from valid_filetypes"), "gif,jpg,zip");
    editor()->unload();
    manager->showChild();
    choose("jpg");
  }
}

TEST_F(FileTypes, EditShowsTheRecordAndWritesItsOwnRow) {
  ASSERT_TRUE(openEditorOf("gif"));
  EXPECT_EQ(editor()->caption(), "Edit: gif");
  EXPECT_EQ(description().text(), "Pictures");
  EXPECT_TRUE(control<QCheckBox>(editor(), "chkDownloadByDefault").isChecked());

  extension().setText("GIF");
  description().setText("A \"pasted\" quote");
  click(editor(), "chkDownloadByDefault");
  click(editor(), "btnOK");
  EXPECT_FALSE(editor());
  EXPECT_TRUE(dialogs.messages().empty());
  EXPECT_EQ(row("gif"), "GIF|A \"pasted\" quote|no|no");
  EXPECT_EQ(count("valid_filetypes"), 3);
}

TEST_F(FileTypes, ARecordDeletedMeanwhileIsNotWrittenAndTheTextIsKept) {
  ASSERT_TRUE(openEditorOf("jpg"));
  manager->showChild();
  choose("jpg");
  click(manager, "Delete");
  description().setText("kept");
  click(editor(), "btnOK");
  EXPECT_EQ(lastMessage(), "Morvane2000: This filetype has been deleted meanwhile. It was not saved.");
  ASSERT_TRUE(editor());
  EXPECT_EQ(description().text(), "kept");
  EXPECT_EQ(count("valid_filetypes"), 2);
}

TEST_F(FileTypes, DeleteTakesTheTypeOutOfEverySiteUnlessItIsBuiltIn) {
  const std::string site = std::to_string(addSite("site.example", "/x", {"jpg", "zip"}));
  const std::string jpg = value("select id from valid_filetypes where name = 'jpg'");
  insert("site_paths", {{site, jpg, "/p"}, {site, "999", "/q"}});

  choose("jpg");
  QTest::keyClick(&list(), Qt::Key_Delete);
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"gif", "zip"}));
  EXPECT_EQ(row("jpg"), "");
  EXPECT_EQ(count("site_filetype_xref", "file_type_id = " + jpg), 0);
  EXPECT_EQ(count("site_filetype_xref"), 1);
  EXPECT_EQ(value("select path from site_paths"), "/q");

  // Nothing is chosen any more.
  click(manager, "Delete");
  choose("gif");
  click(manager, "Delete");
  ASSERT_EQ(dialogs.messages().size(), 2u);
  EXPECT_EQ(dialogs.messages()[0].text, "Please select a filetype to delete. ");
  EXPECT_EQ(dialogs.messages()[1].text, "You cannot delete this filetype");
  EXPECT_EQ(count("valid_filetypes"), 2);
}

TEST_F(FileTypes, ARebuildKeepsTheOrderChosenByAHeaderAndSelectsNothing) {
  clickHeader(list(), 1);
  choose("zip");
  add({{"htm", "Documents", "yes", "no"}});
  manager->buildWorkingLists("init");
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"zip", "htm", "jpg", "gif"}));
  click(manager, "Edit");
  EXPECT_FALSE(editor());
}

}  // namespace
