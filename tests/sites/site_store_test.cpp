#include <gtest/gtest.h>

#include "app/Settings.h"
#include "sites/LinkCleaner.h"
#include "sites/SiteStore.h"
#include "support/Fixture.h"

namespace {

using mv::gDatabase;

constexpr const char* kTables[] = {"site_paths",     "site_filetype_xref", "site_filter_xref",
                                   "site_form_xref", "site_field_xref",    "link"};

class SiteStoreTest : public mvtest::ProgramTest {
 protected:
  static mv::SiteValues values(const std::string& name) {
    mv::SiteValues site;
    site.name = name;
    site.upperLimit = "24";
    site.lowerLimit = "10";
    site.pagesToScan = "11";
    site.filesToDownload = "1000";
    site.downloadPath = "/tmp/x";
    site.autoScan = "yes";
    site.domain = mv::siteDomain(name);
    site.alternateMatchpath = "no";
    site.hops = 3;
    site.uniqueNames = "no";
    site.baseName = "NewFile";
    return site;
  }

  // One row of `siteId` in every table.
  static void fill(int siteId) {
    mv::insertSite(siteId, values("host"));
    for (const char* table : kTables)
      gDatabase.execute(std::string("insert into ") + table + " (site_id) values (" + std::to_string(siteId) + ")");
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

TEST_F(SiteStoreTest, ASiteComesBackAsItWasWritten) {
  mv::SiteValues site = values("host/P/\"quoted\" it's.html");
  site.downloadPath = "/home/\"me\"/it's; delete from site";
  site.baseName = "Zo\xc3\xab";
  site.upperLimit = "99999999999";
  mv::insertSite(12, site);
  for (int pass = 0; pass < 2; ++pass) {
    const auto loaded = mv::loadSite(12);
    ASSERT_TRUE(loaded);
    EXPECT_EQ(loaded->name, site.name);
    EXPECT_EQ(loaded->upperLimit, site.upperLimit);
    EXPECT_EQ(loaded->lowerLimit, site.lowerLimit);
    EXPECT_EQ(loaded->pagesToScan, site.pagesToScan);
    EXPECT_EQ(loaded->filesToDownload, site.filesToDownload);
    EXPECT_EQ(loaded->downloadPath, site.downloadPath);
    EXPECT_EQ(loaded->autoScan, site.autoScan);
    EXPECT_EQ(loaded->hops, site.hops);
    EXPECT_EQ(loaded->alternateMatchpath, site.alternateMatchpath);
    const auto naming = mv::loadSiteNaming(12);
    ASSERT_TRUE(naming);
    EXPECT_EQ(naming->uniqueNames, site.uniqueNames);
    EXPECT_EQ(naming->baseName, site.baseName);
    const auto row = mv::loadSiteRow(12);
    ASSERT_EQ(row.size(), 1U);
    EXPECT_EQ(row[0].id, 12);
    EXPECT_EQ(row[0].domain, site.domain);
    EXPECT_EQ(row[0].uniqueNames, site.uniqueNames);

    site = values("other");
    site.lowerLimit = "1";
    site.upperLimit = "2";
    site.pagesToScan = "3";
    site.filesToDownload = "4";
    site.hops = 100;
    site.autoScan = "no";
    site.alternateMatchpath = site.uniqueNames = "yes";
    if (pass == 0) mv::updateSite(12, site);
  }
  EXPECT_FALSE(mv::loadSite(13));
  EXPECT_FALSE(mv::loadSiteNaming(13));
  EXPECT_TRUE(mv::loadSiteRow(13).empty());
}

TEST_F(SiteStoreTest, UpdatesOneSiteAndListsAllById) {
  mv::insertSite(3, values("c"));
  mv::insertSite(1, values("a"));
  mv::updateSite(3, values("d"));
  const auto sites = mv::listSites();
  ASSERT_EQ(sites.size(), 2U);
  EXPECT_EQ(sites[0].name + sites[1].name, "ad");
}

TEST_F(SiteStoreTest, RefusesLimitsThatAreNoNumberBeforeWriting) {
  mv::insertSite(1, values("a"));
  for (const char* limit : {"", " ", "1x", "-1", "1.5", "1, name = 2"}) {
    for (std::string mv::SiteValues::*member : {&mv::SiteValues::upperLimit, &mv::SiteValues::lowerLimit,
                                                &mv::SiteValues::pagesToScan, &mv::SiteValues::filesToDownload}) {
      mv::SiteValues site = values("b");
      site.*member = limit;
      EXPECT_THROW(mv::insertSite(2, site), mv::DatabaseError) << limit;
      EXPECT_THROW(mv::updateSite(1, site), mv::DatabaseError) << limit;
    }
  }
  EXPECT_EQ(count("site", "name = \"a\""), 1);
  EXPECT_EQ(count("site"), 1);
}

TEST_F(SiteStoreTest, AssociationsAreReplaced) {
  mv::saveSiteFileTypes(8, {9});
  mv::saveSiteFileTypes(7, {1, 2});
  mv::saveSiteFileTypes(7, {3, 1});
  EXPECT_EQ(list("file_type_id", "site_filetype_xref", 7), "3,1");
  EXPECT_EQ(list("file_type_id", "site_filetype_xref", 8), "9");
  const auto types = mv::loadSiteFileTypes(7);
  ASSERT_EQ(types.size(), 2U);
  EXPECT_EQ(std::min(types[0].name, types[1].name), "gif");

  gDatabase.execute("insert into filter (id, name, global) values (5, \"five\", \"no\"), (9, \"nine\", \"\")");
  mv::saveSiteFilters(7, {{4, "no"}});
  mv::saveSiteFilters(7, {{5, "no"}, {7, "yes"}, {9, ""}});
  EXPECT_EQ(list("filter_id", "site_filter_xref", 7), "5,9");
  const auto filters = mv::loadSiteFilters(7);
  ASSERT_EQ(filters.size(), 2U);
  EXPECT_EQ(filters[0].name + filters[0].global + filters[1].name, "fivenonine");

  mv::saveSiteFieldValues(7, {{17, "a"}});
  mv::saveSiteFieldValues(7, {{17, "me"}, {18, "it's \"secret\""}});
  mv::saveSiteFieldValues(7, {});
  const auto fields = mv::loadSiteFieldValues(7);
  ASSERT_EQ(fields.size(), 2U);
  EXPECT_EQ(fields[0].fieldId, 17);
  EXPECT_EQ(fields[1].value, "it's \"secret\"");
  EXPECT_NE(fields[0].id, fields[1].id);

  const auto defaults = mv::loadDefaultFileTypes();
  ASSERT_FALSE(defaults.empty());
  EXPECT_EQ(defaults[0].name, "jpg");
  EXPECT_EQ(static_cast<long>(defaults.size()), count("valid_filetypes", "download_by_default = \"yes\""));
}

TEST_F(SiteStoreTest, TheLoginFormIsOneOrNone) {
  EXPECT_EQ(mv::siteLoginForm(7), 0);
  mv::saveSiteForm(7, 20);
  mv::saveSiteForm(7, 21);
  mv::saveSiteFieldValues(7, {{20, "me"}});
  EXPECT_EQ(mv::siteLoginForm(7), 21);
  EXPECT_EQ(list("form_id", "site_form_xref", 7), "21");
  for (const int none : {mv::kNoLoginForm, 0}) {
    fill(30 + none);
    mv::saveSiteForm(30 + none, none);
    EXPECT_EQ(mv::siteLoginForm(30 + none), 0);
    EXPECT_TRUE(mv::loadSiteFieldValues(30 + none).empty());
  }
  EXPECT_EQ(mv::loadSiteFieldValues(7).size(), 1U);
}

TEST_F(SiteStoreTest, DroppedFiltersAreAddedLineByLine) {
  mv::saveSiteFilters(7, {{12, "no"}});
  mv::addDroppedFilters(7, "12\r\n15\r\n");
  EXPECT_EQ(list("filter_id", "site_filter_xref", 7), "12,12,15");
  mv::addDroppedFilters(8, "");
  mv::addDroppedFilters(8, "16 x\r\nabc\r\n\r\n17");
  EXPECT_EQ(list("filter_id", "site_filter_xref", 8), "16,0,0,17");
}

TEST_F(SiteStoreTest, DeletesWhatBelongsToASite) {
  for (const int id : {1, 2, 3}) fill(id);
  mv::deleteSite(1);
  EXPECT_EQ(rowsOf(1), 0);
  EXPECT_EQ(rowsOf(2), 7);
  mv::deleteSite(99);
  mv::clearLinkCache(2);
  EXPECT_EQ(rowsOf(2), 6);
  mv::discardNewSite(3);
  EXPECT_EQ(rowsOf(3), 3) << "login, values and links stay";
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(SiteStoreTest, ALargeLinkCacheIsClearedWithoutHoldingTheThread) {
  gDatabase.execute(
      "insert into link (id, site_id) with recursive n(i) as (select 2 union all select i + 1 from n where i < 5001) "
      "select i, 1 + i % 2 from n");
  mv::clearLinkCache(1);
  EXPECT_GT(count("link", "site_id = 1"), 0) << "all at once";
  gDatabase.execute("insert into link (id, site_id) values (6000, 1)");
  EXPECT_TRUE(mvtest::waitFor([] { return mv::LinkCleaner::instance().isIdle(); }));
  EXPECT_EQ(value("select group_concat(id) from link where site_id = 1"), "6000") << "stored after the clearing";
  EXPECT_EQ(count("link", "site_id = 2"), 2500);

  mv::deleteSite(2);
  mv::LinkCleaner::instance().finish();
  EXPECT_EQ(count("link", "site_id = 2"), 0);
}

TEST_F(SiteStoreTest, DeletingNoSiteIsAMessage) {
  fill(0);
  mv::deleteSite(0);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_EQ(dialogs.messages[0].title, QStringLiteral("No Site Selected"));
  EXPECT_EQ(dialogs.messages[0].text, QStringLiteral("Please select a web site to delete. "));
  EXPECT_EQ(dialogs.messages[0].icon, mv::MessageIcon::Information);
  EXPECT_EQ(rowsOf(0), 7);
}

TEST(SiteDerivations, TakeTheTypedTextApart) {
  struct Case {
    const char* typed;
    const char* name;
    const char* domain;
  };
  const Case cases[] = {
      {"http://host/P/index.html", "host/P/index.html", "host"},
      {"http://host", "host", "host"},
      {"host:8080/a", "host:8080/a", "host:8080"},
      {"HTTP://host/a", "HTTP://host/a", "HTTP:"},
      {"https://host", "https://host", "https:"},
      {"http://http://a", "http://a", "http:"},
      {"", "", ""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(mv::siteLocation(c.typed), c.name);
    EXPECT_EQ(mv::siteDomain(mv::siteLocation(c.typed)), c.domain) << c.typed;
  }
  const std::pair<const char*, long> hops[] = {{"", 0},      {"0", 0},  {"3", 3}, {"100", 100},
                                               {"101", 100}, {"-3", 0}, {"x", 0}, {"99999999999999999999", 100}};
  for (const auto& [typed, number] : hops) EXPECT_EQ(mv::siteHops(typed), number) << typed;

  std::string accents;
  for (int i = 0; i < 199; ++i) accents += "\xc3\xab";
  EXPECT_EQ(mv::siteBaseName(accents), accents);
  EXPECT_EQ(mv::siteBaseName(accents + "x"), "NewFile");
  EXPECT_EQ(mv::siteBaseName(std::string(199, 'x')), std::string(199, 'x'));
  EXPECT_EQ(mv::siteBaseName(""), "NewFile");
}

}  // namespace
