#include "SqlDialect.h"

#include <algorithm>
#include <initializer_list>

#include "database/DatabaseError.h"
#include "database/Statement.h"

namespace mv {

namespace {

enum class Kind { Word, Identifier, Text, Value, Symbol };

struct Token {
  Kind kind;
  std::string_view raw;  // as it stands in the shape
  std::string_view gap;  // the blanks and comments before it
};

using Tokens = std::vector<Token>;

[[noreturn]] void refuse(const std::string& reason) { throw DatabaseError(DatabaseError::kSyntaxError, reason); }

char lowerLetter(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }
bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
// Numbers are words, too.
bool isWordLetter(char c) {
  return (lowerLetter(c) >= 'a' && lowerLetter(c) <= 'z') || (c >= '0' && c <= '9') || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

class Lexer {
 public:
  explicit Lexer(std::string_view sql) : sql_(sql) {}

  Tokens run() {
    for (std::string_view gap = skipGap(); at_ < sql_.size(); gap = skipGap()) tokens_.push_back(next(gap));
    return std::move(tokens_);
  }

 private:
  char peek(std::size_t ahead = 0) const { return at_ + ahead < sql_.size() ? sql_[at_ + ahead] : '\0'; }
  std::string_view from(std::size_t start) const { return sql_.substr(start, at_ - start); }

  std::string_view skipGap() {
    const std::size_t start = at_;
    for (;;) {
      if (isSpace(peek()))
        ++at_;
      else if (peek() == '-' && peek(1) == '-')
        at_ = std::min(sql_.find('\n', at_), sql_.size());
      else if (peek() == '/' && peek(1) == '*')
        skipThrough("*/");
      else
        return from(start);
    }
  }

  void skipThrough(std::string_view end) {
    const std::size_t found = sql_.find(end, at_ + 2);
    at_ = found == std::string_view::npos ? sql_.size() : found + end.size();
  }

  Token next(std::string_view gap) {
    const std::size_t start = at_;
    const Kind kind = skipToken(peek());
    return {kind, from(start), gap};
  }

  Kind skipToken(char c) {
    if (c == '"' || c == '\'') return skipText(c);
    if (c == '[' || c == '`') return skipIdentifier(c == '[' ? ']' : c);
    if (isWordLetter(c)) return skipWord();
    ++at_;
    if (c == Statement::kValueMark) return Kind::Value;
    if (std::string_view("?:@$").find(c) != std::string_view::npos)
      refuse(std::string("The statement has a stray ") + c);
    return Kind::Symbol;
  }

  Kind skipText(char delimiter) {
    for (++at_;; ++at_) {
      at_ = sql_.find(delimiter, at_);
      if (at_ == std::string_view::npos) refuse("The statement has a text without an end.");
      ++at_;
      if (peek() != delimiter) return Kind::Text;
    }
  }

  Kind skipIdentifier(char end) {
    at_ = sql_.find(end, at_ + 1);
    if (at_ == std::string_view::npos) refuse("The statement has a name without an end.");
    ++at_;
    return Kind::Identifier;
  }

  Kind skipWord() {
    while (isWordLetter(peek()) || peek() == '$') ++at_;
    return Kind::Word;
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

// ---- the engine's text ----

// As the engine's language writes it, whichever delimiter it has.
std::string engineText(std::string_view raw) {
  const char delimiter = raw.front();
  std::string text(1, '\'');
  for (std::size_t i = 1; i + 1 < raw.size(); ++i) {
    if (raw[i] == delimiter) ++i;  // it is doubled
    text.append(raw[i] == '\'' ? 2 : 1, raw[i]);
  }
  return text += '\'';
}

std::string engineSql(const Tokens& tokens) {
  std::string sql;
  int values = 0;
  bool mayGrow = false;  // what touches a text or a value must not become a part of it
  for (const Token& token : tokens) {
    sql += mayGrow && token.gap.empty() && token.kind != Kind::Symbol ? " " : token.gap;
    mayGrow = token.kind == Kind::Text || token.kind == Kind::Value;
    if (token.kind == Kind::Text)
      sql += engineText(token.raw);
    else if (token.kind == Kind::Value)
      sql += '?' + std::to_string(++values);
    else
      sql += token.raw;
  }
  return sql;
}

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
  for (const char c : tokens.front().raw) name += lowerLetter(c);
  for (std::size_t i = 1; i + 1 < tokens.size(); ++i) {
    if (!isWord(tokens[i], {"from", "into", "table", "index"}) || !isName(tokens[i + 1])) continue;
    for (name += ' '; const char c : tokens[i].raw) name += lowerLetter(c);
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

SqlTranslation translateShape(std::string_view shape) {
  if (shape.find('\0') != std::string_view::npos) refuse("The statement has a NUL.");
  Tokens tokens = Lexer(shape).run();
  checkSingle(tokens);
  SqlTranslation result;
  result.sql = engineSql(tokens);
  result.name = statementName(tokens);
  result.isSelect = isWord(tokens.front(), "select");
  if (result.isSelect) result.fields = selectFields(tokens);
  result.saysReplace =
      std::any_of(tokens.begin(), tokens.end(), [](const Token& token) { return isWord(token, "replace"); });
  return result;
}

bool sameSqlName(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return lowerLetter(a) == lowerLetter(b); });
}

}  // namespace mv
