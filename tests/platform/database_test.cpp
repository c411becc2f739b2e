#include "database/Database.h"

#include <sys/wait.h>
#include <unistd.h>

#include <QProcess>
#include <QTemporaryDir>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <future>

#include "DatabaseTest.h"
#include "database/CompactCopy.h"
#include "database/RawStatement.h"
#include "testkit/Fixture.h"

namespace {

using namespace mvtest;
using mv::Database;
using mv::DatabaseError;
using mv::number;
using mv::quoted;
using mv::Recordset;
using mv::Statement;
using namespace std::string_literals;
namespace fs = std::filesystem;

// ---- texts and fields ----

TEST_F(DatabaseTest, TextsComeBackAsTheyWereTyped) {
  const std::string texts[] = {
      "",           "plain",        "it's", "say \"hi\"", "\"; delete from site; --", "\\", "a\0b"s, "line\r\nbreak",
      "Zo\xc3\xab", "\xff\xfe bad", "?1",   "[x]",        std::string(100'000, '"')};
  for (const std::string& text : texts) {
    db.execute("delete from valid_tag");
    db.execute("insert into valid_tag (tag) values (" + quoted(text) + ")");
    EXPECT_EQ(db.query("select tag from valid_tag").text("Tag"), text);
    EXPECT_EQ(count("valid_tag where tag = " + quoted(text)), 1) << text;
  }
}

TEST_F(DatabaseTest, ReadsFieldsByEveryNameTheSelectListGives) {
  db.execute(
      "insert into rule (id, name, valid_field_id, valid_rule_type_id, search_value) values (1, \"R\", 3, 2, null)");
  const Recordset row = db.query(
      "SELECT r.name, r.search_value, r.operator, vf.name, vr.name, r.id FROM rule AS r, valid_field AS vf, "
      "valid_rule AS vr WHERE r.valid_field_id=vf.id AND r.valid_rule_type_id = vr.id");
  EXPECT_EQ(row.text("r.name"), "R");
  EXPECT_EQ(row.text("VF.Name"), "Filetype");
  EXPECT_EQ(row.text("vr.name"), "Save To");
  EXPECT_EQ(row.number("ID"), 1);
  EXPECT_TRUE(row.isNull("Search_Value"));
  EXPECT_EQ(row.text("search_value"), "");
  EXPECT_EQ(errorOf([&] { row.text("name"); }), DatabaseError::kItemNotFound) << "three fields end so";
}

// ---- recordsets ----

TEST_F(DatabaseTest, WalksShortAndLongResults) {
  for (const int count : {0, 1, 63, 64, 65, 300}) {
    db.execute("delete from link");
    addLinks(count);
    Recordset rows = db.query("select id from link where site_id = 7");
    for (int pass = 0; pass < 2; ++pass, rows.moveFirst()) {
      EXPECT_EQ(rows.recordCount(), count);
      std::int64_t sum = 0;
      for (; !rows.endOfRows(); rows.moveNext()) sum += rows.number("id");
      EXPECT_EQ(sum, count * (count + 1) / 2);
      EXPECT_EQ(errorOf([&] { rows.moveNext(); }), DatabaseError::kNoCurrentRecord);
      EXPECT_EQ(errorOf([&] { rows.number("id"); }), DatabaseError::kNoCurrentRecord);
    }
  }
}

// A window may write while it walks what it has asked for, and must neither miss rows nor meet its own.
TEST_F(DatabaseTest, AResultStaysAsItWasWhileRowsAreWritten) {
  addLinks(200);
  Recordset rows =
      db.query("select id, status from link where site_id = 7 and link_type = \"File\" and status <> \"Done\"");
  int seen = 0;
  for (; !rows.endOfRows(); rows.moveNext(), ++seen) {
    const mv::Literal id = number(rows.number("id"));
    EXPECT_EQ(rows.text("status"), "False");
    db.execute("update link set status = \"Done\" where id = " + id);
    db.execute("insert into link (id, site_id, link_type, status) values (" + id + " + 1000, 7, \"File\", \"False\")");
    EXPECT_EQ(db.query("select status from link where id = " + id).text("status"), "Done");
  }
  EXPECT_EQ(seen, 200);
  EXPECT_EQ(count("link"), 400);
}

TEST_F(DatabaseTest, AResultThatOutlivesItsDatabaseSaysSo) {
  addLinks(100);
  Recordset rows = db.query("select id from link");
  db.close();
  EXPECT_FALSE(sidecars());
  EXPECT_EQ(errorOf([&] { rows.moveFirst(); }), DatabaseError::kNotOpen);
  EXPECT_EQ(errorOf([&] { rows.recordCount(); }), DatabaseError::kNotOpen);
  EXPECT_EQ(errorOf([&] { db.execute("delete from link"); }), DatabaseError::kNotOpen);
}

// ---- statements ----

TEST_F(DatabaseTest, FailuresCarryTheirNumberAndNoValues) {
  db.execute("insert into site (id, name) values (1, \"a\")");
  const mv::Literal secret = quoted("secret");
  const std::pair<Statement, long> cases[] = {
      {"select id from site where nmae = " + secret, DatabaseError::kUnknownColumn},
      {"insert into site (id, nmae) values (2, " + secret + ")", DatabaseError::kUnknownColumn},
      {"select id from sites where name = " + secret, DatabaseError::kUnknownTable},
      {"insert into site (id, name) values (1, " + secret + ")", DatabaseError::kDuplicateKey},
      {"select id from site where name == = " + secret, DatabaseError::kSyntaxError},
      {"select id from site where name = 1 " + secret, DatabaseError::kSyntaxError},
      {"insert into site (id, name) values (2, \"secret)", DatabaseError::kSyntaxError},
      {"create index link_url on link (url)", DatabaseError::kAlreadyExists},
      {"alter table [site] add column [name] text(3)", DatabaseError::kAlreadyExists},
  };
  for (const auto& [sql, errorNumber] : cases) {
    try {
      db.execute(sql);
      ADD_FAILURE() << sql.shape();
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.number(), errorNumber) << sql.shape() << ": " << error.description();
      EXPECT_EQ(error.description().find("secret"), std::string::npos) << error.description();
      EXPECT_EQ(error.description().find('?'), std::string::npos) << error.description();
    }
  }
  EXPECT_EQ(count("site"), 1);
}

TEST_F(DatabaseTest, IndexesServeWhatRunsPerLinkAndPerTick) {
  const std::pair<mv::SqlText, const char*> plans[] = {
      {R"(select count(*) as outCount from link where url = "x")", "INDEX link_url (url=?)"},
      {R"(update link set status = "Done" where id = 5)", "INTEGER PRIMARY KEY (rowid=?)"},
      {"delete from link where site_id = 7", "(site_id=?)"},
      {"select next_value from valid_sid where sid_name = 'link_id'", "(sid_name=?)"},
      {R"(select id, wtop from win_pos where wname = "Scan: x")", "win_pos_name (wname=?)"},
      {R"(select sp.path from site_paths sp, valid_filetypes vf where sp.site_id = 7 and (vf.id = sp.filetype_id and )"
       R"(vf.name = "jpg"))",
       "site_paths_site (site_id=?"},
  };
  for (const auto& [sql, step] : plans) {
    const std::string text = plan(sql);
    EXPECT_NE(text.find(step), std::string::npos) << sql.text() << '\n' << text;
    EXPECT_EQ(text.find("SCAN"), std::string::npos) << sql.text() << '\n' << text;
  }
}

// Whoever remembers what he found in a column must learn when it may be gone.
TEST_F(DatabaseTest, CountsWhatMayRemoveAValue) {
  addLinks(10);
  db.execute("create table copy (url)");
  const auto invalidations = [this] { return db.invalidationCount("link", "url"); };
  const auto changes = [&](const Statement& sql) {
    const auto before = invalidations();
    const bool failed = errorOf([&] { db.execute(sql); }) != 0;
    return invalidations() != before ? (failed ? "failed, changed" : "changed") : "same";
  };
  for (const mv::SqlText sql : std::initializer_list<mv::SqlText>{
           "delete from link where id = 1", "delete from link where id in (select 2)", "delete from link",
           "update link set url = \"x\"", "update link set status = \"Done\", url = \"x\" where id = 3",
           "replace into link (id, url) values (4, \"x\")", "INSERT OR REPLACE into link (id) values (5)",
           "insert into link (id) values (6) on conflict do update set url = \"x\"",
           "update or replace link set id = 7 where id = 8", "alter table link drop column password"})
    EXPECT_STREQ(changes(sql), "changed") << sql.text();
  for (const mv::SqlText sql : std::initializer_list<mv::SqlText>{
           "insert into link (id, url) values (100, \"x\")", "update link set status = \"Done\"", "delete from copy",
           "update copy set url = 1", "update site set name = \"x\"", "begin", "commit"})
    EXPECT_STREQ(changes(sql), "same") << sql.text();

  const auto before = invalidations();
  { const mv::Transaction takenBack(db); }
  EXPECT_NE(invalidations(), before);
  EXPECT_STREQ(changes("insert into link (id) values (100)"), "failed, changed");
  const auto own = invalidations();
  EXPECT_EQ(invalidations(), own);
  Database other;
  other.open(path);
  other.execute("delete from link");
  EXPECT_NE(invalidations(), own);

  const auto last = invalidations();
  db.execute("delete from link");
  db.close();
  db.open(path);
  EXPECT_NE(invalidations(), last);
}

// It is copied meanwhile, and begins anew even when the changes never rest.
TEST_F(DatabaseTest, TheJournalDoesNotGrowForEver) {
  for (int i = 0; i < 50; ++i) db.execute("insert into site (id) values (" + number(i) + ")");
  for (int i = 0; i < 8'000; ++i)
    db.execute("update site set name = " + quoted(std::string(20'000, static_cast<char>('a' + i / 50 % 26))) +
               " where id = " + number(i % 50));
  EXPECT_LT(fs::file_size(path + "-wal"), 180'000'000U) << "220 MB were written";
  db.close();
  EXPECT_FALSE(sidecars());
}

// ---- opening and closing ----

class DatabaseFileTest : public DatabaseTest {
 protected:
  DatabaseFileTest() { db.close(); }

  void put(const std::string& bytes) const { std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes; }

  // Opening is refused with `number` and leaves no trace.
  void expectRefused(long number, const Database::TableNames& tables = {}) {
    const std::string before = fs::is_regular_file(path) ? readFile(path) : "";
    std::error_code none;
    const auto time = fs::last_write_time(path, none);
    try {
      db.open(path, tables);
      ADD_FAILURE() << "opened";
    } catch (const DatabaseError& error) {
      EXPECT_EQ(error.number(), number) << error.description();
      EXPECT_NE(error.description().find(path), std::string::npos) << error.description();
    }
    EXPECT_FALSE(db.isOpen());
    EXPECT_FALSE(sidecars());
    EXPECT_TRUE(before.empty() || readFile(path) == before);
    EXPECT_EQ(fs::last_write_time(path, none), time);
  }
};

TEST_F(DatabaseFileTest, RefusesWhatIsMissingForeignOrDamaged) {
  expectRefused(DatabaseError::kUnrecognizedFormat, {"site", "Link", "bookmarks"});
  const std::string whole = readFile(path);
  std::vector<std::string> contents = {"", std::string(4096, 'x')};
  for (const std::size_t length : {std::size_t{50}, std::size_t{4096}, whole.size() - 4096})
    contents.push_back(whole.substr(0, length));
  for (const std::size_t at : {std::size_t{100}, whole.size() / 2 / 4096 * 4096})
    contents.push_back(std::string(whole).replace(at, 200, 200, '\x5a'));
  for (const std::string& content : contents) {
    put(content);
    expectRefused(DatabaseError::kUnrecognizedFormat);
  }
  fs::remove(path);
  expectRefused(DatabaseError::kFileNotFound);
  EXPECT_FALSE(fs::exists(path));
  fs::create_directory(path);
  expectRefused(DatabaseError::kUnrecognizedFormat);
}

TEST_F(DatabaseFileTest, CallsANewerFormatNewer) {
  const std::string whole = readFile(path);
  for (const std::size_t at : {std::size_t{18}, std::size_t{19}, std::size_t{47}}) {
    put(std::string(whole).replace(at, 1, 1, '\5'));
    expectRefused(DatabaseError::kUnrecognizedFormat);
    try {
      db.open(path);
    } catch (const DatabaseError& error) {
      EXPECT_NE(error.description().find("newer"), std::string::npos) << error.description();
    }
  }
}

TEST_F(DatabaseFileTest, OnlyItsOwnerReadsItAndWhatIsBesideIt) {
  const auto mode = [](const std::string& file) { return static_cast<unsigned>(fs::status(file).permissions()); };
  constexpr auto kOpenToAll = fs::perms(0644);
  fs::permissions(path, kOpenToAll);
  std::ofstream(path + "-wal").close();  // a killed run's
  fs::permissions(path + "-wal", kOpenToAll);
  db.open(path);
  addLinks(3);
  for (const char* suffix : {"", "-wal", "-shm"}) EXPECT_EQ(mode(path + suffix), 0600U) << suffix;

  const std::string target = folder.filePath("target.mdb").toStdString();
  unsigned whileWritten = 0;
  mv::CompactCopy::setStepHook([&](mv::CompactCopy::Step) {
    if (fs::exists(target)) whileWritten |= mode(target);
  });
  mv::CompactCopy copy(path, target);
  copy.write();
  mv::CompactCopy::setStepHook({});
  EXPECT_EQ(whileWritten, 0600U);
}

// ---- another process ----

// Not a test of its own: what another program does to a database that is in use. Its exit code tells what came of it.
constexpr int kWasRefused = 40;
constexpr int kTookTheJournal = 41;
constexpr const char* kIntruderPath = "MORVANE_TEST_DATABASE";

TEST(AnotherProcess, DISABLED_TriesToTakeTheJournalAway) {
  Database other;
  other.open(qEnvironmentVariable(kIntruderPath).toStdString());
  try {
    other.query("pragma journal_mode=delete");
    _exit(fs::exists(qEnvironmentVariable(kIntruderPath).toStdString() + "-wal") ? kWasRefused : kTookTheJournal);
  } catch (const DatabaseError&) {
    _exit(kWasRefused);
  }
}

TEST_F(DatabaseFileTest, KeepsItsLocksWhateverIsDoneToTheFile) {
  const auto intruder = [this] {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(kIntruderPath, QString::fromStdString(path));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  {"--gtest_also_run_disabled_tests", "--gtest_filter=AnotherProcess.*"});
    EXPECT_TRUE(process.waitForFinished());
    return process.exitCode();
  };
  db.open(path);
  addLinks(100);
  EXPECT_EQ(intruder(), kWasRefused);
  {
    mv::CompactCopy copy(path, folder.filePath("target.mdb").toStdString());
    copy.write();
    EXPECT_EQ(intruder(), kWasRefused) << "beside a running compaction";
  }
  EXPECT_TRUE(mv::CompactCopy::isWhole(path, {"link"}));
  EXPECT_EQ(intruder(), kWasRefused);
  EXPECT_EQ(count("link"), 100);
  db.close();
  EXPECT_EQ(intruder(), kTookTheJournal);
}

TEST_F(DatabaseFileTest, AMovedOneHasEverythingAndLeavesNothingBehind) {
  const std::string moved = folder.filePath("moved.mdb").toStdString();
  db.open(path);
  addLinks(10);
  EXPECT_FALSE(db.hasMoved());
  fs::rename(path, moved);
  EXPECT_TRUE(db.hasMoved());
  db.execute("update link set status = 'moved'");
  db.close();
  EXPECT_FALSE(sidecars());
  db.open(moved);
  EXPECT_EQ(count("link where status = 'moved'"), 10);

  fs::remove(moved);
  copyShippedDatabase(moved);
  EXPECT_TRUE(db.hasMoved()) << "another one in its place";
}

TEST_F(DatabaseFileTest, RefusesWhatIsLockedByAnother) {
  {
    Database other;
    other.open(path);
    other.query("pragma locking_mode=exclusive");
    other.query("pragma journal_mode=delete");
    other.execute("begin exclusive");
    EXPECT_EQ(errorOf([&] { db.open(path); }), DatabaseError::kLocked);
  }
  db.open(path);
  EXPECT_TRUE(db.isOpen());
}

// What a killed run has finished is there at the next start, with either kind of journal.
TEST_F(DatabaseFileTest, RecoversAKilledRun) {
  for (const std::string mode : {"wal", "delete"}) {
    SCOPED_TRACE(mode);
    const pid_t child = fork();
    if (child == 0) {
      Database killed;
      killed.open(path);
      killed.query("pragma journal_mode=" + mv::rawStatement(mode));
      killed.query("pragma cache_size=10");  // so that the unfinished change reaches the file
      killed.execute("delete from link");
      killed.execute("insert into link (id, url) values (1, \"finished\")");
      killed.execute("begin");
      for (int i = 2; i <= 2000; ++i)
        killed.execute("insert into link (id, url) values (" + number(i) + ", \"unfinished\")");
      kill(getpid(), SIGKILL);
    }
    waitpid(child, nullptr, 0);
    ASSERT_TRUE(fs::exists(path + (mode == "wal" ? "-wal" : "-journal")));
    EXPECT_EQ(errorOf([&] { db.open(path, {"bookmarks"}); }), DatabaseError::kUnrecognizedFormat);
    db.open(path, {"link"});
    EXPECT_EQ(db.query("select url from link").text("url"), "finished");
    EXPECT_EQ(count("link"), 1);
    db.close();
    EXPECT_FALSE(sidecars());
  }
}

// ---- compaction ----

TEST_F(DatabaseFileTest, CompactsIntoASmallerFileWithTheSameRows) {
  const std::string target = folder.filePath("it's \"small\".mdb").toStdString();
  db.open(path);
  addLinks(20'000);
  db.execute("delete from link where id > 10");
  mv::CompactCopy copy(path, target);
  copy.write();
  EXPECT_LT(fs::file_size(target) * 4, fs::file_size(path));
  EXPECT_TRUE(copy.isCurrent());
  db.execute("update link set status = 'Done' where id = 1");
  EXPECT_FALSE(copy.isCurrent()) << "a change after the copy must not be lost";
  EXPECT_EQ(errorOf([&] { copy.replaceSource(); }), DatabaseError::kLocked) << "the source is still open";
  EXPECT_EQ(count("link"), 10);
}

TEST_F(DatabaseFileTest, ACompactedCopyTakesThePlaceOfItsSource) {
  const fs::path link = fs::path(path).parent_path() / "link.mdb";
  fs::create_symlink(path, link);
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  {
    mv::CompactCopy copy(link.string(), folder.filePath("target.mdb").toStdString());
    copy.write();
    copy.replaceSource();
  }
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_FALSE(fs::exists(folder.filePath("target.mdb").toStdString()));
  EXPECT_TRUE(mv::CompactCopy::isWhole(path, {"link"}));
  EXPECT_FALSE(mv::CompactCopy::isWhole(path, {"no_such_table"}));
}

TEST_F(DatabaseFileTest, AFailedCompactionLeavesNoTarget) {
  const std::string target = folder.filePath("target.mdb").toStdString();
  const auto compact = [&](const std::string& to) { return errorOf([&] { mv::CompactCopy(path, to).write(); }); };
  std::ofstream(target) << "kept";
  EXPECT_EQ(compact(target), DatabaseError::kAlreadyExists);
  EXPECT_EQ(readFile(target), "kept");
  EXPECT_NE(compact(folder.filePath("no/such/folder.mdb").toStdString()), 0);
  fs::remove(target);
  {
    mv::CompactCopy cancelled(path, target);
    cancelled.cancel();
    EXPECT_NE(errorOf([&] { cancelled.write(); }), 0);
  }
  EXPECT_FALSE(fs::exists(target));
  put("no database");
  EXPECT_EQ(compact(target), DatabaseError::kUnrecognizedFormat);
  EXPECT_FALSE(fs::exists(target));
}

}  // namespace
