#include "store/NoneOf.h"

namespace mv {

namespace {

Statement differences(SqlText name, const std::vector<std::string_view>& values) {
  Statement text = "";
  SqlText separator = "";
  for (const std::string_view value : values) {
    text += separator + name + " <> " + quoted(value);
    separator = " and ";
  }
  return text;
}

}  // namespace

Statement noneOf(SqlText column, const std::vector<std::string_view>& values, SqlText table, const Statement& where) {
  const Statement smallest = "select min(" + column + ") from " + table + " where " + where;
  return differences(column, values) + " and " + column + " in (with recursive present (value) as (" + smallest +
         " union all select (" + smallest + " and " + column +
         " > value) from present where value is not null) select value from present where " +
         differences("value", values) + ")";
}

}  // namespace mv
