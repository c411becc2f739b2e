#include "catalog_windows/frmRuleManager.h"

#include "app/Settings.h"
#include "base/Text.h"
#include "catalog_windows/frmNewRule.h"
#include "desktop/Dialogs.h"

namespace mv {

namespace {

constexpr int kWidth = 3050;   // twips
constexpr int kHeight = 3600;  // twips

enum Column { kName, kId };

}  // namespace

frmRuleManager::frmRuleManager() : ListWindow("Rule Manager", kWidth, kHeight) {
  setObjectName("frmRuleManager");
  list().setObjectName("lvwRules");
  list().setColumns({{"Rule", 170}, {"Id", 0, true}});
  setIdColumn(kId);
  setKeepChosen(false);
  addRecordButtons("rule");
  load();
}

void frmRuleManager::fillList() {
  for (Recordset rows = gDatabase.query("select id, name from rule order by id"); !rows.endOfRows(); rows.moveNext())
    list().addRow({toQString(rows.text("name")), toQString(rows.text("id"))});
}

void frmRuleManager::openNew() {
  auto* editor = new frmNewRule;
  editor->Mode = "new";
  editor->setCaption("New Rule");
  editor->open();
}

void frmRuleManager::editChosen() {
  if (chosenRow() < 0) return;
  auto* editor = new frmNewRule;
  editor->Mode = "edit";
  editor->RuleId = chosenId();
  editor->setCaption("Edit Rule: " + chosenText());
  editor->open();
}

void frmRuleManager::deleteChosen() {
  if (chosenRow() < 0) {
    showMessage(this, "No Rule Selected", "Please select a rule to delete. ", MessageIcon::Information);
    return;
  }
  const Literal id = number(chosenId());
  gDatabase.execute("delete from rule where id = " + id);
  gDatabase.execute("delete from filter_rule_xref where rule_id = " + id);
  buildWorkingLists("init");
}

}  // namespace mv
