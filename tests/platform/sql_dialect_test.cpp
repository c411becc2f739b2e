#include <gtest/gtest.h>

#include "SqlDialect.h"
#include "SqlOutline.h"
#include "database/Database.h"

namespace {

using mv::SqlStatement;
using mv::SqlValue;
using mv::translateSql;
using namespace std::string_literals;

std::string shown(const std::vector<SqlValue>& values) {
  std::string text;
  for (const SqlValue& value : values) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) text += std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&value)) text += 'r' + std::to_string(*real).substr(0, 4);
    if (const auto* literal = std::get_if<std::string>(&value)) text += '<' + *literal + '>';
    text += ' ';
  }
  return text;
}

TEST(SqlDialect, TakesLiteralsOut) {
  const struct {
    std::string sql, shape, values;
  } cases[] = {
      // Texts, in both kinds of quotes.
      {R"(insert into t (a) values ("x", 'y'))", "insert into t (a) values (?1, ?2)", "<x> <y> "},
      {R"(insert into t values ("He said ""hi""", 'it''s'))", "insert into t values (?1, ?2)",
       "<He said \"hi\"> <it's> "},
      {R"(insert into t values ("it's", '"', "", ''))", "insert into t values (?1, ?2, ?3, ?4)", "<it's> <\"> <> <> "},
      {"select a from t where b = \"x\0y\""s, "select a from t where b = ?1", "<x\0y> "s},
      {"select a from t where b = \"\xff\xc3\"", "select a from t where b = ?1", "<\xff\xc3> "},
      {R"(select a from t where b = "x" -- "c)", "select a from t where b = ?1", "<x> "},
      {R"(select a from t where b = "--" and c = "/*")", "select a from t where b = ?1 and c = ?2", "<--> </*> "},
      {"select/* \" */a from t", "select a from t", ""},
      {R"(SELECT a FROM t WHERE b IN("x","y"))", "SELECT a FROM t WHERE b IN(?1,?2)", "<x> <y> "},
      // Numbers where they are values.
      {"select a from t where b = 7 and c=-5", "select a from t where b = ?1 and c=-?2", "7 5 "},
      {"update t1 set c2 = 1.5, d = .25 where e=1e3", "update t1 set c2 = ?1, d = ?2 where e=?3", "r1.50 r0.25 r1000 "},
      {"insert into t values (1E+3, 99999999999999999999)", "insert into t values (?1, ?2)", "r1000 r1000 "},
      {"insert into t values (0010)", "insert into t values (?1)", "10 "},
      {"delete from t where x2y = 1and b = 2", "delete from t where x2y = 1and b = ?1", "2 "},
      // Numbers that are a position, a count or a constant column.
      {"select 1, a from t where b = 2 order by 1 limit 5", "select 1, a from t where b = ?1 order by 1 limit 5", "2 "},
      {"select count(*), a from t group by 2 having a > 3", "select count(*), a from t group by 2 having a > ?1", "3 "},
      // Touching tokens stay apart.
      {R"(select a from t where b = "x"5)", "select a from t where b = ?1 ?2", "<x> 5 "},
      {R"(select a from t where b = "x"and c = "y")", "select a from t where b = ?1 and c = ?2", "<x> <y> "},
      // Names.
      {"select [order], [a\"b] from [group] where [x y] = 1", "select [order], [a\"b] from [group] where [x y] = ?1",
       "1 "},
      // Statements that define something keep everything in place.
      {"alter table [site] add column [unique_names] text(3)", "alter table [site] add column [unique_names] text(3)",
       ""},
      {R"(create table x (a text(3) default "it's"))", "create table x (a text(3) default 'it''s')", ""},

  };
  for (const auto& c : cases) {
    const SqlStatement statement = translateSql(c.sql);
    EXPECT_EQ(statement.shape, c.shape) << c.sql;
    EXPECT_EQ(shown(statement.values), c.values) << c.sql;
  }
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
  for (const std::string& sql : refused) {
    try {
      translateSql(sql);
      ADD_FAILURE() << sql;
    } catch (const mv::DatabaseError& error) {
      EXPECT_EQ(error.number(), mv::DatabaseError::kSyntaxError) << sql;
    }
  }
}

// What is found by its outline is what a translation of its own would have given.
TEST(SqlOutline, ServesStatementsThatDifferInTheirLiterals) {
  const struct {
    std::string made, other;
    bool served;
  } cases[] = {
      {"select a from t where b = 7 and c = \"x\"", "select a from t where b = 1e3 and c = 'it''s \"\"'", true},
      {"insert into t values (\"a\"\"b\", -5, .5)", "insert into t values (\"\", -6, .5)", false},
      {"insert into t values (\"a\"\"b\", -5)", "insert into t values (\"--[;?\", -99999999999999999999)", true},
      {"select a from t where b <> 7 and c = 1", "select a from t where b <> \"x\" and c = 1", false},
      {"select a from t where b <> 7 and c = 1", "select a from t where b <> 8 and c = 2", true},
      {"select a from t1 where b = 1 limit 5", "select a from t1 where b = 2 limit 5", true},
      {"select a from t1 where b = 1 limit 5", "select a from t1 where b = 2 limit 6", false},
      {"select a from t1 where b = 1", "select a from t2 where b = 1", false},
      {"select a from t where b = 1", "select a from t where b  = 1", false},
      {"select a from t where b = 1", "select a from t where b = 1x", false},
      {"select a from t where b = 1", "select a from t where b = 1 -- 2", false},
      {"select a from t where b = 1", "select a from t where b = \"1", false},
      {"select \"x\" from t", "select \"y\" from t", false},
      {"select \"x\" as a from t", "select \"y\" as a from t", true},
      {"create table t (a default \"x\")", "create table t (a default \"y\")", false},
      {"delete from t where x2y = 1and b = 2", "delete from t where x2y = 1and b = 3", true},
  };
  for (const auto& c : cases) {
    mv::SqlOutline made, other;
    std::vector<SqlValue> values;
    const mv::SqlPattern pattern(translateSql(c.made), made.read(c.made) ? made : mv::SqlOutline());
    const bool served =
        pattern.isReusable() && other.read(c.other) && made.key() == other.key() && pattern.valuesOf(other, values);
    EXPECT_EQ(served, c.served) << c.made << '\n' << c.other;
    if (!served) continue;
    const SqlStatement own = translateSql(c.other);
    EXPECT_EQ(pattern.statement().shape, own.shape);
    EXPECT_EQ(pattern.statement().fields, own.fields);
    EXPECT_EQ(shown(values), shown(own.values));
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
    const SqlStatement statement = translateSql(c.sql);
    EXPECT_EQ(statement.fields, c.fields) << c.sql;
    EXPECT_EQ(statement.name, c.name) << c.sql;
  }
}

}  // namespace
