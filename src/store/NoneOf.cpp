#include "store/NoneOf.h"

#include "database/Database.h"

namespace mv {

namespace {

std::string differences(std::string_view name, const std::vector<std::string_view>& values) {
  std::string text;
  for (const std::string_view value : values)
    text.append(text.empty() ? "" : " and ").append(name).append(" <> ").append(quoted(value));
  return text;
}

}  // namespace

std::string noneOf(std::string_view column, const std::vector<std::string_view>& values, std::string_view table,
                   std::string_view where) {
  const std::string name(column);
  const std::string smallest = "select min(" + name + ") from " + std::string(table) + " where " + std::string(where);
  return differences(column, values) + " and " + name + " in (with recursive present (value) as (" + smallest +
         " union all select (" + smallest + " and " + name +
         " > value) from present where value is not null) select value from present where " +
         differences("value", values) + ")";
}

}  // namespace mv
