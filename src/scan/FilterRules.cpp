#include "scan/FilterRules.h"

#include <algorithm>

#include "app/Settings.h"
#include "platform/Database.h"

namespace mv {

namespace {

constexpr std::string_view kCount = "count(*) as outCount";
constexpr std::string_view kColumns = "r.name, r.search_value, r.operator, vf.name, vr.name";
constexpr std::string_view kRulesOfFilter =
    "FROM filter AS f, filter_rule_xref AS frx, rule AS r, valid_field AS vf, valid_rule AS vr";
constexpr std::string_view kRulesOfSiteFilter =
    "FROM filter AS f, site_filter_xref AS sfx, filter_rule_xref AS frx, rule AS r, valid_field AS vf, valid_rule AS "
    "vr";
constexpr std::string_view kJoin =
    "WHERE frx.rule_id=r.id AND frx.filter_id=f.id AND r.valid_field_id=vf.id AND r.valid_rule_type_id = vr.id and ";

std::string statement(std::string_view columns, std::string_view tables, const std::string& condition) {
  return std::string("SELECT ").append(columns).append(" ").append(tables).append(" ").append(kJoin).append(condition);
}

std::vector<FilterRule> loadRules(std::string_view tables, const std::string& condition) {
  std::vector<FilterRule> rules;
  const std::int64_t expected = gDatabase.count(statement(kCount, tables, condition));
  if (expected <= 0) return rules;
  rules.reserve(static_cast<std::size_t>(expected));
  for (Recordset rows = gDatabase.query(statement(kColumns, tables, condition)); !rows.endOfRows(); rows.moveNext())
    rules.push_back({rows.text("vf.name"), rows.text("Operator"), rows.text("vr.name"), rows.text("r.name"),
                     rows.text("search_value")});
  return rules;
}

constexpr std::array<std::string_view, 3> kFields = {"Link", "Domain", "Filetype"};

// Where `name` stands in `names`; their number when it is none of them.
template <std::size_t count>
std::size_t indexOf(const std::array<std::string_view, count>& names, std::string_view name) {
  return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

}  // namespace

RuleSet::RuleSet(const std::vector<FilterRule>& rules) {
  for (const FilterRule& rule : rules) {
    const std::size_t field = indexOf(kFields, rule.fieldName);
    const std::size_t op = indexOf(kRuleOperators, rule.op);
    // Every text contains, begins with and ends with nothing: such a rule would reject all links, so it rejects none.
    if (field < kFields.size() && op < kRuleOperators.size() && !rule.searchValue.empty())
      tests_[field].push_back({static_cast<RuleOperator>(op), rule.searchValue});
  }
}

bool RuleSet::passes(const Test& test, std::string_view text) {
  const std::string_view wanted = test.value;
  switch (test.op) {
    case RuleOperator::Contains:
      return text.find(wanted) != std::string_view::npos;
    case RuleOperator::Equals:
      return text == wanted;
    case RuleOperator::DoesNotEqual:
      return text != wanted;
    case RuleOperator::BeginsWith:
      return text.starts_with(wanted);
    case RuleOperator::DoesNotBeginWith:
      return !text.starts_with(wanted);
    case RuleOperator::EndsWith:
      return text.ends_with(wanted);
    case RuleOperator::DoesNotEndWith:
      return !text.ends_with(wanted);
  }
  return false;
}

bool RuleSet::anyPasses(const Tests& tests, std::string_view text) {
  return std::any_of(tests.begin(), tests.end(), [text](const Test& test) { return passes(test, text); });
}

bool RuleSet::anyMatches(const FilterSubject& subject) const {
  return anyPasses(tests_[0], subject.link) || anyPasses(tests_[1], subject.domain) ||
         anyPasses(tests_[2], subject.fileType);
}

std::vector<FilterRule> loadGlobalRules() { return loadRules(kRulesOfFilter, "f.global=" + quoted("yes")); }

std::vector<FilterRule> loadSiteRules(std::int32_t siteId) {
  return loadRules(kRulesOfSiteFilter, "f.id = sfx.filter_id and sfx.site_id = " + std::to_string(siteId));
}

}  // namespace mv
