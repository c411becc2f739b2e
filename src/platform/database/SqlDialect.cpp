#include "SqlDialect.h"

#include <algorithm>
#include <initializer_list>
#include <optional>
#include <utility>

#include "database/Database.h"

namespace mv {

namespace {

enum class Kind { Word, Identifier, Text, Number, Symbol };

struct Token {
  Kind kind;
  std::string_view raw;  // as it stands in the statement
  bool spaceBefore = false;
};

using Tokens = std::vector<Token>;

[[noreturn]] void refuse(const std::string& reason) { throw DatabaseError(DatabaseError::kSyntaxError, reason); }

class Lexer {
 public:
  explicit Lexer(std::string_view sql) : sql_(sql) {}

  Tokens run() {
    for (bool space = skipBlank(); at_ < sql_.size(); space = skipBlank()) {
      tokens_.push_back(next());
      tokens_.back().spaceBefore = space;
    }
    return std::move(tokens_);
  }

 private:
  char peek(std::size_t ahead = 0) const { return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : '\0'; }
  std::string_view from(std::size_t start) const { return sql_.substr(start, at_ - start); }

  // Blanks and comments.
  bool skipBlank() {
    const std::size_t start = at_;
    for (;;) {
      if (isSqlSpace(peek()))
        ++at_;
      else if (peek() == '-' && peek(1) == '-')
        at_ = std::min(sql_.find('\n', at_), sql_.size());
      else if (peek() == '/' && peek(1) == '*')
        skipThrough("*/");
      else
        return at_ > start;
    }
  }

  void skipThrough(std::string_view end) {
    const std::size_t found = sql_.find(end, at_ + 2);
    at_ = found == std::string_view::npos ? sql_.size() : found + end.size();
  }

  Token next() {
    const char c = peek();
    if (c == '"' || c == '\'') return text();
    if (c == '[' || c == '`') return identifier(c == '[' ? ']' : c);
    if (isSqlDigit(c) || (c == '.' && isSqlDigit(peek(1)) && !followsName())) return number();
    if (startsSqlWord(c)) return word();
    return symbol(c);
  }

  bool followsName() const {
    return !tokens_.empty() && (tokens_.back().kind == Kind::Word || tokens_.back().kind == Kind::Identifier);
  }

  Token text() {
    const std::size_t start = at_;
    at_ = sqlTextEnd(sql_, start);
    if (at_ == std::string_view::npos) refuse("The statement has a text without an end.");
    return {Kind::Text, from(start)};
  }

  Token identifier(char end) {
    const std::size_t start = at_;
    const std::size_t found = sql_.find(end, at_ + 1);
    if (found == std::string_view::npos) refuse("The statement has a name without an end.");
    at_ = found + 1;
    if (from(start).find('\0') != std::string_view::npos) refuse("The statement has a NUL in a name.");
    return {Kind::Identifier, from(start)};
  }

  Token number() {
    const std::size_t start = at_;
    at_ = sqlNumberEnd(sql_, start);
    return {Kind::Number, from(start)};
  }

  Token word() {
    const std::size_t start = at_;
    while (continuesSqlWord(peek())) ++at_;
    return {Kind::Word, from(start)};
  }

  Token symbol(char c) {
    const std::size_t start = at_;
    if (c == '\0') refuse("The statement has a NUL outside of a text.");
    if (std::string_view("?:@$").find(c) != std::string_view::npos)
      refuse(std::string("The statement has a stray ") + c);
    ++at_;
    return {Kind::Symbol, from(start)};
  }

  std::string_view sql_;
  std::size_t at_ = 0;
  Tokens tokens_;
};

bool isWord(const Token& token, std::string_view keyword) {
  return token.kind == Kind::Word && sameSqlName(token.raw, keyword);
}

bool isWord(const Token& token, std::initializer_list<std::string_view> keywords) {
  return std::any_of(keywords.begin(), keywords.end(),
                     [&](std::string_view keyword) { return isWord(token, keyword); });
}

bool isSymbol(const Token& token, std::string_view symbol) { return token.kind == Kind::Symbol && token.raw == symbol; }

bool isName(const Token& token) { return token.kind == Kind::Word || token.kind == Kind::Identifier; }

std::string plainName(const Token& token) {
  return std::string(token.kind == Kind::Identifier ? token.raw.substr(1, token.raw.size() - 2) : token.raw);
}

int depthStep(const Token& token) { return isSymbol(token, "(") ? 1 : isSymbol(token, ")") ? -1 : 0; }

// ---- literals ----

class Translator {
 public:
  explicit Translator(const Tokens& tokens) : tokens_(tokens) {
    takesLiterals_ = isWord(tokens.front(), {"select", "insert", "update", "delete", "replace", "with", "explain"});
  }

  void run(SqlStatement& into) {
    for (std::size_t i = 0; i < tokens_.size(); ++i) put(i);
    into.shape = std::move(shape_);
    into.values = std::move(values_);
    into.literalIsValue = std::move(literalIsValue_);
  }

