#include "scan/FilterRules.h"

#include <optional>

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

std::optional<std::string_view> subjectOf(const FilterRule& rule, const FilterSubject& subject) {
  if (rule.fieldName == "Link") return subject.link;
  if (rule.fieldName == "Domain") return subject.domain;
  if (rule.fieldName == "Filetype") return subject.fileType;
  return std::nullopt;
}

}  // namespace

bool matches(const FilterRule& rule, const FilterSubject& subject) {
  const std::optional<std::string_view> chosen = subjectOf(rule, subject);
  const std::string_view wanted = rule.searchValue;
  // Every text contains, begins with and ends with nothing: such a rule would reject all links, so it rejects none.
  if (!chosen || wanted.empty()) return false;
  if (rule.op == "Contains") return chosen->find(wanted) != std::string_view::npos;
  if (rule.op == "Equals") return *chosen == wanted;
  if (rule.op == "Does Not Equal") return *chosen != wanted;
  if (rule.op == "Begins With") return chosen->starts_with(wanted);
  if (rule.op == "Does Not Begin With") return !chosen->starts_with(wanted);
  if (rule.op == "Ends With") return chosen->ends_with(wanted);
  if (rule.op == "Does Not End With") return !chosen->ends_with(wanted);
  return false;
}

bool anyMatches(const std::vector<FilterRule>& rules, const FilterSubject& subject) {
  for (const FilterRule& rule : rules)
    if (matches(rule, subject)) return true;
  return false;
}

std::vector<FilterRule> loadGlobalRules() { return loadRules(kRulesOfFilter, "f.global=" + quoted("yes")); }

std::vector<FilterRule> loadSiteRules(std::int32_t siteId) {
  return loadRules(kRulesOfSiteFilter, "f.id = sfx.filter_id and sfx.site_id = " + std::to_string(siteId));
}

}  // namespace mv
