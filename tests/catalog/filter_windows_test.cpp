// The lists of rules and filters and their editors, worked by clicks and keys.

#include <QApplication>
#include <QMimeData>
#include <QPointer>
#include <memory>

#include "app/Events.h"
#include "app/Settings.h"
#include "catalog_windows/frmFilterManager.h"
#include "catalog_windows/frmNewFilter.h"
#include "catalog_windows/frmRuleManager.h"
#include "frmNewRule.h"
#include "testkit/Controls.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using Texts = std::vector<QString>;

class RulesAndFilters : public WindowTest {
 protected:
  RulesAndFilters() {
    insert("rule", {{"1", "2", "3", "gif", "/stored", "Gifs", "Ends With"},
                    {"2", "1", "1", "ban", "", "Banners", "Equals"},
                    {"3", "1", "2", "x", "", "Hosts", "Contains"}});
    insert("filter", {{"1", "First", "no", "One"}, {"2", "Second", "yes", "Two"}});
    insert("filter_rule_xref", {{"1", "1"}, {"1", "2"}, {"2", "1"}});
    insert("site_filter_xref", {{"7", "1"}, {"7", "2"}});
    mv::gDatabase.execute("update valid_sid set next_value = 40 where sid_name in ('rule_id', 'filter_id')");
    mv::gDownloadFolder = "/default";
  }

  // Opens the manager and chooses a record, unless it is "", then clicks the button.
  template <class Editor, class Manager>
  Editor* open(const char* record, const char* button) {
    auto* manager = mv::showSingle<Manager>();
    auto& list = control<mv::ListView>(manager, manager->objectName() == "frmRuleManager" ? "lvwRules" : "lvwFilters");
    if (*record) clickRow(list, list.findRow(0, record));
    click(manager, button);
    return find<Editor>();
  }
  mv::frmNewRule* openRule(const char* name = "") {
    return open<mv::frmNewRule, mv::frmRuleManager>(name, *name ? "Edit" : "New");
  }
  mv::frmNewFilter* openFilter(const char* name = "") {
    return open<mv::frmNewFilter, mv::frmFilterManager>(name, *name ? "Edit" : "New");
  }
  static mv::ListView& available(const QWidget* editor) { return control<mv::ListView>(editor, "lvwRulesAvailable"); }
  static mv::ListView& assigned(const QWidget* editor) { return control<mv::ListView>(editor, "lvwRulesAssigned"); }
  static void choose(const QWidget* editor, const char* box, const char* entry) {
    chooseEntry(control<QComboBox>(editor, box), entry);
  }
  std::string rule(int id) const {
    return value(
        "select valid_field_id || '|' || operator || '|' || search_value || '|' || valid_rule_type_id || '|' || path "
        "|| '|' || name from rule where id = " +
        std::to_string(id));
  }
  std::string filter(int id) const {
    return value(
        "select name || '|' || global || '|' || description || '|' || (select group_concat(rule_id) from "
        "(select rule_id from filter_rule_xref where filter_id = filter.id order by rule_id)) from filter "
        "where id = " +
        std::to_string(id));
  }
};

TEST_F(RulesAndFilters, ARuleIsCheckedInOrderAndStoredAsTyped) {
  mv::frmNewRule* editor = openRule();
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->caption(), "New Rule");
  EXPECT_EQ(textOf(editor, "lblId"), "40");
  EXPECT_TRUE(control<QWidget>(editor, "txtPath").isHidden());
  const auto chooses = [&](const char* box, const char* entry) {
    return [=] { chooseEntry(control<QComboBox>(editor, box), entry); };
  };
  const struct {
    const char* message;
    std::function<void()> remedy;
  } steps[] = {
      {"Rule not named: Please enter a name for this rule", [=] { type(editor, "txtRuleName", "It's \"new\""); }},
      {"Rule type not defined: Please select an item from the 'Then' list", chooses("cmboRuleTypes", "Save To")},
      {"No value defined: Please enter a value in the 'This' field", [=] { type(editor, "txtValue", "'a\"b'"); }},
      {"No operator defined: Please select a logical operator", chooses("cmboOperator", "Does Not End With")},
      {"No field defined: Please select an item from the 'If' list", chooses("cmboFields", "Domain")},
      {"No path defined: Please define a save to directory", [=] {
         mv::gDownloadFolder = "/default";
         choose(editor, "cmboRuleTypes", "Ignore");
         choose(editor, "cmboRuleTypes", "Save To");
       }}};
  mv::gDownloadFolder.clear();
  for (const auto& step : steps) {
    QTest::keyClick(editor, Qt::Key_Return);
    EXPECT_EQ(lastMessage(), step.message);
    EXPECT_EQ(count("rule"), 3);
    step.remedy();
  }
  QTest::keyClick(editor, Qt::Key_Return);
  EXPECT_FALSE(find<mv::frmNewRule>());
  EXPECT_EQ(rule(40), "2|Does Not End With|a\"b|2|/default|Its \"new\"");
}

