// The form list, the form editor and the field editor, worked by clicks and keys.

#include "forms_windows/frmFormManager.h"
#include "frmNewField.h"
#include "frmNewForm.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

class Forms : public WindowTest {
 protected:
  Forms() { manager = mv::showSingle<mv::frmFormManager>(); }

  mv::ListView& list() const { return control<mv::ListView>(manager, "lvwForms"); }
  void choose(const char* name) const { clickRow(list(), list().findRow(0, QString::fromUtf8(name))); }
  static mv::frmNewForm* form() { return find<mv::frmNewForm>(); }
  static mv::frmNewField* field() { return find<mv::frmNewField>(); }
  static QLineEdit& box(const QWidget* window, const char* name) { return control<QLineEdit>(window, name); }
  static mv::ListView& fields() { return control<mv::ListView>(form(), "lvwFields"); }
  std::string lastMessage() {
    const bool warns = !dialogs.messages().empty() && dialogs.messages().back().icon == mv::MessageIcon::Exclamation;
    return ProgramTest::lastMessage() + (warns ? " !" : "");
  }
  void addForm(int id, const std::string& name) {
    insert("form", {{std::to_string(id), name, "text", "query"}});
    manager->buildWorkingLists("init");
  }
  // A new form, stored with Apply, its fields in view.
  void applyNewForm(const QString& name) {
    click(manager, "New");
    type(form(), "txtName", name);
    click(form(), "cmdApply");
    control<QTabWidget>(form(), "SSTab1").setCurrentIndex(1);
  }
  // New Field, then its values in the order of the boxes, then OK.
  void addField(const std::vector<QString>& values, bool byUser) {
    click(form(), "cmdNewField");
    const char* boxes[] = {"txtName",   "txtFieldNumber", "txtSearchString",
                           "txtPrompt", "txtFieldName",   "txtFieldValue"};
    for (std::size_t i = 0; i < values.size(); ++i) type(field(), boxes[i], values[i]);
    if (byUser) click(field(), "chkSuppliedByUser");
    click(field(), "cmdOK");
  }

  mv::frmFormManager* manager = nullptr;
};

TEST_F(Forms, TheListProtectsTheBuiltInFormsAndHidesTheOneForNoLogin) {
  addForm(30, "Mine");
  EXPECT_EQ(columnTexts(list()), (std::vector<QString>{"Mine", "Password and User Name", "User Name and Password"}));
  for (const char* builtIn : {"Password and User Name", "User Name and Password"}) {
    choose("Mine");
    EXPECT_TRUE(enabled(manager, "Edit") && enabled(manager, "Delete"));
    choose(builtIn);
    EXPECT_FALSE(enabled(manager, "Edit") || enabled(manager, "Delete"));
    doubleClickRow(list(), list().findRow(0, builtIn));
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_F2, Qt::Key_Delete}) QTest::keyClick(&list(), key);
  }
  EXPECT_FALSE(form());
  EXPECT_EQ(count("form"), 4);
}

TEST_F(Forms, EditAndDeleteNeedARow) {
  addForm(30, "Mine");
  click(manager, "Edit");
  EXPECT_FALSE(form());
  click(manager, "Delete");
  EXPECT_EQ(lastMessage(), "No Form Selected: Please select a form to delete. ");
  insert("field_info (id, form_id)", {{"70", "30"}});
  insert("site_form_xref", {{"1", "30"}});
  insert("site_field_xref (site_id, field_id)", {{"1", "70"}});
  choose("Mine");
  click(manager, "Delete");
  EXPECT_EQ(lastMessage(), "");
  EXPECT_EQ(count("form", "id = 30") + count("field_info", "form_id = 30") + count("site_form_xref"), 0);
  EXPECT_EQ(count("site_field_xref"), 1);

  mv::gDatabase.execute("delete from form");
  manager->buildWorkingLists("init");
  click(manager, "Edit");
  EXPECT_EQ(lastMessage(), "Morvane2000: There are no forms to edit.");
}

