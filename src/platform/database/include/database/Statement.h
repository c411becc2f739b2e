// A statement for the database: string constants and values, put together with "+".
//
//   "select id from link where url = " + quoted(url) + " and site_id = " + number(siteId)
//
// The constants make its shape, in which a mark stands for each value. The engine is given the values apart from it
// (they are bound), so no value is ever read as SQL, and statements that differ in their values only are translated and
// prepared once. A text that is known at run time only does not compile as a part of a shape; tests have
// RawStatement.h.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace mv {

using SqlValue = std::variant<std::int64_t, std::string>;

// A constant as a part of a statement, for tables of statements and for functions that are given a table's name. Made
// from a character array: a literal, or a `constexpr char kName[]`.
class SqlText {
 public:
  template <std::size_t N>
  constexpr SqlText(const char (&constant)[N]) : text_(constant, N - 1) {}
  template <std::size_t N>
  SqlText(char (&variable)[N]) = delete;

  constexpr std::string_view text() const { return text_; }

 private:
  std::string_view text_;
};

// A value in a statement. It owns its text.
class Literal {
 public:
  Literal(const Literal&);
  Literal(Literal&&) noexcept;
  Literal& operator=(const Literal&);
  Literal& operator=(Literal&&) noexcept;
  ~Literal();

  SqlValue&& take() && { return std::move(value_); }

 private:
  friend Literal quoted(std::string text);
  friend Literal quoted(std::string_view text);
  friend Literal quoted(const char* text);
  friend Literal number(std::int64_t value);
  explicit Literal(SqlValue value);

  SqlValue value_;
};

// A text, UTF-8; any bytes are kept, NUL included. (Exact matches for every argument, so that an unqualified call never
// finds the stream manipulator std::quoted instead.)
Literal quoted(std::string text);
Literal quoted(std::string_view text);
Literal quoted(const char* text);
// A 64-bit integer.
Literal number(std::int64_t value);

// A value that refers to its text, which stays where it is during the call.
using SqlArgument = std::variant<std::int64_t, std::string_view>;

// For what runs once for every link: the whole shape is one constant, in which "\1" stands for each value. It is put
// together by nobody, and the prepared statement is found again by the constant's place.
//
//   constexpr FixedStatement kRemove("delete from link where id = \1");
//   gDatabase.execute(kRemove, {id});
class FixedStatement {
 public:
  consteval FixedStatement(SqlText shape) : shape_(shape.text()) {}

  std::string_view shape() const { return shape_; }

 private:
  std::string_view shape_;
};

class Statement {
 public:
  static constexpr char kValueMark = '\1';

  template <std::size_t N>
  Statement(const char (&constant)[N]) : Statement(SqlText(constant)) {}
  template <std::size_t N>
  Statement(char (&variable)[N]) = delete;
  Statement(SqlText constant);
  Statement(Literal value);
  Statement(const Statement&);
  Statement(Statement&&) noexcept;
  Statement& operator=(const Statement&);
  Statement& operator=(Statement&&) noexcept;
  ~Statement();

  // The constants, with kValueMark for each of the values.
  const std::string& shape() const { return shape_; }
  const std::vector<SqlValue>& values() const { return values_; }

  Statement& operator+=(SqlText constant);
  Statement& operator+=(Literal value);
  template <std::same_as<Statement> Same>
  Statement& operator+=(const Same& other) {
    return append(other);
  }

 private:
  friend Statement rawStatement(std::string sql);
  Statement() = default;
  Statement& append(const Statement& other);
  void append(std::string_view text);

  std::string shape_;
  std::vector<SqlValue> values_;
};

// A chain of "+" fills the one statement that it began with. None of this is inline: hundreds of statements are put
// together in the program, each of several parts.
Statement operator+(const Statement& left, SqlText right);
Statement operator+(const Statement& left, Literal right);
Statement&& operator+(Statement&& left, SqlText right);
Statement&& operator+(Statement&& left, Literal right);
// For statements only: a constant on the right is a SqlText.
template <std::same_as<Statement> Same>
Statement operator+(Statement left, const Same& right) {
  left += right;
  return left;
}

}  // namespace mv