TEST_F(RulesAndFilters, ListsAndFolderTakeNoTyping) {
  mv::frmNewRule* editor = openRule("Gifs");
  for (const char* name : {"cmboFields", "cmboOperator", "cmboRuleTypes"}) {
    auto& box = control<QComboBox>(editor, name);
    const int before = box.currentIndex();
    QTest::keyClicks(&box, "il cd");
    EXPECT_EQ(box.currentIndex(), before) << name;
  }
  QTest::keyClicks(&control<QLineEdit>(editor, "txtPath"), "x");
  EXPECT_EQ(textOf(editor, "txtPath"), "/stored");
  auto& value = control<QLineEdit>(editor, "txtValue");
  value.setFocus();
  EXPECT_EQ(value.selectedText(), "gif");
  QTest::keyClick(&value, '\'');
  EXPECT_EQ(value.selectedText(), "gif");
}

TEST_F(RulesAndFilters, AnEditedRuleKeepsItsFolderUntilAnotherTypeIsPicked) {
  mv::frmNewRule* editor = openRule("Gifs");
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->caption(), "Edit Rule: Gifs");
  EXPECT_EQ(textOf(editor, "txtPath"), "/stored");
  EXPECT_FALSE(control<QWidget>(editor, "cmdBrowse").isHidden());
  dialogs.nextFolders = {std::nullopt, "/chosen"};
  click(editor, "cmdBrowse");
  EXPECT_EQ(textOf(editor, "txtPath"), "/stored") << "cancelled";
  EXPECT_EQ(dialogs.folderRequests.back().initialFolder, "/stored");
  click(editor, "cmdBrowse");
  EXPECT_EQ(textOf(editor, "txtPath"), "/chosen");
  choose(editor, "cmboFields", "Link");
  choose(editor, "cmboOperator", "Contains");
  click(editor, "cmdOK");
  EXPECT_EQ(rule(1), "1|Contains|gif|2|/chosen|Gifs");

  editor = openRule("Gifs");
  choose(editor, "cmboRuleTypes", "Ignore");
  EXPECT_TRUE(control<QWidget>(editor, "txtPath").isHidden());
  choose(editor, "cmboRuleTypes", "Save To");
  EXPECT_EQ(textOf(editor, "txtPath"), "/default");
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_EQ(rule(1), "1|Contains|gif|2|/chosen|Gifs");

  mv::gDatabase.execute("update rule set operator = \"Resembles\", valid_rule_type_id = 99 where id = 2");
  editor = openRule("Banners");
  EXPECT_EQ(control<QComboBox>(editor, "cmboOperator").currentIndex(), -1);
  click(editor, "cmdOK");
  EXPECT_EQ(lastMessage(), "Rule type not defined: Please select an item from the 'Then' list");
}

TEST_F(RulesAndFilters, WhatWasDeletedMeanwhileIsNotWrittenAndTheTextIsKept) {
  mv::frmNewRule* ruleEditor = openRule("Gifs");
  open<mv::frmNewRule, mv::frmRuleManager>("Gifs", "Delete");
  click(ruleEditor, "cmdOK");
  EXPECT_EQ(lastMessage(), "Morvane2000: This rule has been deleted meanwhile. It was not saved.");
  ASSERT_TRUE(find<mv::frmNewRule>());
  EXPECT_EQ(textOf(ruleEditor, "txtRuleName"), "Gifs");
  EXPECT_EQ(count("rule"), 2);

  mv::frmNewFilter* filterEditor = openFilter("First");
  open<mv::frmNewFilter, mv::frmFilterManager>("First", "Delete");
  filterEditor->showChild();
  for (const char* button : {"cmdApply", "cmdOK"}) {
    click(filterEditor, button);
    EXPECT_EQ(lastMessage(), "Morvane2000: This filter has been deleted meanwhile. It was not saved.");
  }
  EXPECT_EQ(textOf(filterEditor, "txtFilterName"), "First");
  EXPECT_EQ(count("filter"), 1);
  EXPECT_EQ(count("filter_rule_xref", "filter_id = 1"), 0);
}

TEST_F(RulesAndFilters, AFolderComesOnlyWithATypeThatTheUserChose) {
  mv::gDatabase.execute("insert into valid_rule (id, name) values (0, \"Route\")");
  mv::frmNewRule* editor = openRule();
  type(editor, "txtRuleName", "n");
  type(editor, "txtValue", "v");
  control<QComboBox>(editor, "cmboFields").setCurrentIndex(0);
  control<QComboBox>(editor, "cmboOperator").setCurrentIndex(0);
  control<QComboBox>(editor, "cmboRuleTypes").setCurrentText("Ignore");
  click(editor, "cmdOK");
  EXPECT_EQ(rule(40), "1|Contains|v|1||n");
}

