#include "scan/FilterRules.h"

#include <algorithm>
#include <bitset>

namespace mv {

namespace {

constexpr std::array<std::string_view, 3> kFields = {"Link", "Domain", "Filetype"};

// Where `name` stands in `names`; their number when it is none of them.
template <std::size_t count>
std::size_t indexOf(const std::array<std::string_view, count>& names, std::string_view name) {
  return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

bool passes(RuleOperator op, std::string_view text, std::string_view value) {
  switch (op) {
    case RuleOperator::Contains:
      return text.find(value) != std::string_view::npos;
    case RuleOperator::Equals:
      return text == value;
    case RuleOperator::DoesNotEqual:
      return text != value;
    case RuleOperator::BeginsWith:
      return text.starts_with(value);
    case RuleOperator::DoesNotBeginWith:
      return !text.starts_with(value);
    case RuleOperator::EndsWith:
      return text.ends_with(value);
    case RuleOperator::DoesNotEndWith:
      return !text.ends_with(value);
  }
  return false;
}

// Searching a long text for a thousand values is slow. A value can only be in a text that has all its pairs of
// neighbouring bytes, and nearly every value that is not there fails at one of its first.
class Pairs {
 public:
  explicit Pairs(std::string_view text) {
    for (std::size_t i = 1; i < text.size(); ++i) seen_.set(pairBefore(text, i));
  }
  bool hasAllOf(std::string_view value) const {
    for (std::size_t i = 1; i < value.size(); ++i)
      if (!seen_.test(pairBefore(value, i))) return false;
    return true;
  }

 private:
  static std::size_t pairBefore(std::string_view text, std::size_t i) {
    return static_cast<std::size_t>(static_cast<unsigned char>(text[i - 1])) << 8U |
           static_cast<std::size_t>(static_cast<unsigned char>(text[i]));
  }
  std::bitset<std::size_t{1} << 16U> seen_;
};

bool containsAny(std::string_view text, const std::vector<std::string>& values) {
  if (values.empty()) return false;
  const Pairs pairs(text);
  return std::any_of(values.begin(), values.end(), [&](const std::string& value) {
    return pairs.hasAllOf(value) && passes(RuleOperator::Contains, text, value);
  });
}

}  // namespace

RuleSet::RuleSet(const std::vector<FilterRule>& rules) {
  for (const FilterRule& rule : rules) {
    const std::size_t field = indexOf(kFields, rule.fieldName);
    const std::size_t op = indexOf(kRuleOperators, rule.op);
    // Every text contains, begins with and ends with nothing: such a rule would reject all links, so it rejects none.
    if (field == kFields.size() || op == kRuleOperators.size() || rule.searchValue.empty()) continue;
    if (static_cast<RuleOperator>(op) == RuleOperator::Contains)
      tests_[field].contained.push_back(rule.searchValue);
    else
      tests_[field].others.push_back({static_cast<RuleOperator>(op), rule.searchValue});
  }
}

bool RuleSet::Tests::anyPasses(std::string_view text) const {
  return std::any_of(others.begin(), others.end(),
                     [&](const Test& test) { return passes(test.op, text, test.value); }) ||
         containsAny(text, contained);
}

bool RuleSet::anyMatches(const FilterSubject& subject) const {
  return tests_[0].anyPasses(subject.link) || tests_[1].anyPasses(subject.domain) ||
         tests_[2].anyPasses(subject.fileType);
}

}  // namespace mv
