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
  SqlValue&& take() && { return std::move(value_); }

 private:
  friend Literal quoted(std::string text);
  friend Literal number(std::int64_t value);
  explicit Literal(SqlValue value) : value_(std::move(value)) {}

  SqlValue value_;
};

// A text, UTF-8; any bytes are kept, NUL included. (Exact matches for every argument, so that an unqualified call never
// finds the stream manipulator std::quoted instead.)
inline Literal quoted(std::string text) { return Literal(SqlValue(std::move(text))); }
inline Literal quoted(std::string_view text) { return quoted(std::string(text)); }
inline Literal quoted(const char* text) { return quoted(std::string(text)); }
// A 64-bit integer.
inline Literal number(std::int64_t value) { return Literal(SqlValue(value)); }

class Statement {
 public:
  static constexpr char kValueMark = '\1';

  template <std::size_t N>
  Statement(const char (&constant)[N]) : shape_(constant, N - 1) {}
  template <std::size_t N>
  Statement(char (&variable)[N]) = delete;
  Statement(SqlText constant) : shape_(constant.text()) {}
  Statement(Literal value) { add(std::move(value)); }

  // The constants, with kValueMark for each of the values.
  const std::string& shape() const { return shape_; }
  const std::vector<SqlValue>& values() const { return values_; }

  template <class Part>
  Statement& operator+=(Part&& part) {
    return *this = std::move(*this) + std::forward<Part>(part);
  }

 private:
  friend Statement operator+(Statement left, SqlText right);
  friend Statement operator+(Statement left, Literal right);
  template <std::same_as<Statement> Same>
  friend Statement operator+(Statement left, const Same& right);
  friend Statement rawStatement(std::string sql);
  Statement() = default;
  void add(SqlText constant) { append(constant.text()); }
  void add(Literal value);
  void add(const Statement& other);
  void append(std::string_view text);

  std::string shape_;
  std::vector<SqlValue> values_;
};

inline Statement operator+(Statement left, SqlText right) {
  left.add(right);
  return left;
}
inline Statement operator+(Statement left, Literal right) {
  left.add(std::move(right));
  return left;
}
// For statements only: a constant on the right is a SqlText.
template <std::same_as<Statement> Same>
Statement operator+(Statement left, const Same& right) {
  left.add(right);
  return left;
}

}  // namespace mv
