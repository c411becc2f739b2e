#include "store/RuleStore.h"

#include "ReadAll.h"
#include "app/Settings.h"

namespace mv {

namespace {

std::string nameIn(const Recordset& rows) { return rows.endOfRows() ? std::string() : rows.text("name"); }

}  // namespace

std::vector<NamedId> listRules() { return readAll(gDatabase.query("select id, name from rule order by id"), namedId); }

std::vector<NamedId> listRulesOfFilter(Id filterId) {
  return readAll(
      gDatabase.query("select r.id, r.valid_rule_type_id, r.valid_field_id, r.search_value, r.name, r.path, r.operator "
                      "from rule r, filter_rule_xref frx where r.id = frx.rule_id and frx.filter_id = " +
                      number(filterId)),
      namedId);
}

std::optional<Rule> findRule(Id id) {
  return readFirst(
      gDatabase.query(
          "select id, valid_rule_type_id, valid_field_id, search_value, path, name, operator from rule where id = " +
          number(id)),
      [](const Recordset& rows) {
        return Rule{rows.number("id"),     rows.text("name"),         rows.number("valid_field_id"),
                    rows.text("operator"), rows.text("search_value"), rows.number("valid_rule_type_id"),
                    rows.text("path")};
      });
}

void insertRule(const Rule& rule) {
  gDatabase.execute(
      "insert into rule (id, valid_rule_type_id, valid_field_id, search_value, path, name, operator) values (" +
      number(rule.id) + ", " + number(rule.typeId) + ", " + number(rule.fieldId) + ", " + quoted(rule.searchValue) +
      ", " + quoted(rule.path) + ", " + quoted(rule.name) + ", " + quoted(rule.ruleOperator) + ") ");
}

bool updateRule(const Rule& rule) {
  gDatabase.execute("update rule set name = " + quoted(rule.name) + ", valid_rule_type_id = " + number(rule.typeId) +
                    ", valid_field_id = " + number(rule.fieldId) + ", search_value  = " + quoted(rule.searchValue) +
                    ", path = " + quoted(rule.path) + ", operator = " + quoted(rule.ruleOperator) +
                    " where id = " + number(rule.id));
  return gDatabase.rowsAffected() > 0;
}

void deleteRule(Id id) {
  gDatabase.execute("delete from rule where id = " + number(id));
  gDatabase.execute("delete from filter_rule_xref where rule_id = " + number(id));
}

std::vector<NamedId> listRuleFields() {
  return readAll(gDatabase.query("select id, name from valid_field order by id"), namedId);
}

std::vector<NamedId> listRuleTypes() {
  return readAll(gDatabase.query("select id, name from valid_rule order by id"), namedId);
}

std::string ruleFieldName(Id id) {
  return nameIn(gDatabase.query("select name from valid_field where id = " + number(id)));
}

std::string ruleTypeName(Id id) {
  return nameIn(gDatabase.query("select name from valid_rule where id = " + number(id)));
}

Id ruleFieldNamed(const std::string& name) {
  return gDatabase.query("select id from valid_field where name = " + quoted(name)).number("id");
}

Id ruleTypeNamed(const std::string& name) {
  return gDatabase.query("select id from valid_rule where name = " + quoted(name)).number("id");
}

}  // namespace mv
