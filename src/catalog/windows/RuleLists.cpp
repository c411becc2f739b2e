#include "RuleLists.h"

#include <unordered_map>
#include <vector>

#include "base/Text.h"
#include "store/RuleStore.h"
#include "ui_RuleLists.h"
#include "windows/ListHelpers.h"

namespace mv {

RuleLists::RuleLists(QWidget* parent) : ListPair(parent), ui_(std::make_unique<Ui::RuleLists>()) {
  ui_->setupUi(this);
  connectControls(
      {ui_->lvwRulesAvailable, ui_->lvwRulesAssigned, ui_->cmdMoveToAssigned, ui_->cmdMoveToAvailable, ui_->cmdNew},
      "Rule Name");
  available().setSorting(true);
  assigned().setSorting(true);
}

RuleLists::~RuleLists() = default;

void RuleLists::buildAvailable() { available().setRows(rowsOf(listRules())); }

void RuleLists::buildAssigned(Id filterId) { assigned().setRows(rowsOf(listRulesOfFilter(filterId))); }

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
