// From the program's SQL dialect (see Database.h) to the engine's: takes the literals out of a statement, so that
// statements that differ in their values only have one shape.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SqlLiterals.h"

namespace mv {

struct SqlStatement {
  // What the engine prepares. A value stands in it as ?1, ?2, ... in the order of `values`.
  std::string shape;
  std::vector<SqlValue> values;
  // For every literal of the statement, from the first to the last: is it one of `values`, or still in its place?
  std::vector<bool> literalIsValue;
  // The fields of a select list as it names them: an alias, "name" or "vf.name". Empty where the engine has to be
  // asked.
  std::vector<std::string> fields;
  // "select from link": what a message may say of the statement, without its values.
  std::string name;
  bool isSelect = false;
};

// Select, insert, update and delete give up their literals; numbers that are a position or a count (select list, order
// by, group by, limit) and those of any other statement stay in place. Raises DatabaseError kSyntaxError: an unfinished
// literal, more than one statement, a placeholder, a NUL outside a literal, nothing at all.
SqlStatement translateSql(std::string_view sql);

// Whether two names are the same to SQL: ASCII letters without case.
bool sameSqlName(std::string_view left, std::string_view right);

}  // namespace mv
