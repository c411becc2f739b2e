// The cells of some rows of a result, row by row. Texts lie behind one another in one block: an allocation for each
// would cost more than the engine needs to find them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Sqlite.h"

namespace mv::engine {

class CellBuffer {
 public:
  void clear();
  // Appends the row that `statement` stands on. Raises std::bad_alloc.
  void takeRow(sqlite3_stmt* statement, int columns);

  // Of a cell, counted from the first of the first row: as the engine converts it. Null is "" and 0, a text its leading
  // number.
  std::string text(std::size_t cell) const;
  std::int64_t number(std::size_t cell) const;
  bool isNull(std::size_t cell) const { return cells_[cell].type == SQLITE_NULL; }

 private:
  struct Cell {
    int type = SQLITE_NULL;
    std::int64_t number = 0;  // of a number
    std::size_t begin = 0;    // of what is no whole number, in texts_, ended by a null byte
    std::size_t size = 0;
  };
  Cell take(sqlite3_stmt* statement, int column);

  std::vector<Cell> cells_;
  std::string texts_;
};

}  // namespace mv::engine
