#include <gtest/gtest.h>

#include "store/ProgramDatabase.h"
#include "store/Sequence.h"
#include "support/Fixture.h"

namespace {

using mv::gDatabase;

class ProgramDatabaseTest : public mvtest::ProgramTest {
 protected:
};

TEST_F(ProgramDatabaseTest, SequencesCountOnAndAnUnknownOneIsReported) {
  gDatabase.execute("update valid_sid set next_value = 41 where sid_name = \"link_id\"");
  EXPECT_EQ(mv::nextSequenceValue("link_id"), 41);
  EXPECT_EQ(mv::nextSequenceValue("link_id"), 42);
  EXPECT_TRUE(dialogs.messages.empty());
  EXPECT_EQ(mv::nextSequenceValue("no_id"), 0);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.contains("3021"));
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
  EXPECT_EQ(count("valid_tag", "tag collate binary in (\"<a href=\", \"<A HREF=\", \"<img src=\")"), 3);
}

TEST_F(ProgramDatabaseTest, ACurrentDatabaseIsNotUpgraded) {
  gDatabase.execute(
      "insert into site (id, unique_names, base_name, alternate_matchpath) values (1, \"yes\", \"x\", \"\")");
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
  gDatabase.execute("update valid_sid set next_value = 5 where sid_name = \"filename_id\"");
  gDatabase.execute(
      "insert into site (id, name, alternate_matchpath) values (1, \"a\", \"yes\"), (2, \"b\", \"\"), (3, \"c\", "
      "null)");
  gDatabase.execute("drop index link_url");
  EXPECT_THROW(mv::upgradeDatabase(), mv::DatabaseError) << "the sequence is there already";
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

}  // namespace
