#include "database/Statement.h"

#include <algorithm>

#include "database/RawStatement.h"

namespace mv {

namespace {

// Room for nearly every statement of the program, so that putting one together moves it once.
constexpr std::size_t kUsualLength = 256;
constexpr std::size_t kUsualValues = 8;

}  // namespace

void Statement::append(std::string_view text) {
  const std::size_t length = shape_.size() + text.size();
  if (length > shape_.capacity()) shape_.reserve(std::max(kUsualLength, 2 * length));
  shape_.append(text);
}

void Statement::add(Literal value) {
  append(std::string_view(&kValueMark, 1));
  if (values_.empty()) values_.reserve(kUsualValues);
  values_.push_back(std::move(value).take());
}

void Statement::add(const Statement& other) {
  append(other.shape_);
  values_.insert(values_.end(), other.values_.begin(), other.values_.end());
}

Statement rawStatement(std::string sql) {
  Statement statement;
  statement.shape_ = std::move(sql);
  return statement;
}

}  // namespace mv
