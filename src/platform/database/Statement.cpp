#include "database/Statement.h"

#include <algorithm>

namespace mv {

namespace {

// Room for nearly every statement of the program, so that putting one together moves it once.
constexpr std::size_t kUsualLength = 256;
constexpr std::size_t kUsualValues = 8;

}  // namespace

Literal::Literal(SqlValue value) : value_(std::move(value)) {}
Literal::Literal(const Literal&) = default;
Literal::Literal(Literal&&) noexcept = default;
Literal& Literal::operator=(const Literal&) = default;
Literal& Literal::operator=(Literal&&) noexcept = default;
Literal::~Literal() = default;

Literal quoted(std::string text) { return Literal(SqlValue(std::move(text))); }
Literal quoted(std::string_view text) { return Literal(SqlValue(std::string(text))); }
Literal quoted(const char* text) { return Literal(SqlValue(std::string(text))); }
Literal number(std::int64_t value) { return Literal(SqlValue(value)); }

Statement::Statement(SqlText constant) { append(constant.text()); }
Statement::Statement(Literal value) { *this += std::move(value); }
Statement::Statement(const Statement&) = default;
Statement::Statement(Statement&&) noexcept = default;
Statement& Statement::operator=(const Statement&) = default;
Statement& Statement::operator=(Statement&&) noexcept = default;
Statement::~Statement() = default;

void Statement::append(std::string_view text) {
  const std::size_t length = shape_.size() + text.size();
  if (length > shape_.capacity()) shape_.reserve(std::max(kUsualLength, 2 * length));
  shape_.append(text);
}

Statement& Statement::append(const Statement& other) {
  append(other.shape_);
  values_.insert(values_.end(), other.values_.begin(), other.values_.end());
  return *this;
}

Statement& Statement::operator+=(SqlText constant) {
  append(constant.text());
  return *this;
}

Statement& Statement::operator+=(Literal value) {
  append(std::string_view(&kValueMark, 1));
  if (values_.empty()) values_.reserve(kUsualValues);
  values_.push_back(std::move(value).take());
  return *this;
}

Statement operator+(const Statement& left, SqlText right) { return Statement(left) + right; }
Statement operator+(const Statement& left, Literal right) { return Statement(left) + std::move(right); }
Statement&& operator+(Statement&& left, SqlText right) { return std::move(left += right); }
Statement&& operator+(Statement&& left, Literal right) { return std::move(left += std::move(right)); }

}  // namespace mv
