// The site store: what is replaced, what goes with a site, and what is made of typed texts.

#include "app/Settings.h"
#include "store/LinkCleaner.h"
#include "store/SiteDerivations.h"
#include "store/SiteStore.h"
#include "testkit/Fixture.h"
#include "testkit/WallMeter.h"

namespace {

using namespace mvtest;
using mv::gDatabase;

constexpr const char* kTables[] = {"site_paths",     "site_filetype_xref", "site_filter_xref",
                                   "site_form_xref", "site_field_xref",    "link"};

mv::Site site(int id, const std::string& name) {
  return {id, name, 24, 10, 11, 1000, "/tmp/x", true, false, 3, false, "NewFile"};
}

class SiteStoreTest : public ProgramTest {
 protected:
  // One row of `siteId` in every table.
  static void fill(int siteId) {
    mv::insertSite(site(siteId, "host"));
    for (const std::string table : kTables) insert(table + " (site_id)", {{std::to_string(siteId)}});
  }
  long rowsOf(int siteId) const {
    long rows = count("site", "id = " + std::to_string(siteId));
    for (const char* table : kTables) rows += count(table, "site_id = " + std::to_string(siteId));
    return rows;
  }
  std::string list(const std::string& column, const std::string& table, int siteId) const {
    return value("select group_concat(" + column + ") from (select * from " + table +
                 " where site_id = " + std::to_string(siteId) + " order by rowid)");
  }
};

TEST_F(SiteStoreTest, AssociationsAreReplaced) {
  mv::saveSiteFileTypes(8, {9});
  mv::saveSiteFileTypes(7, {1, 2});
  mv::saveSiteFileTypes(7, {3, 1});
  EXPECT_EQ(list("file_type_id", "site_filetype_xref", 7), "3,1");
  EXPECT_EQ(list("file_type_id", "site_filetype_xref", 8), "9");

  mv::saveSiteFilters(7, {{4, "", false}});
  mv::saveSiteFilters(7, {{5, "", false}, {7, "", true}, {9, "", false}});
  mv::addDroppedFilters(7, "9\r\n16 x\r\nabc\r\n\r\n17");
  EXPECT_EQ(list("filter_id", "site_filter_xref", 7), "5,9,9,16,0,0,17");
}

TEST_F(SiteStoreTest, DeletesWhatBelongsToASite) {
  for (const int id : {0, 1, 2, 3}) fill(id);
  EXPECT_TRUE(mv::deleteSite(1));
  EXPECT_EQ(rowsOf(1), 0);
  EXPECT_EQ(rowsOf(2), 7);
  mv::clearLinkCache(2);
  EXPECT_EQ(rowsOf(2), 6);
  mv::discardNewSite(3);
  EXPECT_EQ(rowsOf(3), 3) << "login, values and links stay";
  EXPECT_FALSE(mv::deleteSite(0));
  EXPECT_EQ(rowsOf(0), 7);
  EXPECT_FALSE(mv::updateSite(site(1, "gone")));
}

TEST_F(SiteStoreTest, ALargeLinkCacheIsClearedWithoutHoldingTheThread) {
  mvtest::insertNumbered("link (id, site_id)", 2, 5001, "i, 1 + i % 2");
  mv::clearLinkCache(1);
  EXPECT_GT(count("link", "site_id = 1"), 0) << "all at once";
  gDatabase.execute("insert into link (id, site_id) values (6000, 1)");
  EXPECT_TRUE(waitFor([] { return mv::LinkCleaner::instance().isIdle(); }));
  EXPECT_EQ(value("select group_concat(id) from link where site_id = 1"), "6000") << "stored after the clearing";
  EXPECT_TRUE(mv::deleteSite(2));
  mv::LinkCleaner::instance().finish();
  EXPECT_EQ(count("link", "site_id = 2"), 0);

  // Site 1 is there, sites 5 and 9 are gone.
  mv::insertSite(site(1, "here"));
  gDatabase.execute("insert into link (id, site_id) values (7001, 5), (7002, 9), (7003, 9)");
  mv::LinkCleaner::instance().resume();
  EXPECT_EQ(value("select group_concat(id) from link"), "6000");
}

TEST_F(SiteStoreTest, ClearingWaitsForAnotherProgramWithoutHoldingTheThread) {
  mvtest::insertNumbered("link (id, site_id)", 2, 5001, "i, 1");
  mv::clearLinkCache(1);
  mv::Database other;
  other.open(mv::gDatabasePath);
  other.execute("begin immediate");
  const mvtest::WallMeter turn;
  waitFor([] { return false; }, 200);
  EXPECT_FALSE(mv::LinkCleaner::instance().isIdle());
  EXPECT_GT(count("link"), 0);
  other.execute("rollback");
  EXPECT_TRUE(waitFor([] { return mv::LinkCleaner::instance().isIdle(); }));
  EXPECT_FALSE(mv::LinkCleaner::instance().hasFailed());
  EXPECT_EQ(count("link"), 0);
  EXPECT_LT(turn.longest, 300);
}

TEST_F(SiteStoreTest, LinksAreClearedByTheVeryValueOfTheirSite) {
  for (const int id : {1, 2}) mv::insertSite(site(id, "here"));
  gDatabase.execute(
      "insert into link (id, site_id) values (1, 1), (2, 2), (3, 1.5), (4, 4294967297), (5, 'x'), (6, 2.5), (7, 1)");
  mv::LinkCleaner::instance().resume();
  EXPECT_EQ(value("select group_concat(id) from link"), "1,2,7");
  gDatabase.execute("insert into link (id, site_id) values (8, 4294967297)");
  mv::clearLinkCache(std::int64_t{4294967297});
  EXPECT_EQ(value("select group_concat(id) from link"), "1,2,7");
}

TEST(SiteDerivations, TakeTheTypedTextApart) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"http://host/P/index.html", "host/P/index.html", "host"},
      {"host:8080/a", "host:8080/a", "host:8080"},
      {"HTTP://host/a", "HTTP://host/a", "HTTP:"},
      {"https://host", "https://host", "https:"},
      {"http://http://a", "http://a", "http:"},
      {"", "", ""},
  };
  for (const auto& [typed, name, domain] : cases) {
    EXPECT_EQ(mv::siteLocation(typed), name);
    EXPECT_EQ(mv::siteDomain(name), domain) << typed;
  }
}

}  // namespace
