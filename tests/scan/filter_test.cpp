#include <string>

#include "platform/Database.h"
#include "scan/FilterRules.h"
#include "scan/clsLinkParser.h"
#include "support/Fixture.h"

namespace {

TEST(FilterRules, CompareTheChosenPartOfALink) {
  const mv::FilterSubject image{"/img/banner1.gif", "host1", "gif"};
  const mv::FilterSubject page{"/page.htm", "host1", ""};
  const struct {
    const char *field, *op, *match, *other;
  } cases[] = {
      {"Link", "Contains", "banner", "BANNER"},
      {"Link", "Equals", "/img/banner1.gif", "/img"},
      {"Link", "Does Not Equal", "/img", "/img/banner1.gif"},
      {"Link", "Begins With", "/img", "img"},
      {"Link", "Does Not Begin With", "/img/banner1.gif2", "/img"},
      {"Link", "Ends With", ".gif", "x/img/banner1.gif"},
      {"Link", "Does Not End With", ".jpg", ".gif"},
      {"Domain", "Equals", "host1", "host"},
      {"Filetype", "Equals", "gif", "GIF"},
  };
  for (const auto& c : cases) {
    EXPECT_TRUE(mv::matches({c.field, c.op, "Save To", "", c.match}, image)) << c.op << ' ' << c.match;
    EXPECT_FALSE(mv::matches({c.field, c.op, "Save To", "", c.other}, image)) << c.op << ' ' << c.other;
  }
  EXPECT_FALSE(mv::matches({"Host", "Contains", "", "", "h"}, image));
  EXPECT_FALSE(mv::matches({"Link", "contains", "", "", "banner"}, image));
  EXPECT_TRUE(mv::matches({"Filetype", "Does Not Equal", "", "", "gif"}, page)) << "a document is no gif";
  EXPECT_FALSE(mv::matches({"Link", "Does Not Equal", "", "", ""}, page)) << "an empty text";
}

class Filters : public mvtest::ProgramTest {
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
};

TEST_F(Filters, GlobalOnesServeAllSitesAndOthersTheirOwn) {
  addFilter(1, "yes", "everywhere");
  addFilter(2, "no", "say \"no\"");
  addFilter(3, "no", "elsewhere");
  mv::clsLinkParser parser;
  parser.SiteID = mvtest::addSite("host1", folder());
  parser.Domain = "host1";
  for (const int filter : {2, 3})
    mv::gDatabase.execute("insert into site_filter_xref (site_id, filter_id) values (" +
                          std::to_string(parser.SiteID + filter - 2) + ", " + std::to_string(filter) + ")");
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
