// A query's rows as structs.
#pragma once

#include <utility>
#include <vector>

#include "database/Database.h"
#include "store/NamedId.h"

namespace mv {

// What `make` makes of every row, in the order of the rows.
template <class Make>
auto readAll(Recordset rows, Make make) {
  std::vector<decltype(make(std::declval<const Recordset&>()))> result;
  for (; !rows.endOfRows(); rows.moveNext()) result.push_back(make(std::as_const(rows)));
  return result;
}

inline NamedId readNamedId(const Recordset& row) { return {row.number("id"), row.text("name")}; }

}  // namespace mv
