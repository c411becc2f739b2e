// Statements that count as one: transactions, groups of commits, and what the journal has of them.

#include <sys/resource.h>

#include <chrono>
#include <future>
#include <thread>

#include "DatabaseTest.h"
#include "database/RawStatement.h"
#include "files/FileSignals.h"

namespace {

using namespace mvtest;
using mv::Database;
using mv::DatabaseError;
using mv::number;
using mv::quoted;
using mv::Statement;

using TransactionTest = DatabaseTest;

TEST_F(TransactionTest, SeveralStatementsAreOneOrNone) {
  addLinks(1);
  {
    mv::Transaction taken(db);
    db.execute("delete from link");
    EXPECT_EQ(count("link"), 0);
  }
  EXPECT_EQ(count("link"), 1);
  {
    mv::Transaction kept(db);
    db.execute("delete from link");
    EXPECT_EQ(errorOf([&] { db.execute("insert into link (id) values (\"no number\")"); }),
              DatabaseError::kInvalidArgument);
    kept.commit();
  }
  EXPECT_EQ(count("link"), 0);
}

// Whoever asks for an id shows a failure and goes on with 0: what follows must not be stored as a part.
TEST_F(TransactionTest, NothingFollowsAFailureThatHasTakenEverythingBack) {
  const auto pages = db.query("pragma page_count").number("page_count");
  db.query("pragma max_page_count = " + mv::rawStatement(std::to_string(pages + 1)));
  const Statement row = "insert into link (url) values (" + quoted(std::string(3000, 'x')) + ")";
  {
    mv::Transaction several(db);
    long failure = 0;
    for (int i = 0; i < 100 && failure == 0; ++i) failure = errorOf([&] { db.execute(row); });
    EXPECT_EQ(failure, DatabaseError::kDiskFull);
    EXPECT_EQ(errorOf([&] { db.execute("update valid_sid set next_value = 7"); }), DatabaseError::kDiskError);
    EXPECT_EQ(errorOf([&] { several.commit(); }), DatabaseError::kDiskError) << "may pass, and be tried again";
  }
  EXPECT_EQ(count("link"), 0);
  EXPECT_EQ(db.count("select count(*) as outCount from valid_sid where next_value = 7"), 0);
  mv::Transaction next(db);
  db.execute("update valid_sid set next_value = 7");
  next.commit();
}

TEST_F(TransactionTest, AGroupIsCommittedAsAWhole) {
  Database other;
  other.open(path);
  const auto linksOf = [](Database& database) { return database.count("select count(*) as outCount from link"); };
  const auto store = [&](int id) {
    mv::Transaction idAndRow(db);
    db.execute("update valid_sid set next_value = " + number(id) + " where sid_name = 'link_id'");
    db.execute("insert into link (id) values (" + number(id) + ")");
    idAndRow.commit();
  };
  {
    mv::CommitGroup group(db);
    EXPECT_EQ(linksOf(db), 0);
    other.execute("delete from link");  // not locked out by a group that has stored nothing
    for (int id = 1; id <= 3; ++id) store(id);
    EXPECT_EQ(errorOf([&] { db.execute("insert into link (id) values (2)"); }), DatabaseError::kDuplicateKey);
    EXPECT_EQ(linksOf(db), 3) << "a row that is refused takes no other with it";
    EXPECT_EQ(linksOf(other), 0);
    group.commit();
  }
  EXPECT_EQ(linksOf(other), 3);
  const auto mark = db.invalidationCount("link", "url");
  {
    mv::CommitGroup takenBack(db);
    store(4);
  }
  EXPECT_EQ(linksOf(db), 3);
  EXPECT_NE(db.invalidationCount("link", "url"), mark);
}

TEST_F(TransactionTest, AGroupThatFailsIsTakenBackAsAWhole) {
  const auto pages = db.query("pragma page_count").number("page_count");
  db.query("pragma max_page_count = " + mv::rawStatement(std::to_string(pages + 40)));
  const Statement row = "insert into link (url) values (" + quoted(std::string(3000, 'x')) + ")";
  {
    mv::CommitGroup group(db);
    long failure = 0;
    for (int i = 0; i < 100 && failure == 0; ++i) failure = errorOf([&] { db.execute(row); });
    EXPECT_EQ(failure, DatabaseError::kDiskFull);
    EXPECT_NE(errorOf([&] { db.execute("insert into link (url) values (\"small\")"); }), 0) << "a half would stay";
    EXPECT_NE(errorOf([&] { group.commit(); }), 0);
  }
  EXPECT_EQ(count("link"), 0);
  {
    mv::CommitGroup group(db);
    db.execute("insert into link (url) values (\"small\")");
    { mv::Transaction takenBack(db); }
    EXPECT_NE(errorOf([&] { group.commit(); }), 0);
  }
  EXPECT_EQ(count("link"), 0);
}

// What is gathered for the journal is there when a commit returns, and gone when one is taken back: another program
// writes at the same place then. The engine's cache is small, so that it writes long before the commit.
TEST_F(TransactionTest, TheJournalHasEveryCommitAndNothingThatWasTakenBack) {
  Database other;
  other.open(path);
  for (Database* database : {&db, &other}) database->query("pragma cache_size = 10");
  const auto rowsOf = [](Database& database) { return database.count("select count(*) as outCount from link"); };
  const auto insert = [&](Database& database, int rows) {
    for (int i = 0; i < rows; ++i)
      database.execute("insert into link (url) values (" + quoted(std::string(700, 'x') + std::to_string(i)) + ")");
  };
  std::int64_t expected = 0;
  for (int rows = 1; rows < 200; rows += 9) {
    {
      mv::CommitGroup takenBack(db);
      insert(db, rows);
    }
    insert(other, 3);
    mv::CommitGroup group(db);
    insert(db, rows);
    db.execute("update link set status = \"Done\"");  // pages are written to the journal a second time
    group.commit();
    expected += 3 + rows;
    EXPECT_EQ(rowsOf(db), expected);
    EXPECT_EQ(rowsOf(other), expected);
    ASSERT_EQ(other.query("pragma integrity_check").text("integrity_check"), "ok") << rows;
  }
}

// The engine ends a transaction by itself after some failures, of a statement that only reads, too: here what it reads
// has to go to the journal first, which the disk refuses. Whoever remembers what the group had stored must learn of it.
TEST_F(TransactionTest, AReadThatFailsInAGroupTakesItBackForAllToKnow) {
  mv::makeFileSignalsErrors();
  db.query("pragma cache_size = 10");
  rlimit most{};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &most), 0);
  std::int64_t mark = 0;
  long failure = 0;
  for (int rows = 20; rows < 100 && failure == 0; ++rows) {
    mark = db.invalidationCount("link", "url");
    mv::CommitGroup group(db);
    for (int i = 0; i < rows; ++i)
      db.execute("insert into link (url) values (" + quoted(std::string(700, 'x') + std::to_string(i)) + ")");
    const rlimit none{1, most.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &none), 0);
    failure = errorOf([&] { db.count("select count(*) as outCount from link where url <> \"x\""); });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &most), 0);
    if (failure != 0) {
      EXPECT_NE(errorOf([&] { db.execute("insert into link (url) values (\"half\")"); }), 0);
    }
  }
  ASSERT_EQ(failure, DatabaseError::kDiskError);
  EXPECT_NE(db.invalidationCount("link", "url"), mark);
  EXPECT_EQ(count("link"), 0);
  EXPECT_EQ(db.query("pragma integrity_check").text("integrity_check"), "ok");
}

