// The quick way to a translation that was made before: a statement is read once for its literals, and what is left of
// it is the key under which its translation is found.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "SqlDialect.h"

namespace mv {

class SqlOutline {
 public:
  struct Literal {
    std::string_view raw;  // as it stands in the statement
    bool isText = false;
  };

  // False when the statement holds something that only translateSql understands (a comment, a name in brackets) or
  // refuses. The literals point into `sql`.
  bool read(std::string_view sql);

  // The statement with a mark in place of every literal. Two statements with the same key are the same but for their
  // literals.
  const std::string& key() const { return key_; }
  const std::vector<Literal>& literals() const { return literals_; }

 private:
  std::string key_;
  std::vector<Literal> literals_;
};

// A translated statement, ready to be used for others of its outline.
class SqlPattern {
 public:
  SqlPattern(SqlStatement statement, const SqlOutline& outline);

  // Its values are those of the statement it was made from.
  const SqlStatement& statement() const { return statement_; }
  // Puts the values of a statement of the same outline into `values`. False when its translation is another one: it
  // differs in a literal that stays in place.
  bool valuesOf(const SqlOutline& outline, std::vector<SqlValue>& values) const;
  // Can it be used for others at all?
  bool isReusable() const { return reusable_; }

 private:
  SqlStatement statement_;
  std::vector<std::string> inPlace_;  // the literals that are no values, as they stand
  bool reusable_ = true;
};

}  // namespace mv
