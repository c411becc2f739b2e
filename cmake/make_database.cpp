// Builds a database file from SQL scripts: make_database <target> <script>...
// The target is written under a temporary name and renamed when every script has run.

#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

int main(int argc, char** argv) {
  if (argc < 3) {
    std::cerr << "usage: make_database <target> <script>...\n";
    return 2;
  }
  const std::string target = argv[1];
  const std::string unfinished = target + ".new";
  std::remove(unfinished.c_str());

  sqlite3* connection = nullptr;
  if (sqlite3_open(unfinished.c_str(), &connection) != SQLITE_OK) {
    std::cerr << unfinished << ": " << sqlite3_errmsg(connection) << '\n';
    return 1;
  }
  for (int i = 2; i < argc; ++i) {
    std::ifstream script(argv[i]);
    std::stringstream text;
    text << "begin;\n" << script.rdbuf() << "\ncommit;";
    char* message = nullptr;
    if (!script || sqlite3_exec(connection, text.str().c_str(), nullptr, nullptr, &message) != SQLITE_OK) {
      std::cerr << argv[i] << ": " << (message ? message : "cannot be read") << '\n';
      sqlite3_free(message);
      sqlite3_close(connection);
      return 1;
    }
  }
  sqlite3_close(connection);
  return std::rename(unfinished.c_str(), target.c_str()) == 0 ? 0 : 1;
}
