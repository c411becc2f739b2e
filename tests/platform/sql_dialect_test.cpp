#include <gtest/gtest.h>

#include "SqlDialect.h"
#include "database/Database.h"
#include "database/RawStatement.h"

namespace {

using mv::number;
using mv::quoted;
using mv::SqlTranslation;
using mv::Statement;
using mv::translateShape;
using namespace std::string_literals;

TEST(Statement, KeepsValuesApartFromItsShape) {
  constexpr char kTable[] = "link";
  const std::string text = "\"; delete from site; --\0?1"s;
  const Statement where = " where url = " + quoted(text) + " and id < " + number(-5);
  Statement statement = "select id from " + mv::SqlText(kTable) + where + " or url in (" + quoted("x");
  statement += ", " + number(INT64_MIN) + ")";
  EXPECT_EQ(statement.shape(), "select id from link where url = \1 and id < \1 or url in (\1, \1)");
  EXPECT_EQ(statement.values(), (std::vector<mv::SqlValue>{text, std::int64_t{-5}, "x"s, INT64_MIN}));
  EXPECT_EQ(where.values().size(), 2U);
  EXPECT_EQ(translateShape(statement.shape()).sql, "select id from link where url = ?1 and id < ?2 or url in (?3, ?4)");
}

TEST(SqlDialect, TranslatesTextsAndMarks) {
  const std::pair<std::string, std::string> cases[] = {
      {R"(insert into t (a) values ("x", 'y'))", "insert into t (a) values ('x', 'y')"},
      {R"(insert into t values ("He said ""hi""", 'it''s'))", "insert into t values ('He said \"hi\"', 'it''s')"},
      {R"(insert into t values ("it's", '"', "", ''))", "insert into t values ('it''s', '\"', '', '')"},
      {"select a from t where b = \"\xff\xc3?\"", "select a from t where b = '\xff\xc3?'"},
      {R"(select a from t where b = "--" and c = "/*" -- "c)", "select a from t where b = '--' and c = '/*'"},
      {"select/* \" */a from t -- '\nwhere b = .5 + 1e3", "select/* \" */a from t -- '\nwhere b = .5 + 1e3"},
      {"select a from t where b in(\1,\1) limit \1", "select a from t where b in(?1,?2) limit ?3"},
      // Touching tokens stay apart.
      {"select a from t where b = \1"
       "5 or b = \1and c = \"x\"'y'",
       "select a from t where b = ?1 5 or b = ?2 and c = 'x' 'y'"},
      {"select [order], [a\"b] from [group] where [x y] = 1", "select [order], [a\"b] from [group] where [x y] = 1"},
      {"alter table [site] add column [unique_names] text(3);", "alter table [site] add column [unique_names] text(3)"},
  };
  for (const auto& [shape, sql] : cases) EXPECT_EQ(translateShape(shape).sql, sql);
}

TEST(SqlDialect, RefusesWhatIsNoSingleStatement) {
  const std::string refused[] = {
      "",
      "-- only a comment",
      R"(select "a)",
      "select [a",
      R"(select a from t where b = "x"; delete from site where "1" = "1")",
      "select a from t where b = ?",
      "select a from t\0 where b = 1"s,
  };
  for (const std::string& shape : refused) {
    try {
      translateShape(shape);
      ADD_FAILURE() << shape;
    } catch (const mv::DatabaseError& error) {
      EXPECT_EQ(error.number(), mv::DatabaseError::kSyntaxError) << shape;
    }
  }
}

TEST(SqlDialect, NamesFieldsAsTheSelectListDoes) {
  const struct {
    std::string sql;
    std::vector<std::string> fields;
    std::string name;
  } cases[] = {
      {"SELECT r.name, search_value, vf . name FROM rule AS r",
       {"r.name", "search_value", "vf.name"},
       "select from rule"},
      {"select count(*)  as outCount from link", {"outCount"}, "select from link"},
      {"select distinct [the topic], max(a, b) m, a+b from t", {"the topic", "m", "a+b"}, "select from t"},
      {"select (select max(id), 1 from x) as top from t", {"top"}, "select from x"},
      {"select *, id from t", {}, "select from t"},
      {"select t.* from t", {}, "select from t"},
      {"UPDATE site set a = 1", {}, "update site"},
      {"alter table [site] add column x text(3)", {}, "alter table site"},
  };
  for (const auto& c : cases) {
    const SqlTranslation translation = translateShape(c.sql);
    EXPECT_EQ(translation.fields, c.fields) << c.sql;
    EXPECT_EQ(translation.name, c.name) << c.sql;
  }
}

}  // namespace
