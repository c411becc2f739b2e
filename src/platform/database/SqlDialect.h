// From the shape of a statement (see Statement.h and Database.h) to what the engine is given. Done once per shape.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mv {

struct SqlTranslation {
  // What the engine prepares. The values stand in it as ?1, ?2, ...
  std::string sql;
  // The fields of a select list as it names them: an alias, "name" or "vf.name". Empty where the engine has to be
  // asked.
  std::vector<std::string> fields;
  // "select from link": what a message may say of the statement.
  std::string name;
  bool isSelect = false;
  bool saysReplace = false;  // anywhere
};

// Raises DatabaseError kSyntaxError: an unfinished text, more than one statement, a placeholder that is no value's, a
// NUL, nothing at all.
SqlTranslation translateShape(std::string_view shape);

// Whether two names are the same to SQL: ASCII letters without case.
bool sameSqlName(std::string_view left, std::string_view right);

}  // namespace mv
