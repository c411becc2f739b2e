#include "database/RawStatement.h"

#include <utility>

namespace mv {

Statement rawStatement(std::string sql) {
  Statement statement;
  statement.shape_ = std::move(sql);
  return statement;
}

}  // namespace mv
