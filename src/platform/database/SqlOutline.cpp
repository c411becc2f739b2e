#include "SqlOutline.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace mv {

namespace {

enum class Kind : unsigned char { Plain, Word, Digit, Text, Dot, Dash, Slash, Odd };

// Bytes that no statement holds outside of its texts.
constexpr char kTextMark = '\1';
constexpr char kNumberMark = '\2';

std::array<Kind, 256> makeKinds() {
  std::array<Kind, 256> kinds{};
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const char c = static_cast<char>(i);
    if (startsSqlWord(c)) kinds[i] = Kind::Word;
    if (isSqlDigit(c)) kinds[i] = Kind::Digit;
    if (i < ' ' && !isSqlSpace(c)) kinds[i] = Kind::Odd;
  }
  const auto set = [&kinds](std::string_view characters, Kind kind) {
    for (const char c : characters) kinds[static_cast<unsigned char>(c)] = kind;
  };
  set("\"'", Kind::Text);
  set(".", Kind::Dot);
  set("-", Kind::Dash);
  set("/", Kind::Slash);
  set("[`;?:@$", Kind::Odd);
  return kinds;
}

Kind kindOf(char c) {
  static const std::array<Kind, 256> kKinds = makeKinds();
  return kKinds[static_cast<unsigned char>(c)];
}

}  // namespace

bool SqlOutline::read(std::string_view sql) {
  key_.clear();
  literals_.clear();
  std::size_t at = 0;
  std::size_t kept = 0;  // what is before here is in the key
  const auto take = [&](std::size_t end, bool isText) {
    key_.append(sql, kept, at - kept) += isText ? kTextMark : kNumberMark;
    literals_.push_back({sql.substr(at, end - at), isText});
    at = kept = end;
  };
  const auto next = [&] { return at + 1 < sql.size() ? sql[at + 1] : '\0'; };
  while (at < sql.size()) {
    switch (kindOf(sql[at])) {
      case Kind::Plain:
        ++at;
        break;
      case Kind::Word:
        while (at < sql.size() && continuesSqlWord(sql[at])) ++at;
        break;
      case Kind::Digit:
        take(sqlNumberEnd(sql, at), false);
        break;
      case Kind::Text: {
        const std::size_t end = sqlTextEnd(sql, at);
        if (end == std::string_view::npos) return false;
        take(end, true);
        break;
      }
      case Kind::Dot:
        if (isSqlDigit(next())) return false;
        ++at;
        break;
      case Kind::Dash:
        if (next() == '-') return false;
        ++at;
        break;
      case Kind::Slash:
        if (next() == '*') return false;
        ++at;
        break;
      case Kind::Odd:
        return false;
    }
  }
  key_.append(sql, kept);
  return true;
}

SqlPattern::SqlPattern(SqlStatement statement, const SqlOutline& outline) : statement_(std::move(statement)) {
  const std::vector<SqlOutline::Literal>& literals = outline.literals();
  for (std::size_t i = 0; i < literals.size(); ++i)
    if (!statement_.literalIsValue[i]) inPlace_.emplace_back(literals[i].raw);
  // An expression without an alias is a field of that very name, the literals in it included.
  for (const std::string& field : statement_.fields)
    if (field.find_first_of("\"'") != std::string::npos) reusable_ = false;
}

bool SqlPattern::valuesOf(const SqlOutline& outline, std::vector<SqlValue>& values) const {
  values.clear();
  std::size_t inPlace = 0;
  for (std::size_t i = 0; i < outline.literals().size(); ++i) {
    const SqlOutline::Literal& literal = outline.literals()[i];
    if (!statement_.literalIsValue[i]) {
      if (inPlace_[inPlace++] != literal.raw) return false;
    } else if (literal.isText) {
      values.emplace_back(sqlTextValue(literal.raw));
    } else {
      std::optional<SqlValue> number = sqlNumberValue(literal.raw);
      if (!number) return false;
      values.push_back(std::move(*number));
    }
  }
  return true;
}

}  // namespace mv
