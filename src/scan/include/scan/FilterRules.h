// The rules that keep unwanted links out. A rule that matches rejects the link, whatever its type.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "store/ProcessData.h"
#include "store/RuleOperators.h"

namespace mv {

// The parts of a link that rules look at.
struct FilterSubject {
  std::string_view link;      // as found in the page
  std::string_view domain;    // the site's host
  std::string_view fileType;  // "" for links that are no file
};

// Rules made ready once for many links: some nanoseconds a rule and link.
class RuleSet {
 public:
  RuleSet() = default;
  // Leaves out what never matches: unknown fields and operators, empty search values.
  explicit RuleSet(const std::vector<FilterRule>& rules);

  // Does at least one rule match? Exact, case-sensitive.
  bool anyMatches(const FilterSubject& subject) const;

 private:
  // The rules that look at one part of a link.
  struct Tests {
    struct Test {
      RuleOperator op;
      std::string value;
    };
    std::vector<std::string> contained;  // values of "Contains"
    std::vector<Test> others;

    bool anyPasses(std::string_view text) const;
  };

  std::array<Tests, 3> tests_;  // of Link, Domain, Filetype
};

}  // namespace mv
