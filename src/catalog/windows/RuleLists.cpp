#include "RuleLists.h"

#include <QPushButton>
#include <unordered_map>
#include <vector>

#include "base/Text.h"
#include "store/RuleStore.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

void fill(ListView& list, const std::vector<NamedId>& rules) {
  list.setSorting(false);
  list.clearRows();
  for (const NamedId& rule : rules) list.addRow({toQString(rule.name), QString::number(rule.id)});
  list.setSorting(true);
}

}  // namespace

RuleLists::RuleLists()
    : ListPair({"Rule Name",
                {"lvwRulesAvailable", "Available Rules", "", "lblAvailableFilters"},
                {"lvwRulesAssigned", "Rules for This Filter", "", "lblAssignedFilters"},
                {"cmdMoveToAssigned", "Add rule to this filter"},
                {"cmdMoveToAvailable", "Remove rule from this filter"},
                {"cmdNew", "Create a new rule"},
                "New"}) {
  available().setSorting(true);
  assigned().setSorting(true);
}

void RuleLists::buildAvailable() { fill(available(), listRules()); }

void RuleLists::buildAssigned(Id filterId) { fill(assigned(), listRulesOfFilter(filterId)); }

void RuleLists::refreshAssigned() {
  std::unordered_map<Id, QString> names;
  for (const NamedId& rule : listRules()) names.emplace(rule.id, toQString(rule.name));
  ListView& list = assigned();
  const std::vector<Id> ids = assignedIds();
  list.setSorting(false);
  for (int row = list.rowCount() - 1; row >= 0; --row) {
    const auto rule = names.find(ids[static_cast<std::size_t>(row)]);
    if (rule == names.end())
      list.removeRow(row);
    else
      list.setCell(row, kNameColumn, rule->second);
  }
  list.setSorting(true);
}

void RuleLists::hideAssigned() { removeListedItems(available(), assigned()); }

void RuleLists::allowMoveToAssigned(bool allowed) { toAssignedButton().setEnabled(allowed); }
void RuleLists::allowMoveToAvailable(bool allowed) { toAvailableButton().setEnabled(allowed); }

}  // namespace mv
