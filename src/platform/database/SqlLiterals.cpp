#include "SqlLiterals.h"

#include <algorithm>
#include <charconv>

namespace mv {

std::size_t sqlNumberEnd(std::string_view sql, std::size_t at) {
  const auto peek = [&](std::size_t place) { return place < sql.size() ? sql[place] : '\0'; };
  while (continuesSqlWord(peek(at)) || peek(at) == '.') {
    const bool exponent =
        lowerSqlLetter(peek(at)) == 'e' && (peek(at + 1) == '+' || peek(at + 1) == '-') && isSqlDigit(peek(at + 2));
    at += exponent ? 2 : 1;
  }
  return at;
}

std::size_t sqlTextEnd(std::string_view sql, std::size_t at) {
  const char delimiter = sql[at];
  for (++at;; ++at) {
    at = sql.find(delimiter, at);
    if (at == std::string_view::npos) return at;
    if (++at == sql.size() || sql[at] != delimiter) return at;
  }
}

std::string sqlTextValue(std::string_view raw) {
  const char delimiter = raw.front();
  raw = raw.substr(1, raw.size() - 2);
  std::string value;
  value.reserve(raw.size());
  while (true) {
    const std::size_t doubled = raw.find(delimiter);
    if (doubled == std::string_view::npos) return value.append(raw);
    value.append(raw, 0, doubled + 1);
    raw.remove_prefix(doubled + 2);
  }
}

std::optional<SqlValue> sqlNumberValue(std::string_view raw) {
  const char* const end = raw.data() + raw.size();
  std::int64_t whole = 0;
  const auto wholeRead = std::from_chars(raw.data(), end, whole);
  if (wholeRead.ec == std::errc() && wholeRead.ptr == end) return whole;
  double real = 0;
  const auto realRead = std::from_chars(raw.data(), end, real);
  if (realRead.ec == std::errc() && realRead.ptr == end) return real;
  return std::nullopt;
}

}  // namespace mv
