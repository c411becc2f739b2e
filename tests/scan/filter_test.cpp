#include <string>

#include "database/Database.h"
#include "scan/FilterRules.h"
#include "scan/clsLinkParser.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;

bool matches(const char* field, const char* op, const std::string& value, const mv::FilterSubject& subject) {
  return mv::RuleSet({{field, op, "Save To", "", value}}).anyMatches(subject);
}

TEST(FilterRules, EveryOperatorComparesEveryField) {
  // "b.c" is the beginning of the first, the end of the second, the whole of the third.
  const struct {
    const char* field;
    mv::FilterSubject subject;
  } fields[] = {{"Link", {"b.c/a", "x", "x"}}, {"Domain", {"x", "a/b.c", "x"}}, {"Filetype", {"x", "x", "b.c"}}};
  const struct {
    const char* op;
    const char* value;
    const char* matching;  // for Link, Domain, Filetype
  } cases[] = {{"Contains", ".", "111"},
               {"Contains", "b.c", "111"},
               {"Contains", "B.C", "000"},
               {"Contains", "b.c/ab", "000"},
               {"Equals", "b.c", "001"},
               {"Equals", "B.C", "000"},
               {"Does Not Equal", "b.c", "110"},
               {"Does Not Equal", "B.C", "111"},
               {"Begins With", "b.c", "101"},
               {"Begins With", "b.c/ab", "000"},
               {"Does Not Begin With", "b", "010"},
               {"Does Not Begin With", "B", "111"},
               {"Ends With", "b.c", "011"},
               {"Ends With", ".C", "000"},
               {"Does Not End With", "c", "100"},
               {"Does Not End With", "xb.c", "111"}};
  for (const auto& each : cases) {
    std::string matching;
    for (const auto& field : fields) matching += matches(field.field, each.op, each.value, field.subject) ? '1' : '0';
    EXPECT_EQ(matching, each.matching) << each.op << ' ' << each.value;
  }
  for (const std::string_view op : mv::kRuleOperators)
    EXPECT_FALSE(matches("Link", std::string(op).c_str(), "", fields[0].subject)) << "an empty value, " << op;
}

TEST(FilterRules, AnyOfThemIsEnoughAndUnknownOnesAreSkipped) {
  const mv::FilterSubject page{"/page.htm", "host1", ""};
  EXPECT_FALSE(matches("Host", "Contains", "h", page));
  EXPECT_FALSE(matches("Link", "contains", "page", page));
  EXPECT_TRUE(matches("Filetype", "Does Not Equal", "gif", page)) << "a document is no gif";
  EXPECT_FALSE(mv::RuleSet().anyMatches(page));
  EXPECT_TRUE(mv::RuleSet({{"Host", "Equals", "", "", "host1"},
                           {"Link", "Ends With", "", "", ".gif"},
                           {"Domain", "Begins With", "", "", "host"}})
                  .anyMatches(page));
}

class Filters : public ProgramTest {
 protected:
  static void addFilter(int id, const char* global, const std::string& value) {
    const std::string key = std::to_string(id);
    insert("filter", {{key, "f", global, ""}});
    insert("rule", {{key, "2", "1", value, "", "rule " + key, "Contains"}});
    insert("filter_rule_xref", {{key, key}});
  }
};

TEST_F(Filters, GlobalOnesServeAllSitesAndOthersTheirOwn) {
  addFilter(1, "yes", "everywhere");
  addFilter(2, "no", "say \"no\"");
  addFilter(3, "no", "elsewhere");
  mv::clsLinkParser parser;
  parser.SiteID = addSite("host1", folder());
  parser.Domain = "host1";
  for (const int filter : {2, 3})
    insert("site_filter_xref", {{std::to_string(parser.SiteID + filter - 2), std::to_string(filter)}});
  const auto add = [&parser](const std::string& url) {
    parser.Link = parser.URL = url;
    parser.AddLinkToDatabase();
    return parser.Flag;
  };
  EXPECT_TRUE(add("host1/everywhere/")) << "rules count from BuildFilters on";
  parser.BuildFilters();
  for (const auto& [url, kept] : {std::pair("host1/everywhere.htm", false), std::pair("host1/EVERYWHERE.htm", true),
                                  std::pair("host1/say \"no\".htm", false), std::pair("host1/elsewhere.htm", true)})
    EXPECT_EQ(add(url), kept) << url;
}

}  // namespace
