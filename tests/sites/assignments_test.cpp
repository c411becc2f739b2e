// What a site is tied to in its editor: file types, filters, the login form and its values.

#include <QGroupBox>
#include <span>

#include "SitesTest.h"
#include "catalog_windows/frmSitePaths.h"
#include "sites_windows/frmWebSites.h"

namespace mvtest {
namespace {

class Assignments : public SitesTest {
 protected:
  Assignments() {
    insert(
        "filter",
        {{"5", "Own", "no", ""}, {"6", "More", "no", ""}, {"7", "Everywhere", "yes", ""}, {"8", "Absent", "no", ""}});
    id = addSite("www.example.test", "/x", {"jpg", "gif"});
    insert("site_filter_xref", {{std::to_string(id), "5"}});
  }

  mv::ListView& list(const char* name) { return control<mv::ListView>(editor, name); }
  bool enabled(const char* name) { return mvtest::enabled(editor, name); }
  void select(const char* name, const QString& text) { clickRow(list(name), list(name).findRow(0, text)); }
  void switchAwayAndBack() {
    auto* other = mv::showSingle<mv::frmWebSites>();
    other->showChild();
    editor->showChild();
  }
  void apply() { click(editor, "cmdApply"); }
  std::string storedTypes() const {
    return all("vf.name", "site_filetype_xref x, valid_filetypes vf where vf.id = x.file_type_id and x.site_id = " +
                              std::to_string(id) + " order by vf.name");
  }

