#include "catalog_windows/frmRuleManager.h"

#include "frmNewRule.h"
#include "store/RuleStore.h"
#include "windows/ListHelpers.h"

namespace mv {

frmRuleManager::frmRuleManager()
    : RecordWindow({.kind = "Rule",
                    .width = 3050,
                    .height = 3600,
                    .windowName = "frmRuleManager",
                    .listName = "lvwRules",
                    .columns = {{"Rule", 22}, {"Id", 0, true}},
                    .opensInFreeSpace = true,
                    .editCaption = "Edit Rule: ",
                    .readRows = [] { return rowsOf(listRules()); },
                    .remove = deleteRule}) {
  load();
}

RecordEditor* frmRuleManager::makeEditor(int) { return new frmNewRule; }

}  // namespace mv
