// What a field reads as, whatever the engine keeps in it.

#include "DatabaseTest.h"

namespace mvtest {
namespace {

// The engine itself says what is right: it converts each value beside it.
TEST_F(DatabaseTest, EveryKindOfValueReadsAsTheEngineConvertsIt) {
  const mv::SqlText values[] = {"null",
                                "0",
                                "-12",
                                "9223372036854775807",
                                "2.5",
                                "-3.99",
                                "1.0e20",
                                "'12 apples'",
                                "'  7'",
                                "'+8x'",
                                "'-3.9'",
                                "'1e3'",
                                "'abc'",
                                "''",
                                "'\xC3\xA4'",
                                "'99999999999999999999'",
                                "'-99999999999999999999'",
                                "cast('' as blob)",
                                "cast('12x' as blob)",
                                "'a' || char(0) || 'b'"};
  for (const mv::SqlText& value : values) {
    const mv::Recordset row = db.query("select " + value + " as v, cast(" + value + " as text) as t, cast(" + value +
                                       " as integer) as n, " + value + " is null as missing");
    EXPECT_EQ(row.text("v"), row.text("t")) << value.text();
    EXPECT_EQ(row.number("v"), row.number("n")) << value.text();
    EXPECT_EQ(row.isNull("v"), row.number("missing") == 1) << value.text();
  }
  const mv::Recordset kinds = db.query("select 'a' || char(0) || 'b' as cut, 2.5 as real, '42 x' as leading");
  EXPECT_EQ(kinds.text("cut"), std::string("a\0b", 3));
  EXPECT_EQ(kinds.text("real"), "2.5");
  EXPECT_EQ(kinds.number("leading"), 42);
}

}  // namespace
}  // namespace mvtest
