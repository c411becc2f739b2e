// How the stores turn rows into records.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "database/Database.h"
#include "store/Id.h"

namespace mv {

// Every row of a query, each made by `make`. Raises DatabaseError.
template <class Make>
auto readAll(Recordset rows, Make make) {
  std::vector<decltype(make(std::declval<const Recordset&>()))> records;
  for (; !rows.endOfRows(); rows.moveNext()) records.push_back(make(rows));
  return records;
}

// The first row of a query, nullopt when there is none. Raises DatabaseError.
template <class Make>
auto readFirst(const Recordset& rows, Make make) {
  return rows.endOfRows() ? std::nullopt : std::optional(make(rows));
}

inline NamedId namedId(const Recordset& rows) { return {rows.number("id"), rows.text("name")}; }

// The flags that only "no" turns off.
inline bool unlessNo(const std::string& flag) { return flag != "no"; }

}  // namespace mv