TEST_F(TransactionTest, AGroupDoesNotHoldTheThreadWhileAnotherProgramWrites) {
  Database other;
  other.open(path);
  other.execute("begin immediate");
  const auto start = std::chrono::steady_clock::now();
  mv::CommitGroup group(db);
  EXPECT_EQ(errorOf([&] { db.execute("insert into link (id) values (1)"); }), DatabaseError::kLocked);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  EXPECT_EQ(count("link"), 0) << "reading goes on";
  other.execute("rollback");
  db.execute("insert into link (id) values (1)");
  group.commit();
  EXPECT_EQ(other.count("select count(*) as outCount from link"), 1);
}

// A reader's connection too takes the right to write for a moment when it finds the journal's index just being changed.
TEST_F(TransactionTest, AWriterWaitsItsTurn) {
  addLinks(1);
  std::promise<void> held;
  std::thread another([&] {
    Database other;
    other.open(path);
    other.execute("begin immediate");
    held.set_value();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    other.execute("rollback");
  });
  held.get_future().wait();
  EXPECT_EQ(errorOf([&] {
              mv::Transaction readsAndWrites(db);
              EXPECT_EQ(db.count("select count(*) as outCount from link"), 1);
              db.execute("delete from link");
              readsAndWrites.commit();
            }),
            0);
  another.join();
  EXPECT_EQ(db.count("select count(*) as outCount from link"), 0);
}

}  // namespace
