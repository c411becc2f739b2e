#include "catalog_windows/frmRuleManager.h"

#include "base/Text.h"
#include "frmNewRule.h"
#include "store/RuleStore.h"

namespace mv {

namespace {

void fill(ListView& list) {
  for (const NamedId& rule : listRules()) list.addRow({toQString(rule.name), QString::number(rule.id)});
}

}  // namespace

frmRuleManager::frmRuleManager()
    : RecordWindow({.kind = "Rule",
                    .width = 3050,
                    .height = 3600,
                    .windowName = "frmRuleManager",
                    .listName = "lvwRules",
                    .columns = {{"Rule", 22}, {"Id", 0, true}},
                    .opensInFreeSpace = true,
                    .editCaption = "Edit Rule: ",
                    .fill = fill,
                    .remove = deleteRule}) {
  load();
}

RecordEditor* frmRuleManager::makeEditor(int) { return new frmNewRule; }

}  // namespace mv