TEST_F(Forms, ANewFormIsDefinedWithItsFields) {
  click(manager, "New");
  ASSERT_TRUE(form());
  EXPECT_EQ(form()->caption(), "New Form");
  click(form(), "cmdOK");
  EXPECT_EQ(lastMessage(), "Name Not Entered: Please click the General Information tab and enter a Name !");
  click(form(), "cmdApply");
  EXPECT_EQ(lastMessage(), "Error: Please enter a name !");
  type(form(), "txtName", "My \"Club\"'s");
  type(form(), "txtDescription", "Ask 'Ann'");
  EXPECT_EQ(textOf(form(), "txtName") + "|" + textOf(form(), "txtDescription"), "My Clubs|Ask Ann");
  click(form(), "cmdOK");
  EXPECT_EQ(lastMessage(), "Form Type Not Defined: Please click the General  Information tab and select a Form Type !");
  auto& formType = control<QComboBox>(form(), "cmboFormType");
  QTest::keyClicks(&formType, "Q");
  EXPECT_EQ(formType.currentIndex(), -1) << "chosen from the list, not typed";
  QTest::keyClick(&formType, Qt::Key_Down);
  EXPECT_EQ(formType.currentText(), "Authentication");

  control<QTabWidget>(form(), "SSTab1").setCurrentIndex(1);
  click(form(), "cmdNewField");
  EXPECT_EQ(lastMessage(),
            "Must save before changing field info: Please click the Apply button before modifying field information.");
  EXPECT_FALSE(field());
  EXPECT_EQ(count("form", "form_type = \"Authentication\""), 3);
  click(form(), "cmdApply");
  click(form(), "cmdNewField");
  EXPECT_EQ(field()->caption(), "New Field for: My Clubs");
  click(field(), "cmdOK");
  EXPECT_EQ(lastMessage(), "Name Not Entered: Please enter a Name !");
  click(field(), "cmdCancel");
  addField({"where", "1", "action=\"/it's\"", "", "", "host/in"}, false);
  addField({"user", "two", "name=\"user\"", "Who \"are\" you?", "u", "ann"}, true);

  EXPECT_EQ(columnTexts(fields()), (std::vector<QString>{"where", "user"})) << "the list is up to date again";
  EXPECT_EQ(rowText(fields(), 1), "user|102|100|two|name=\"user\"|yes|Who \"are\" you?|u|ann");
  EXPECT_FALSE(enabled(form(), "cmdEditField"));

  clickRow(fields(), 1);
  click(form(), "cmdEditField");
  EXPECT_EQ(field()->caption(), "Edit Field: user");
  EXPECT_EQ(textOf(field(), "txtPrompt"), "Who \"are\" you?");
  EXPECT_EQ(textOf(field(), "txtFieldNumber"), "two") << "what is no number is not lost";
  click(field(), "chkSuppliedByUser");
  type(field(), "txtFieldNumber", "2");
  QTest::keyClick(&box(field(), "txtName"), Qt::Key_Return);
  EXPECT_EQ(value("select name || logical_number || search_string || supplied_by_user || prompt || field_name || "
                  "field_value from field_info where id = 102"),
            "user2name=\"user\"noWho \"are\" you?uann");

  click(form(), "cmdOK");
  EXPECT_EQ(value("select name || description || form_type from form where id = 100"), "My ClubsAsk AnnAuthentication");
  EXPECT_EQ(list().rowCount(), 3);
}

TEST_F(Forms, CancelTakesBackWhatApplyStoredOfANewFormOnly) {
  applyNewForm("Gone");
  addField({"field"}, false);
  mv::gDatabase.execute("insert into site_form_xref values (1, 100)");
  click(form(), "cmdCancel");
  EXPECT_EQ(count("form", "id = 100") + count("field_info", "form_id = 100") + count("site_form_xref"), 0);
  EXPECT_EQ(list().rowCount(), 2);

  addForm(30, "Bob's");
  choose("Bob's");
  click(manager, "Edit");
  EXPECT_EQ(form()->caption(), "Edit Form: Bob's");
  EXPECT_EQ(textOf(form(), "txtName"), "Bob's") << "a quote that is there stays";
  EXPECT_EQ(control<QComboBox>(form(), "cmboFormType").currentText(), "Query");
  box(form(), "txtDescription").setText("changed");
  click(form(), "cmdApply");
  QTest::keyClick(&box(form(), "txtName"), Qt::Key_Escape);
  EXPECT_FALSE(form());
  EXPECT_EQ(value("select name || description || form_type from form where id = 30"), "Bob'schangedQuery");

  mv::gDatabase.execute("update form set form_type = 'Other' where id = 30");
  manager->buildWorkingLists("init");
  click(manager, "Edit");
  click(form(), "cmdApply");
  EXPECT_EQ(value("select form_type from form where id = 30"), "Other") << "nothing chosen, nothing lost";
}

TEST_F(Forms, DeletingAFieldTakesEffectAtOnce) {
  applyNewForm("Mine");
  addField({"one"}, false);
  addField({"two"}, false);
  clickRow(fields(), 0);
  click(form(), "cmdDeleteField");
  EXPECT_EQ(columnTexts(fields()), std::vector<QString>{"two"});
  EXPECT_FALSE(enabled(form(), "cmdDeleteField")) << "until a field is chosen";
  clickRow(fields(), 0);
  const QPoint onRow = middleOf(fields(), 0);
  QTest::mouseClick(fields().viewport(), Qt::LeftButton, Qt::ControlModifier, onRow);
  QTest::keyClick(&fields(), Qt::Key_Delete);
  EXPECT_EQ(count("field_info", "form_id = 100"), 1) << "nothing is marked";
  clickRow(fields(), 0);
  QTest::keyClick(&fields(), Qt::Key_Delete);
  EXPECT_EQ(count("field_info", "form_id = 100"), 0);
}

TEST_F(Forms, WhatHasBeenDeletedMeanwhileIsSaidAndTheTextStays) {
  applyNewForm("Mine");
  addField({"one"}, false);
  clickRow(fields(), 0);
  click(form(), "cmdEditField");
  mv::gDatabase.execute("delete from field_info where form_id = 100");
  click(field(), "cmdOK");
  EXPECT_EQ(lastMessage(), "Morvane2000: This field has been deleted meanwhile. It was not saved. !");
  EXPECT_EQ(textOf(field(), "txtName"), "one");
  click(field(), "cmdCancel");

  click(form(), "cmdNewField");
  mv::gDatabase.execute("delete from form where id = 100");
  type(field(), "txtName", "two");
  click(field(), "cmdOK");
  EXPECT_EQ(lastMessage(),
            "Morvane2000: The form of this field has been deleted meanwhile. The field was not saved. !");
  click(field(), "cmdCancel");
  control<QTabWidget>(form(), "SSTab1").setCurrentIndex(0);
  control<QComboBox>(form(), "cmboFormType").setCurrentIndex(0);
  click(form(), "cmdOK");
  EXPECT_EQ(lastMessage(), "Morvane2000: This form has been deleted meanwhile. It was not saved. !");
  EXPECT_EQ(textOf(form(), "txtName"), "Mine");
  EXPECT_EQ(count("field_info", "form_id = 100"), 0);
}

}  // namespace