  mv::Id id = 0;
};

TEST_F(Assignments, ANewSiteIsGivenTheDefaultFileTypes) {
  openNew(kFiletypes);
  EXPECT_EQ(names(list("lvwFiletypesAssigned")),
            all("name", "valid_filetypes where download_by_default = \"yes\" order by name"));
  EXPECT_EQ(list("lvwFiltersAssigned").rowCount(), 0) << "a new site shows no global filters";
}

TEST_F(Assignments, FileTypesMoveAndAreStoredByApplyOnly) {
  openEdit(id, kFiletypes);
  EXPECT_FALSE(enabled("cmdMoveFileTypeToAssigned"));
  select("lvwFiletypesAvailable", "bmp");
  EXPECT_FALSE(enabled("cmdMoveFileTypeToAvailable"));
  EXPECT_EQ(textOf(editor, "txtFiletypeDescription"), "Bitmap picture");
  click(editor, "cmdMoveFileTypeToAssigned");
  select("lvwFiletypesAssigned", "gif");
  click(editor, "cmdMoveFileTypeToAvailable");
  EXPECT_EQ(names(list("lvwFiletypesAssigned")), "bmp,jpg");
  EXPECT_EQ(storedTypes(), "gif,jpg") << "nothing is stored yet";
  switchAwayAndBack();
  EXPECT_EQ(names(list("lvwFiletypesAssigned")), "gif,jpg") << "a visit to another window drops the moves";

  select("lvwFiletypesAssigned", "gif");
  click(editor, "cmdMoveFileTypeToAvailable");
  apply();
  EXPECT_EQ(storedTypes(), "jpg");
}

// The next save would store what the lists have lost.
TEST_F(Assignments, ARebuildThatFailsLeavesTheListsAsTheyWere) {
  openEdit(id, kFilters);
  for (const mv::SqlText table : {mv::SqlText("filter"), mv::SqlText("valid_filetypes")}) {
    mv::gDatabase.execute("alter table " + table + " rename to elsewhere");
    switchAwayAndBack();
    EXPECT_FALSE(dialogs.messages().empty());
    mv::gDatabase.execute("alter table elsewhere rename to " + table);
    EXPECT_EQ(names(list("lvwFiletypesAssigned")), "gif,jpg") << table.text();
    EXPECT_EQ(names(list("lvwFiltersAssigned")), "Own,Everywhere") << table.text();
  }
}

TEST_F(Assignments, GlobalFiltersAreShownAndStayWhereTheyAre) {
  openEdit(id, kFilters);
  mv::ListView& assigned = list("lvwFiltersAssigned");
  EXPECT_EQ(names(assigned), "Own,Everywhere");
  EXPECT_TRUE(assigned.isBold(0));
  EXPECT_FALSE(assigned.isBold(1));
  EXPECT_EQ(names(list("lvwFiltersAvailable")), "Absent,More");

  select("lvwFiltersAssigned", "Everywhere");
  EXPECT_FALSE(enabled("cmdMoveFilterToAvailable"));
  select("lvwFiltersAssigned", "Own");
  assigned.selectAll();
  click(editor, "cmdMoveFilterToAvailable");
  EXPECT_EQ(names(assigned), "Everywhere");
  EXPECT_EQ(names(list("lvwFiltersAvailable")), "Absent,More,Own");

  clickRows(list("lvwFiltersAvailable"), {1, 2});
  click(editor, "cmdMoveFilterToAssigned");
  EXPECT_EQ(names(assigned), "Everywhere,More,Own") << "moved rows come last";
  apply();
  EXPECT_EQ(all("filter_id", "site_filter_xref order by filter_id"), "5,6");
}

TEST_F(Assignments, UnsavedAssignmentsKeepTheOtherEditorsShut) {
  struct Case {
    Page page;
    const char* button;
    const char* refusal;
  };
  const Case cases[] = {
      {kFilters, "cmdNewFilter",
       "Must save before adding new filter: Please click the Apply button before modifying filters."},
      {kPaths, "cmdOpenPathManager",
       "Must save before modifying paths: Please click the Apply button before accessing the Path Manager"},
      {kFiletypes, "cmdNewFileType",
       "Must save before adding new filetype: Please click the Apply button before modifying filetypes."}};
  openEdit(id, kFilters);
  mv::ListView& available = list("lvwFiltersAvailable");
  doubleClickRow(available, available.findRow(0, "More"));
  const auto expectRefusals = [&](std::size_t count) {
    for (const Case& each : std::span(cases).first(count)) {
      showPage(each.page);
      click(editor, each.button);
      EXPECT_EQ(lastMessage(), each.refusal);
    }
  };
  expectRefusals(2);
  apply();
  for (const Case& each : cases) {
    showPage(each.page);
    click(editor, each.button);
  }
  EXPECT_EQ(lastMessage(), "");
  EXPECT_TRUE(windowTitled("New Filter"));
  EXPECT_TRUE(windowTitled("New Filetype"));
  auto* paths = dynamic_cast<mv::frmSitePaths*>(windowTitled("Path Manager for: www.example.test"));
  ASSERT_TRUE(paths);
  EXPECT_EQ(paths->SiteID, id);

  openNew(kFilters);
  expectRefusals(3);
}

// --- login forms

class Login : public Assignments {
 protected:
  // Form 200 with three fields that the user supplies and one that the page supplies, form 201 with seven.
  Login() {
    insert("form", {{"200", "Three", "About three", "Authentication"},
                    {"201", "Seven", "About seven", "Authentication"},
                    {"202", "Query", "", "Query"}});
    field(300, 200, 2, "name");
    field(301, 200, 3, "Password");
    field(302, 200, 1, "R&D");
    field(303, 200, 4, "not asked", "no");
    for (int i = 1; i <= 7; ++i) field(310 + i, 201, i, "F" + std::to_string(i));
  }
  static void field(int fieldId, int formId, int number, const std::string& prompt, const std::string& asked = "yes") {
    insert("field_info (id, form_id, name, logical_number, supplied_by_user, prompt, field_value)",
           {{std::to_string(fieldId), std::to_string(formId), "n", std::to_string(number), asked, prompt,
             "my " + prompt}});
  }
  QComboBox& forms() { return control<QComboBox>(editor, "cmboAuthenticationService"); }
  void choose(const char* name) { chooseEntry(forms(), name); }
  QLineEdit& value(int row) { return control<QLineEdit>(editor, ("txtFieldName" + std::to_string(row)).c_str()); }
  // Prompt and value of the visible rows.
  std::string rows() {
    std::string rows;
    for (int i = 1; i <= 5; ++i) {
      const auto& label = control<QLabel>(editor, ("lblFieldName" + std::to_string(i)).c_str());
      EXPECT_EQ(label.isHidden(), value(i).isHidden());
      if (!label.isHidden())
        rows += (label.text() + "=" + value(i).text() + ";").toStdString();
      else
        EXPECT_EQ((label.text() + value(i).text()).toStdString(), "");
    }
    EXPECT_EQ(control<QGroupBox>(editor, "frmFieldHelp").isHidden(), rows.empty());
    return rows;
  }
  std::string stored() const {
    return all("form_id", "site_form_xref where site_id = " + std::to_string(id)) + ":" +
           all("field_id || '=' || field_value",
               "site_field_xref where site_id = " + std::to_string(id) + " order by id");
  }
};

TEST_F(Login, ChoosingAFormShowsItsPromptsAndSavesTheValues) {
  openEdit(id, kAuthentication);
  EXPECT_EQ(forms().currentIndex(), -1);
  EXPECT_EQ(rows(), "");
  EXPECT_EQ(forms().findText("Query"), -1);
  choose("Three");
  EXPECT_EQ(rows(), "R&D=my R&D;name=my name;Password=my Password;");
  EXPECT_EQ(textOf(editor, "txtFieldHelp"), "About three");
  EXPECT_EQ(value(2).echoMode(), QLineEdit::Normal);
  EXPECT_EQ(value(3).echoMode(), QLineEdit::Password);
  value(2).setText("Jo \"quote\" O'Neil");
  value(3).setText("s3\"cret");
  for (const char* button : {"cmdOK", "cmdApply"}) {
    click(editor, button);
    EXPECT_EQ(stored(), "200:302=my R&D,300=Jo \"quote\" O'Neil,301=s3\"cret");
    openEdit(id, kAuthentication);
    EXPECT_EQ(forms().currentText(), "Three");
    EXPECT_EQ(rows(), "R&D=my R&D;name=Jo \"quote\" O'Neil;Password=s3\"cret;");
  }

  choose("Seven");
  EXPECT_EQ(rows(), "F1=my F1;F2=my F2;F3=my F3;F4=my F4;F5=my F5;");
  EXPECT_EQ(value(3).echoMode(), QLineEdit::Normal);
  apply();
  EXPECT_EQ(count("site_field_xref"), 5);

  choose("***None***");
  EXPECT_EQ(rows(), "");
  apply();
  EXPECT_EQ(stored(), ":311=,312=,313=,314=,315=") << "the prompts of the form chosen before are stored empty";
}

TEST_F(Login, AFormWithoutDefinitionIsNotShown) {
  insert("site_form_xref", {{std::to_string(id), "999"}});
  openEdit(id, kAuthentication);
  EXPECT_EQ(forms().currentIndex(), -1);
  EXPECT_EQ(rows(), "");
  apply();
  EXPECT_EQ(stored(), ":");
}

}  // namespace
}  // namespace mvtest
