
#include "base/WebAddress.h"
#include "store/NoneOf.h"
#include "store/ProgramDatabase.h"
#include "store/Sequence.h"
#include "store/WindowPlaces.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using mv::gDatabase;
using mv::number;
using mv::SqlText;
using mv::Statement;

class ProgramDatabaseTest : public ProgramTest {};

TEST_F(ProgramDatabaseTest, SequencesCountOnAndAnUnknownOneIsReported) {
  gDatabase.execute("update valid_sid set next_value = 41 where sid_name = \"link_id\"");
  EXPECT_EQ(mv::nextSequenceValue("link_id"), 41);
  EXPECT_EQ(mv::nextSequenceValue("link_id"), 42);
  EXPECT_TRUE(dialogs.messages().empty());
  EXPECT_EQ(mv::nextSequenceValue("no_id"), 0);
  ASSERT_EQ(dialogs.messages().size(), 1U);
  EXPECT_TRUE(dialogs.messages()[0].text.contains("3021"));
}

TEST_F(ProgramDatabaseTest, ShipsTheRowsThatTheProgramCountsOn) {
  for (const char* name : {"site_id", "filter_id", "rule_id", "field_info_id", "tag_id", "filename_id"})
    EXPECT_GE(mv::nextSequenceValue(name), 1) << name;
  EXPECT_GT(mv::nextSequenceValue("link_id"), 1) << "1 is the start location";
  EXPECT_GT(mv::nextSequenceValue("form_id"), 24);
  EXPECT_EQ(count("pref", "quit_time = 8 and max_connections = 3"), 1);
  EXPECT_EQ(value("select name from form where id = 24"), "***None***");
  // Form 20 asks for user name, then password; form 21 the other way round.
  EXPECT_EQ(value("select group_concat(prompt) from (select * from field_info where id between 17 and 20 order by id)"),
            "User name,Password,Password,User name");
  EXPECT_EQ(value("select download_by_default from valid_filetypes where name = \"jpg\""), "yes");
  EXPECT_EQ(count("(select name from valid_filetypes group by name having count(*) > 1)"), 0);
  EXPECT_EQ(count("valid_tag", "tag not like '<%='"), 0);
  EXPECT_EQ(count("valid_tag", "tag in (\"<a * href=\", \"<img * src=\", \"<img * srcset=\")"), 3);
}

// The queues of scan and download: what "<>" gives, without reading past the links that are handled.
TEST_F(ProgramDatabaseTest, UnwantedValuesAreNotReadAndNoWantedOneIsMissed) {
  const SqlText types[] = {"\"File\"", "\"file\"", "\"Document\"", "\"Email Address\"", "\"\"", "\"Zoo\"", "null"};
  const SqlText states[] = {"\"Done\"", "\"False\"", "\"done\"", "\"Error\"", "\"\"", "null"};
  int id = 0;
  for (const int site : {7, 8})
    for (const SqlText type : types)
      for (const SqlText status : states)
        gDatabase.execute("insert into link (id, site_id, link_type, status) values (" + number(++id) + ", " +
                          number(site) + ", " + type + ", " + status + ")");
  const Statement files = "site_id = 7 and link_type = \"File\" and ",
                  pages = "site_id = 7 and status = \"False\" and ";
  const struct {
    Statement plain, narrow;
    int rows;
  } cases[] = {
      {files + "status <> \"Done\"", files + mv::noneOf("status", {"Done"}, "link", "site_id = 7"), 6},
      {pages + "link_type <> \"File\" and link_type <> \"Email Address\"",
       pages + mv::noneOf("link_type", {"File", "Email Address"}, "link", "site_id = 7 and status = \"False\""), 3},
  };
  for (const auto& c : cases) {
    const auto ids = [](const Statement& where) {
      return gDatabase
          .query("select group_concat(id) as ids from (select id from link where " + where + " order by id)")
          .text("ids");
    };
    EXPECT_EQ(ids(c.narrow), ids(c.plain));
    EXPECT_EQ(gDatabase.count("select count(*) as outCount from link where " + c.narrow), c.rows);
    std::string plan;
    for (mv::Recordset step = gDatabase.query("explain query plan select * from link where " + c.narrow);
         !step.endOfRows(); step.moveNext())
      plan += step.text("detail") + '\n';
    EXPECT_TRUE(plan.find("link_site_status_type (site_id=? AND status=? AND link_type=?)") != std::string::npos)
        << plan;
    EXPECT_EQ(plan.find("SCAN link"), std::string::npos) << plan;
  }
}

