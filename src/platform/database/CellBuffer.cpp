#include "CellBuffer.h"

#include <cstdlib>
#include <new>

namespace mv::engine {

void CellBuffer::clear() {
  cells_.clear();
  texts_.clear();
}

void CellBuffer::takeRow(sqlite3_stmt* statement, int columns) {
  for (int column = 0; column < columns; ++column) cells_.push_back(take(statement, column));
}

CellBuffer::Cell CellBuffer::take(sqlite3_stmt* statement, int column) {
  Cell cell{.type = sqlite3_column_type(statement, column)};
  if (cell.type == SQLITE_NULL) return cell;
  // Before the text: asking for it may change what the engine has in the cell.
  if (cell.type == SQLITE_INTEGER || cell.type == SQLITE_FLOAT) cell.number = sqlite3_column_int64(statement, column);
  if (cell.type == SQLITE_INTEGER) return cell;
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  if (!text && sqlite3_errcode(sqlite3_db_handle(statement)) == SQLITE_NOMEM) throw std::bad_alloc();
  cell.begin = texts_.size();
  cell.size = text ? static_cast<std::size_t>(sqlite3_column_bytes(statement, column)) : 0;
  texts_.append(text ? text : "", cell.size).push_back('\0');
  return cell;
}

std::string CellBuffer::text(std::size_t cell) const {
  const Cell& asked = cells_[cell];
  if (asked.type == SQLITE_INTEGER) return std::to_string(asked.number);
  return texts_.substr(asked.begin, asked.size);
}

std::int64_t CellBuffer::number(std::size_t cell) const {
  const Cell& asked = cells_[cell];
  const bool isText = asked.type == SQLITE_TEXT || asked.type == SQLITE_BLOB;
  return isText ? std::strtoll(texts_.c_str() + asked.begin, nullptr, 10) : asked.number;
}

}  // namespace mv::engine