TEST_F(RulesAndFilters, AFilterWhoseRulesCannotBeStoredIsAsItWas) {
  mv::gDatabase.execute("update filter_rule_xref set rule_id = 3 where filter_id = 2");
  mv::gDatabase.execute("create unique index one_filter on filter_rule_xref (rule_id)");
  mv::frmNewFilter* editor = openFilter("First");
  type(editor, "txtFilterName", "Renamed");
  doubleClickRow(available(editor), 0);
  click(editor, "cmdOK");
  EXPECT_EQ(find<mv::frmNewFilter>(), editor);
  EXPECT_EQ(dialogs.messages().size(), 1u);
  EXPECT_EQ(filter(1), "First|no|One|1,2");
  mv::gDatabase.execute("drop index one_filter");
  click(editor, "cmdOK");
  EXPECT_EQ(filter(1), "Renamed|no|One|1,2,3");
}

TEST_F(RulesAndFilters, AManagerClosedDuringADragGoesWhenTheDragIsOver) {
  const QPointer<mv::frmFilterManager> manager = mv::showSingle<mv::frmFilterManager>();
  auto& list = control<mv::ListView>(manager, "lvwFilters");
  bool dragged = false;
  QObject::connect(&list, &mv::ListView::dragStarted, manager, [&] {
    dragged = true;
    EXPECT_EQ(mv::gDragKind, mv::kDropFilter);
    EXPECT_TRUE(manager->unload());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(manager);
  });
  QWidget* rows = list.viewport();
  const QPoint start = middleOf(list, 0);
  QTest::mousePress(rows, Qt::LeftButton, {}, start);
  for (const int way : {1, 2}) QTest::mouseMove(rows, start + QPoint(way * QApplication::startDragDistance(), 0));
  EXPECT_TRUE(dragged);
  EXPECT_EQ(mv::gDragKind, "");
  EXPECT_TRUE(waitFor([&] { return !manager; }));
}

TEST_F(RulesAndFilters, ManagersDeleteWithEveryReference) {
  open<mv::frmNewRule, mv::frmRuleManager>("", "Delete");
  EXPECT_EQ(lastMessage(), "No Rule Selected: Please select a rule to delete. ");
  open<mv::frmNewRule, mv::frmRuleManager>("Gifs", "Delete");
  EXPECT_EQ(columnTexts(control<mv::ListView>(find<mv::frmRuleManager>(), "lvwRules")), Texts({"Banners", "Hosts"}));
  EXPECT_EQ(count("filter_rule_xref", "rule_id = 1"), 0);
  EXPECT_EQ(count("filter_rule_xref"), 1);

  open<mv::frmNewFilter, mv::frmFilterManager>("", "Delete");
  EXPECT_EQ(lastMessage(), "No Filter Selected: Please select a filter to delete. ");
  auto& filters = control<mv::ListView>(find<mv::frmFilterManager>(), "lvwFilters");
  filters.selectAll();
  const std::unique_ptr<QMimeData> dragged(filters.model()->mimeData(filters.selectionModel()->selectedRows()));
  EXPECT_EQ(dragged->text(), "1\r\n2\r\n");
  clickRow(filters, 0);
  QTest::keyClick(&filters, Qt::Key_Delete);
  EXPECT_EQ(columnTexts(filters), Texts({"Second"}));
  EXPECT_EQ(value("select group_concat(filter_id) from site_filter_xref"), "2");
  EXPECT_EQ(count("filter_rule_xref"), 0);
  EXPECT_EQ(count("rule"), 2) << "rules stay";
}