 private:
  void put(std::size_t i) {
    const Token& token = tokens_[i];
    if (i > 0 && (token.spaceBefore || wouldGrow(i))) shape_ += ' ';
    if (token.kind == Kind::Text)
      putText(token);
    else if (token.kind == Kind::Number)
      putNumber(token);
    else
      shape_ += token.raw;
    followClauses(token);
  }

  // A literal's replacement and what touches it stay two tokens.
  bool wouldGrow(std::size_t i) const {
    const Kind before = tokens_[i - 1].kind;
    return (before == Kind::Text || before == Kind::Number) && tokens_[i].kind != Kind::Symbol;
  }

  void followClauses(const Token& token) {
    if (isWord(token, {"where", "on", "having", "set", "values"})) numbersAreValues_ = true;
    if (isWord(token, {"select", "order", "group", "limit"})) numbersAreValues_ = false;
  }

  void putText(const Token& token) {
    std::string value = sqlTextValue(token.raw);
    literalIsValue_.push_back(takesLiterals_);
    if (takesLiterals_) return putValue(std::move(value));
    if (value.find('\0') != std::string::npos) refuse("The statement has a NUL in a text.");
    shape_ += '\'';
    for (const char c : value) shape_.append(c == '\'' ? 2 : 1, c);
    shape_ += '\'';
  }

  void putNumber(const Token& token) {
    std::optional<SqlValue> value;
    if (takesLiterals_ && numbersAreValues_) value = sqlNumberValue(token.raw);
    literalIsValue_.push_back(value.has_value());
    if (value)
      putValue(std::move(*value));
    else
      shape_ += token.raw;
  }

  void putValue(SqlValue value) {
    values_.push_back(std::move(value));
    shape_ += '?' + std::to_string(values_.size());
  }

  const Tokens& tokens_;
  bool takesLiterals_ = false;
  bool numbersAreValues_ = false;
  std::string shape_;
  std::vector<SqlValue> values_;
  std::vector<bool> literalIsValue_;
};

// ---- names ----

// [begin, end) is "name" or "table.name"; "" for anything else.
std::string qualifiedName(const Token* begin, const Token* end) {
  const auto count = end - begin;
  if (count == 1 && isName(*begin)) return plainName(*begin);
  if (count == 3 && isName(begin[0]) && isSymbol(begin[1], ".") && isName(begin[2]))
    return plainName(begin[0]) + '.' + plainName(begin[2]);
  return {};
}

// One expression of a select list, [begin, end). "" for a star.
std::string fieldName(const Token* begin, const Token* end) {
  if (begin == end || isSymbol(end[-1], "*")) return {};
  if (std::string name = qualifiedName(begin, end); !name.empty()) return name;
  const bool alias = isName(end[-1]) && end - begin > 1 && (end[-2].kind != Kind::Symbol || isSymbol(end[-2], ")"));
  if (alias) return plainName(end[-1]);
  const char* const first = begin->raw.data();
  return std::string(first, end[-1].raw.data() + end[-1].raw.size());
}

std::vector<std::string> selectFields(const Tokens& tokens) {
  std::size_t start = 1;
  if (start < tokens.size() && isWord(tokens[start], {"distinct", "all"})) ++start;
  std::vector<std::string> fields;
  int depth = 0;
  for (std::size_t i = start; i <= tokens.size(); ++i) {
    const bool listEnds =
        i == tokens.size() || (depth == 0 && isWord(tokens[i], {"from", "where", "order", "limit", "union"}));
    if (listEnds || (depth == 0 && isSymbol(tokens[i], ","))) {
      fields.push_back(fieldName(tokens.data() + start, tokens.data() + i));
      if (fields.back().empty()) return {};
      start = i + 1;
    }
    if (listEnds) break;
    depth += depthStep(tokens[i]);
  }
  return fields;
}

std::string statementName(const Tokens& tokens) {
  std::string name;
  for (const char c : tokens.front().raw) name += lowerSqlLetter(c);
  for (std::size_t i = 1; i + 1 < tokens.size(); ++i) {
    if (!isWord(tokens[i], {"from", "into", "table", "index"}) || !isName(tokens[i + 1])) continue;
    for (name += ' '; const char c : tokens[i].raw) name += lowerSqlLetter(c);
    return name + ' ' + plainName(tokens[i + 1]);
  }
  return tokens.size() > 1 && isName(tokens[1]) ? name + ' ' + plainName(tokens[1]) : name;
}

void checkSingle(Tokens& tokens) {
  if (!tokens.empty() && isSymbol(tokens.back(), ";")) tokens.pop_back();
  if (tokens.empty()) refuse("There is no statement.");
  for (const Token& token : tokens)
    if (isSymbol(token, ";")) refuse("There is more than one statement.");
  if (tokens.front().kind != Kind::Word) refuse("The statement does not begin with a word.");
}

}  // namespace

SqlStatement translateSql(std::string_view sql) {
  Tokens tokens = Lexer(sql).run();
  checkSingle(tokens);
  SqlStatement statement;
  Translator(tokens).run(statement);
  statement.name = statementName(tokens);
  statement.isSelect = isWord(tokens.front(), "select");
  if (statement.isSelect) statement.fields = selectFields(tokens);
  return statement;
}

bool sameSqlName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowerSqlLetter(a) == lowerSqlLetter(b); });
}

}  // namespace mv
