// The characters and literals of the program's SQL dialect.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace mv {

using SqlValue = std::variant<std::int64_t, double, std::string>;

inline char lowerSqlLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
inline bool isSqlDigit(char c) { return c >= '0' && c <= '9'; }
inline bool isSqlSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
inline bool startsSqlWord(char c) {
  return (lowerSqlLetter(c) >= 'a' && lowerSqlLetter(c) <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}
inline bool continuesSqlWord(char c) { return startsSqlWord(c) || isSqlDigit(c) || c == '$'; }

// The end of the number that begins at `at`. Letters that touch it are kept with it: the engine then refuses the whole.
std::size_t sqlNumberEnd(std::string_view sql, std::size_t at);
// The end of the text whose delimiter stands at `at`, behind its closing delimiter; npos when it has none.
std::size_t sqlTextEnd(std::string_view sql, std::size_t at);

// The value of a text with its delimiters.
std::string sqlTextValue(std::string_view raw);
// The value of a number; none when it is no number that the engine could be given.
std::optional<SqlValue> sqlNumberValue(std::string_view raw);

}  // namespace mv
