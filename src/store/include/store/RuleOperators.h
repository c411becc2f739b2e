// How a rule compares a part of a link with its search value. The texts are what `rule.operator` holds.
#pragma once

#include <array>
#include <string_view>

namespace mv {

enum class RuleOperator { Contains, Equals, DoesNotEqual, BeginsWith, DoesNotBeginWith, EndsWith, DoesNotEndWith };

// In the order of RuleOperator, which is also that of the editor's list.
inline constexpr std::array<std::string_view, 7> kRuleOperators = {
    "Contains", "Equals", "Does Not Equal", "Begins With", "Does Not Begin With", "Ends With", "Does Not End With"};

}  // namespace mv
