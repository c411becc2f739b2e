#include <string>
#include <vector>

#include "platform/Database.h"
#include "scan/FilterRules.h"
#include "support/Fixture.h"

namespace {

using mv::FilterRule;

TEST(FilterRules, CompareTheChosenPartOfALink) {
  struct Case {
    const char* field;
    const char* op;
    const char* value;
    bool matches;
  };
  const mv::FilterSubject image{"/img/banner1.gif", "host1", "gif"};
  const mv::FilterSubject page{"/page.htm", "host1", ""};
  const Case onImage[] = {
      {"Link", "Contains", "banner", true},
      {"Link", "Contains", "BANNER", false},
      {"Link", "Equals", "/img/banner1.gif", true},
      {"Link", "Equals", "/img", false},
      {"Link", "Does Not Equal", "/img", true},
      {"Link", "Does Not Equal", "/img/banner1.gif", false},
      {"Link", "Begins With", "/img", true},
      {"Link", "Begins With", "img", false},
      {"Link", "Does Not Begin With", "/img", false},
      {"Link", "Does Not Begin With", "/img/banner1.gif2", true},
      {"Link", "Ends With", ".gif", true},
      {"Link", "Ends With", "x/img/banner1.gif", false},
      {"Link", "Does Not End With", ".gif", false},
      {"Link", "Does Not End With", ".jpg", true},
      {"Domain", "Equals", "host1", true},
      {"Filetype", "Equals", "gif", true},
      {"Filetype", "Does Not Equal", "gif", false},
      {"Host", "Contains", "h", false},
      {"Link", "contains", "banner", false},
      {"Link", "", "banner", false},
  };
  for (const Case& c : onImage)
    EXPECT_EQ(mv::matches({c.field, c.op, "", "", c.value}, image), c.matches)
        << c.field << ' ' << c.op << ' ' << c.value;
  EXPECT_FALSE(mv::matches({"Filetype", "Equals", "", "", "gif"}, page));
  EXPECT_TRUE(mv::matches({"Filetype", "Does Not Equal", "", "", "gif"}, page)) << "a document is no gif";
  for (const char* op :
       {"Contains", "Equals", "Does Not Equal", "Begins With", "Does Not Begin With", "Ends With", "Does Not End With"})
    EXPECT_FALSE(mv::matches({"Filetype", op, "", "", ""}, page)) << op << " nothing";
}

TEST(FilterRules, OneMatchingRuleRejectsWhateverItsType) {
  const FilterRule other{"Link", "Contains", "Ignore", "a", "zzz"};
  const FilterRule saveTo{"Link", "Contains", "Save To", "b", "banner"};
  EXPECT_TRUE(mv::anyMatches({other, saveTo}, {"/banner", "h", ""}));
  EXPECT_FALSE(mv::anyMatches({other}, {"/banner", "h", ""}));
  EXPECT_FALSE(mv::anyMatches({}, {"/banner", "h", ""}));
}

class FilterLoading : public mvtest::ProgramTest {
 protected:
  static void addFilter(int id, const char* global, const std::string& value) {
    const std::string key = std::to_string(id);
    mv::gDatabase.execute("insert into filter (id, name, global, description) values (" + key + ", \"f\", " +
                          mv::quoted(global) + ", \"\")");
    mv::gDatabase.execute(
        "insert into rule (id, valid_rule_type_id, valid_field_id, search_value, path, name, operator) values (" + key +
        ", 2, 1, " + mv::quoted(value) + ", \"\", \"rule " + key + "\", \"Contains\")");
    mv::gDatabase.execute("insert into filter_rule_xref (filter_id, rule_id) values (" + key + ", " + key + ")");
  }
  static std::vector<std::string> values(const std::vector<FilterRule>& rules) {
    std::vector<std::string> result;
    for (const FilterRule& rule : rules) result.push_back(rule.searchValue);
    return result;
  }
};

TEST_F(FilterLoading, GlobalFiltersServeAllSitesAndOthersTheirOwn) {
  addFilter(1, "yes", "everywhere");
  addFilter(2, "no", "say \"no\"");
  addFilter(3, "no", "elsewhere");
  EXPECT_TRUE(mv::loadSiteRules(7).empty());
  mv::gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (7, 2)");
  mv::gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (8, 3)");
  EXPECT_EQ(values(mv::loadGlobalRules()), std::vector<std::string>{"everywhere"});
  const std::vector<FilterRule> rules = mv::loadSiteRules(7);
  ASSERT_EQ(values(rules), std::vector<std::string>{"say \"no\""});
  EXPECT_EQ(rules[0].fieldName, "Link");
  EXPECT_EQ(rules[0].op, "Contains");
  EXPECT_EQ(rules[0].ruleType, "Save To");
  EXPECT_EQ(rules[0].ruleName, "rule 2");
}

}  // namespace