TEST_F(ProgramDatabaseTest, ACurrentDatabaseIsNotUpgraded) {
  mvtest::insert("site (id, unique_names, base_name, alternate_matchpath)", {{"1", "yes", "x", ""}});
  gDatabase.execute("update valid_sid set next_value = 9 where sid_name = \"filename_id\"");
  mv::openProgramDatabase(mv::gDatabasePath);
  mv::upgradeDatabase();
  EXPECT_EQ(count("site", "unique_names = \"yes\" and base_name = \"x\" and alternate_matchpath = \"\""), 1);
  EXPECT_EQ(count("valid_sid", "sid_name = \"filename_id\" and next_value = 9"), 1);
}

TEST_F(ProgramDatabaseTest, AnOlderDatabaseIsUpgraded) {
  // The layout before files could be numbered.
  gDatabase.execute("alter table site drop column unique_names");
  gDatabase.execute("alter table site drop column base_name");
  gDatabase.execute(
      "insert into site (id, name, alternate_matchpath) values (1, \"a\", \"yes\"), (2, \"b\", \"\"), (3, \"c\", "
      "null)");
  gDatabase.execute("drop index link_url");
  gDatabase.execute("delete from valid_sid where sid_name = \"filename_id\"");
  mv::openProgramDatabase(mv::gDatabasePath);
  mv::upgradeDatabase();
  mv::ensureIndexes();
  EXPECT_EQ(count("sqlite_schema", "name = 'link_url'"), 1);
  EXPECT_EQ(count("site", "unique_names = \"no\" and base_name = \"NewFile\""), 3);
  EXPECT_EQ(value("select alternate_matchpath from site where id = 1"), "yes");
  EXPECT_EQ(value("select alternate_matchpath from site where id = 2"), "no");
  EXPECT_EQ(count("site", "alternate_matchpath is null"), 1);
  EXPECT_EQ(count("valid_sid", "sid_name = \"filename_id\" and next_value = 1"), 1);
}

TEST_F(ProgramDatabaseTest, AnUpgradePassesOverWhatIsThereAlready) {
  gDatabase.execute("alter table site drop column unique_names");
  gDatabase.execute("update valid_sid set next_value = 5 where sid_name = \"filename_id\"");
  mvtest::insert("site (id, name, base_name)", {{"1", "a", "Mine"}});
  mv::upgradeDatabase();
  EXPECT_EQ(count("site", "unique_names = \"no\" and base_name = \"Mine\""), 1);
  EXPECT_EQ(value("select group_concat(next_value) from valid_sid where sid_name = \"filename_id\""), "5");
}

TEST_F(ProgramDatabaseTest, PasswordsOfWindowTitlesOfEarlierVersionsGo) {
  const std::string masked = "Scan: " + mv::maskPassword("me:secret@h/");
  for (const char* title : {"Scan: me:secret@h/", "Download: https://me:secret@h/", "Paths: me@h", "Web Sites"})
    mv::saveWindowPosition(title, 1, 2, 3, 4);
  mv::maskPasswordsOfWindowPositions();
  EXPECT_EQ(count("win_pos", "wname like '%secret%'"), 0);
  EXPECT_EQ(count("win_pos", "wtop = 1"), 4);
  EXPECT_EQ(count("win_pos", "wname = '" + masked + "'"), 1);

  mv::saveWindowPosition("Scan: me:secret@h/", 5, 2, 3, 4);
  mv::maskPasswordsOfWindowPositions();
  EXPECT_EQ(value("select group_concat(wtop) from win_pos where wname = '" + masked + "'"), "1");
  EXPECT_EQ(count("win_pos", "wname like '%secret%'"), 0);
}

}  // namespace
