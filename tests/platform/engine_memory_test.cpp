// The engine calls back while there is no memory: no exception passes through it, and what was to be done is done
// later.

#include <filesystem>
#include <new>

#include "Checkpoints.h"
#include "DatabaseTest.h"
#include "RefusedMemory.h"
#include "StatementCache.h"

namespace {

using namespace mvtest;
using mv::quoted;
using mv::Statement;

// What `work` does while every block is refused; false when it raises something.
template <class Work>
bool withoutMemory(Work work) {
  refusedFrom = 1;
  try {
    work();
    refusedFrom = kNothingRefused;
    return true;
  } catch (...) {
    refusedFrom = kNothingRefused;
    return false;
  }
}

class EngineMemoryTest : public DatabaseTest {};

TEST_F(EngineMemoryTest, WhatAStatementRemovesIsNotForgotten) {
  const mv::engine::ConnectionPtr connection = mv::engine::openHandle(path, SQLITE_OPEN_READWRITE);
  mv::engine::InvalidationRecorder recorder(connection.get());
  sqlite3_stmt* statement = nullptr;
  const auto prepare = [&] {
    return sqlite3_prepare_v2(connection.get(), "delete from link", -1, &statement, nullptr);
  };
  int code = SQLITE_ERROR;
  EXPECT_TRUE(withoutMemory([&] { code = prepare(); }));
  EXPECT_EQ(code, SQLITE_OK);
  sqlite3_finalize(statement);
  EXPECT_THROW(recorder.take(), std::bad_alloc);
  prepare();
  sqlite3_finalize(statement);
  EXPECT_EQ(recorder.take().size(), 1U);
}

TEST_F(EngineMemoryTest, TheJournalIsCopiedLater) {
  const Statement insert = "insert into link (url) values (" + quoted(std::string(3000, 'x')) + ")";
  const Statement begin = "begin", commit = "commit";
  const auto commitRows = [&](int rows) {
    db.execute(begin);
    for (int i = 0; i < rows; ++i) db.execute(insert);
    return withoutMemory([&] { db.execute(commit); });
  };
  db.execute(begin);
  db.execute(commit);
  EXPECT_TRUE(commitRows(5000)) << "twenty megabytes of journal";
  EXPECT_EQ(count("link"), 5000);
  const auto before = std::filesystem::file_size(path);
  for (int i = 0; i < 5000; ++i) db.execute(insert);
  EXPECT_TRUE(waitFor([&] { return std::filesystem::file_size(path) > before + (10U << 20); }));
}

}  // namespace
