// The rules that keep unwanted links out. A rule that matches rejects the link, whatever its type.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace mv {

struct FilterRule {
  std::string fieldName;  // "Link", "Domain" or "Filetype"; any other is skipped
  std::string op;         // "Contains", "Equals", ...; any other is skipped
  std::string ruleType;
  std::string ruleName;
  std::string searchValue;
};

// The parts of a link that rules look at.
struct FilterSubject {
  std::string_view link;      // as found in the page
  std::string_view domain;    // the site's host
  std::string_view fileType;  // "" for links that are no file
};

// Does one rule match? Exact, case-sensitive. An empty search value never matches.
bool matches(const FilterRule& rule, const FilterSubject& subject);
bool anyMatches(const std::vector<FilterRule>& rules, const FilterSubject& subject);

// The rules of all global filters, and of the filters assigned to a site. Raise DatabaseError.
std::vector<FilterRule> loadGlobalRules();
std::vector<FilterRule> loadSiteRules(std::int32_t siteId);

}  // namespace mv
