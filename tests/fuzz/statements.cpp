// The database's statements: a shape that is translated, and a value that comes back as it went in.
#include <string>

#include "Fuzz.h"
#include "SqlDialect.h"
#include "app/Settings.h"
#include "database/Database.h"
#include "store/EscapedAddress.h"
#include "testkit/ProgramFolder.h"

void mvfuzz::fuzzOne(std::string_view input) {
  static const mvtest::ProgramFolder folder;
  try {
    const mv::SqlTranslation translation = mv::translateShape(input);
    require(translation.sql.find('\0') == std::string::npos, "the engine reads a statement to its end");
  } catch (const mv::DatabaseError& error) {
    require(error.number() == mv::DatabaseError::kSyntaxError, "a shape is refused as a syntax error");
  }

  const mv::Recordset row = mv::gDatabase.query("select " + mv::quoted(input) + " as kept, count(*) as outCount " +
                                                "from site where name = " + mv::quoted(input));
  require(row.text("kept") == input, "a value comes back as it went in");
  require(row.number("outCount") == 0, "a value is no condition");
}
