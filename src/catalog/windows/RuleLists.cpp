#include "RuleLists.h"

#include <QPushButton>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "app/Settings.h"
#include "base/Text.h"
#include "windows/ListHelpers.h"

namespace mv {

namespace {

constexpr char kAllRules[] = "select id, name from rule order by id";

using Rules = std::vector<std::pair<std::int64_t, QString>>;

Rules readRules(const Statement& statement) {
  Rules rules;
  for (Recordset rows = gDatabase.query(statement); !rows.endOfRows(); rows.moveNext())
    rules.emplace_back(rows.number("id"), toQString(rows.text("name")));
  return rules;
}

void fill(ListView& list, const Rules& rules) {
  list.setSorting(false);
  list.clearRows();
  for (const auto& [id, name] : rules) list.addRow({name, QString::number(id)});
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

void RuleLists::buildAvailable() { fill(available(), readRules(kAllRules)); }

void RuleLists::buildAssigned(std::int64_t filterId) {
  fill(assigned(), readRules("select r.id, r.valid_rule_type_id, r.valid_field_id, r.search_value, r.name, r.path, "
                             "r.operator from rule r, filter_rule_xref frx where r.id = frx.rule_id and "
                             "frx.filter_id = " +
                             number(filterId)));
}

void RuleLists::refreshAssigned() {
  const Rules rules = readRules(kAllRules);
  const std::unordered_map<std::int64_t, QString> names(rules.begin(), rules.end());
  ListView& list = assigned();
  const std::vector<std::int64_t> ids = assignedIds();
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
