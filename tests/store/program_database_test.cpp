#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "store/ProgramDatabase.h"
#include "store/Sequence.h"
#include "support/Fixture.h"

namespace {

using mv::gDatabase;
using namespace std::string_literals;

class ProgramDatabaseTest : public mvtest::ProgramTest {
 protected:
  std::set<std::string> column(const std::string& sql, const std::string& field) {
    std::set<std::string> values;
    for (mv::Recordset rows = gDatabase.query(sql); !rows.endOfRows(); rows.moveNext()) values.insert(rows.text(field));
    return values;
  }

  // The layout before files could be numbered.
  void makeOlder() {
    gDatabase.execute("alter table site drop column unique_names");
    gDatabase.execute("alter table site drop column base_name");
    gDatabase.execute("delete from valid_sid where sid_name = \"filename_id\"");
    gDatabase.execute(
        "insert into site (id, name, alternate_matchpath) values (1, \"a\", \"yes\"), (2, \"b\", \"\"), (3, \"c\", "
        "null)");
  }
};

// ---- sequences ----

TEST_F(ProgramDatabaseTest, SequencesCountOn) {
  gDatabase.execute("update valid_sid set next_value = 41 where sid_name = \"link_id\"");
  EXPECT_EQ(mv::nextSequenceValue("link_id"), 41);
  EXPECT_EQ(mv::nextSequenceValue("link_id"), 42);
  EXPECT_EQ(value("select next_value from valid_sid where sid_name = 'link_id'"), "43");
  EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(ProgramDatabaseTest, AnUnknownSequenceIsReportedAndIsZero) {
  EXPECT_EQ(mv::nextSequenceValue("no_id"), 0);
  ASSERT_EQ(dialogs.messages.size(), 1U);
  EXPECT_TRUE(dialogs.messages[0].text.contains("3021"));
  EXPECT_EQ(count("valid_sid"), 8);
}

// ---- the shipped rows ----

TEST_F(ProgramDatabaseTest, ShipsTheRowsThatTheProgramCountsOn) {
  EXPECT_EQ(column("select sid_name from valid_sid", "sid_name"),
            (std::set<std::string>{"site_id", "filter_id", "rule_id", "form_id", "field_info_id", "link_id", "tag_id",
                                   "filename_id"}));
  EXPECT_EQ(count("valid_sid", "next_value < 1"), 0);
  EXPECT_GT(mv::nextSequenceValue("link_id"), 1) << "1 is the start location";
  EXPECT_GT(mv::nextSequenceValue("form_id"), 24);
  EXPECT_GT(mv::nextSequenceValue("field_info_id"), 20);

  EXPECT_EQ(count("pref"), 1);
  EXPECT_EQ(count("pref",
                  "auto_scan = \"no\" and quit_time = 8 and max_connections = 3 and hide_processes = \"no\" and "
                  "auto_update = \"no\" and help_server = \"no\" and overwrite_existing = \"no\""),
            1);
  EXPECT_EQ(column("select name from valid_rule", "name"), (std::set<std::string>{"Ignore", "Save To"}));
  EXPECT_EQ(column("select name from valid_field", "name"), (std::set<std::string>{"Link", "Domain", "Filetype"}));
  EXPECT_EQ(value("select name from form where id = 24"), "***None***");
  EXPECT_EQ(count("form", "form_type = \"Authentication\""), 3);
  // Form 20 asks for user name, then password; form 21 the other way round.
  const std::pair<const char*, const char*> prompts[] = {
      {"17", "User name"}, {"18", "Password"}, {"19", "Password"}, {"20", "User name"}};
  for (const auto& [id, prompt] : prompts)
    EXPECT_EQ(value("select prompt from field_info where supplied_by_user = 'yes' and id = "s + id), prompt) << id;
}

TEST_F(ProgramDatabaseTest, ShipsFileTypesAndTagsWithoutRepetition) {
  EXPECT_GE(count("valid_filetypes"), 35);
  EXPECT_EQ(count("valid_filetypes", "can_delete <> \"no\" or description = \"\""), 0);
  EXPECT_EQ(value("select download_by_default from valid_filetypes where name = \"jpg\""), "yes");
  EXPECT_EQ(count("(select name from valid_filetypes group by name having count(*) > 1)"), 0);
  for (const std::string& tag : column("select tag from valid_tag", "tag")) {
    EXPECT_EQ(tag.front(), '<') << tag;
    EXPECT_EQ(tag.back(), '=') << tag;
  }
  EXPECT_EQ(count("(select tag from valid_tag group by tag collate binary having count(*) > 1)"), 0);
  EXPECT_EQ(count("valid_tag", "tag collate binary in (\"<a href=\", \"<A HREF=\", \"<A href=\", \"<img src=\")"), 4);
}

// ---- opening ----

TEST_F(ProgramDatabaseTest, RefusesAnotherProgramsDatabaseUntouched) {
  gDatabase.execute("drop table field_info");
  gDatabase.close();
  const std::string before = mvtest::readFile(mv::gDatabasePath);
  try {
    mv::openProgramDatabase(mv::gDatabasePath);
    ADD_FAILURE() << "opened";
  } catch (const mv::DatabaseError& error) {
    EXPECT_EQ(error.number(), mv::DatabaseError::kUnrecognizedFormat);
    EXPECT_NE(error.description().find(mv::gDatabasePath), std::string::npos);
    EXPECT_NE(error.description().find("field_info"), std::string::npos);
  }
  EXPECT_TRUE(mvtest::readFile(mv::gDatabasePath) == before);
  EXPECT_FALSE(std::filesystem::exists(mv::gDatabasePath + "-wal"));
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
  makeOlder();
  gDatabase.execute("drop index link_url");
  mv::openProgramDatabase(mv::gDatabasePath);
  mv::upgradeDatabase();
  mv::ensureIndexes();
  EXPECT_EQ(count("sqlite_schema", "name = 'link_url'"), 1);
  EXPECT_EQ(count("site", "unique_names = \"no\" and base_name = \"NewFile\""), 3);
  EXPECT_EQ(value("select alternate_matchpath from site where id = 1"), "yes");
  EXPECT_EQ(value("select alternate_matchpath from site where id = 2"), "no");
  EXPECT_EQ(count("site", "alternate_matchpath is null"), 1);
  EXPECT_EQ(count("valid_sid", "sid_name = \"filename_id\" and next_value = 1"), 1);
  EXPECT_EQ(mv::nextSequenceValue("filename_id"), 1);
}

TEST_F(ProgramDatabaseTest, AFailedUpgradeCanBeRepeated) {
  makeOlder();
  gDatabase.execute("insert into valid_sid (sid_name, next_value) values (\"filename_id\", 5)");
  EXPECT_THROW(mv::upgradeDatabase(), mv::DatabaseError);
  gDatabase.execute("delete from valid_sid where sid_name = \"filename_id\"");
  mv::upgradeDatabase();
  EXPECT_EQ(count("site", "unique_names = \"no\" and base_name = \"NewFile\""), 3);
}

}  // namespace
