// The rules, kept in the table `rule`, and what a rule can test and do: the names in `valid_field` and `valid_rule`.
// All functions raise DatabaseError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

struct Rule {
  Id id = 0;  // of the sequence "rule_id"
  std::string name;
  Id fieldId = 0;            // the part of a link that is compared, of `valid_field`
  std::string ruleOperator;  // one of kRuleOperators
  std::string searchValue;
  Id typeId = 0;  // what follows, of `valid_rule`
  std::string path;
};

// In the order of their identifiers.
std::vector<NamedId> listRules();
std::vector<NamedId> listRulesOfFilter(Id filterId);
std::optional<Rule> findRule(Id id);
void insertRule(const Rule& rule);
// False: it is gone.
bool updateRule(const Rule& rule);
// With its places in filters.
void deleteRule(Id id);

// In the order of their identifiers.
std::vector<NamedId> listRuleFields();
std::vector<NamedId> listRuleTypes();
// "" when there is none of that identifier.
std::string ruleFieldName(Id id);
std::string ruleTypeName(Id id);
// Raise kNoCurrentRecord when there is none of that name.
Id ruleFieldNamed(const std::string& name);
Id ruleTypeNamed(const std::string& name);

}  // namespace mv