TEST_F(RulesAndFilters, ANewFilterIsInsertedOnceThenUpdatedAndTakenBackByCancel) {
  std::vector<std::int64_t> takenBack;
  QObject hearer;
  QObject::connect(&mv::events(), &mv::Events::filterTakenBack, &hearer,
                   [&](std::int64_t id) { takenBack.push_back(id); });
  mv::frmNewFilter* editor = openFilter();
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->caption(), "New Filter");
  EXPECT_EQ(textOf(editor, "lblId"), "40");
  click(editor, "cmdApply");
  EXPECT_EQ(lastMessage(), "Error: Please enter a name for this filter");
  click(editor, "cmdOK");
  EXPECT_EQ(lastMessage(), "Filter not named: Please enter a name for this filter");
  EXPECT_EQ(count("filter"), 2);

  type(editor, "txtFilterName", "It's \"mine\"");
  type(editor, "txtDescription", "it's \"so\"");
  click(editor, "cmdApply");
  EXPECT_EQ(filter(40), "") << "no rules";
  EXPECT_EQ(value("select name || global || description from filter where id = 40"), "Its \"mine\"noit's \"so\"");
  doubleClickRow(available(editor), 0);
  click(editor, "chkGlobal");
  click(editor, "cmdApply");
  EXPECT_EQ(filter(40), "Its \"mine\"|yes|it's \"so\"|2");
  EXPECT_EQ(columnTexts(control<mv::ListView>(mv::showSingle<mv::frmFilterManager>(), "lvwFilters")).size(), 3u);

  mv::gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (7, 40)");
  QTest::keyClick(editor, Qt::Key_Escape);
  EXPECT_FALSE(find<mv::frmNewFilter>());
  for (const char* table : {"filter_rule_xref", "site_filter_xref"}) EXPECT_EQ(count(table, "filter_id = 40"), 0);
  EXPECT_EQ(count("filter"), 2);
  EXPECT_EQ(takenBack, std::vector<std::int64_t>{40});
  EXPECT_EQ(value("select next_value from valid_sid where sid_name = 'filter_id'"), "41");

  click(find<mv::frmFilterManager>(), "New");
  type(find<mv::frmNewFilter>(), "txtFilterName", "Kept");
  click(find<mv::frmNewFilter>(), "cmdApply");
  click(find<mv::frmNewFilter>(), "cmdOK");
  EXPECT_EQ(count("filter", "id = 41"), 1);
}

TEST_F(RulesAndFilters, AnEditedFilterMovesRulesAndKeepsWhatWasApplied) {
  mv::frmNewFilter* editor = openFilter("First");
  ASSERT_TRUE(editor);
  EXPECT_EQ(editor->caption(), "Edit: First");
  EXPECT_EQ(textOf(editor, "txtDescription"), "One");
  EXPECT_EQ(columnTexts(available(editor)), Texts({"Hosts"}));
  EXPECT_EQ(columnTexts(assigned(editor)), Texts({"Banners", "Gifs"}));
  EXPECT_FALSE(enabled(editor, "cmdMoveToAssigned") || enabled(editor, "cmdMoveToAvailable"));

  clickRow(assigned(editor), 0);
  EXPECT_FALSE(enabled(editor, "cmdMoveToAssigned"));
  click(editor, "cmdMoveToAvailable");
  clickRow(available(editor), 1);
  QTest::keyClick(&available(editor), Qt::Key_Right, Qt::AltModifier);
  EXPECT_TRUE(waitFor([&] { return columnTexts(assigned(editor)) == Texts({"Gifs", "Hosts"}); }));
  EXPECT_EQ(filter(1), "First|no|One|1,2") << "not yet stored";
  click(editor, "cmdApply");
  type(editor, "txtFilterName", "not stored");
  click(editor, "cmdCancel");
  EXPECT_EQ(filter(1), "First|no|One|1,3");

  EXPECT_TRUE(control<QCheckBox>(openFilter("Second"), "chkGlobal").isChecked());
}

TEST_F(RulesAndFilters, AnOpenFilterEditorFollowsTheRules) {
  mv::frmNewFilter* editor = openFilter();
  type(editor, "txtFilterName", "New one");
  available(editor).selectAll();
  control<QWidget>(editor, "lvwRulesAvailable").setFocus();
  click(editor, "cmdMoveToAssigned");
  EXPECT_FALSE(enabled(editor, "cmdMoveToAssigned")) << "nothing left to move";
  click(editor, "cmdNew");
  mv::frmNewRule* rule = find<mv::frmNewRule>();
  ASSERT_TRUE(rule);
  EXPECT_EQ(rule->caption(), "New Rule");
  type(rule, "txtRuleName", "Later");
  type(rule, "txtValue", "v");
  for (const char* box : {"cmboFields", "cmboOperator", "cmboRuleTypes"})
    control<QComboBox>(rule, box).setCurrentIndex(0);
  click(rule, "cmdOK");
  mv::gDatabase.execute("update rule set name = \"Renamed\" where id = 2");
  open<mv::frmNewRule, mv::frmRuleManager>("Gifs", "Delete");
  editor->showChild();
  EXPECT_EQ(columnTexts(available(editor)), Texts({"Later"}));
  EXPECT_EQ(columnTexts(assigned(editor)), Texts({"Hosts", "Renamed"}));
  // A rule that goes while the editor stays in front is not stored either.
  mv::gDatabase.execute("delete from rule where id = 3");
  click(editor, "cmdOK");
  EXPECT_EQ(filter(40), "New one|no||2");
}

}  // namespace
