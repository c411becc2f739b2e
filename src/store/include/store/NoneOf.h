// A condition for large tables.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mv {

// That `column` is none of `values`, for a query of `table` under the conditions `where` on other columns. An index of
// those columns, followed by `column`, is then gone through from value to value: the rows that bear an unwanted value
// are not read, however many they are. Names and `where` are taken as they stand.
std::string noneOf(std::string_view column, const std::vector<std::string_view>& values, std::string_view table,
                   std::string_view where);

}  // namespace mv
