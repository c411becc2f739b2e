// The filters, kept in the table `filter`, and the rules of each, in `filter_rule_xref`. All functions raise
// DatabaseError.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "store/Id.h"

namespace mv {

struct Filter {
  Id id = 0;  // of the sequence "filter_id"
  std::string name;
  std::string description;
  bool global = false;  // it applies to every site
};

// In the order of their identifiers.
std::vector<Filter> listFilters();
std::optional<Filter> findFilter(Id id);
// Both store the filter with these rules in place of those that it had or, should a statement fail, nothing.
void insertFilter(const Filter& filter, const std::vector<Id>& rules);
// False: it is gone, and nothing is stored.
bool updateFilter(const Filter& filter, const std::vector<Id>& rules);
// With its places at sites and its rules' places in it; the rules stay.
void deleteFilter(Id id);

}  // namespace mv
