// A condition for large tables.
#pragma once

#include <string_view>
#include <vector>

#include "database/Statement.h"

namespace mv {

// That `column` is none of `values`, for a query of `table` under the conditions `where` on other columns. An index of
// those columns, followed by `column`, is then gone through from value to value: the rows that bear an unwanted value
// are not read, however many they are.
Statement noneOf(SqlText column, const std::vector<std::string_view>& values, SqlText table, const Statement& where);

}  // namespace mv
