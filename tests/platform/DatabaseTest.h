// A database of the program in a file of its own.
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <cstdint>
#include <filesystem>
#include <string>

#include "database/Database.h"
#include "testkit/Fixture.h"

namespace mvtest {

// The number of the error that `work` raises, 0 without one.
template <class Work>
long errorOf(Work work) {
  try {
    work();
  } catch (const mv::DatabaseError& error) {
    EXPECT_FALSE(error.description().empty());
    return error.number();
  }
  return 0;
}

class DatabaseTest : public ::testing::Test {
 protected:
  DatabaseTest() : path(folder.filePath("data base %41?.mdb").toStdString()) {
    copyShippedDatabase(path);
    db.open(path);
  }

  void addLinks(int count, int site = 7) {
    db.execute("begin");
    for (int i = 1; i <= count; ++i)
      db.execute("insert into link (site_id,url,link_type,username,password,id,status,file_type) values (" +
                 mv::number(site) + ", " + mv::quoted("host/" + std::to_string(i)) + ", \"File\", \"\", \"\", " +
                 mv::number(i) + ", \"False\", \"jpg\")");
    db.execute("commit");
  }

  std::int64_t count(const mv::Statement& tableAndWhere) {
    return db.count("select count(*) as outCount from " + tableAndWhere);
  }
  std::string plan(const mv::Statement& sql) {
    std::string text;
    for (mv::Recordset rows = db.query("explain query plan " + sql); !rows.endOfRows(); rows.moveNext())
      text += rows.text("detail") + '\n';
    return text;
  }

  bool sidecars() const {
    return std::filesystem::exists(path + "-wal") || std::filesystem::exists(path + "-shm") ||
           std::filesystem::exists(path + "-journal");
  }

  QTemporaryDir folder;
  std::string path;
  mv::Database db;
};

}  // namespace mvtest
