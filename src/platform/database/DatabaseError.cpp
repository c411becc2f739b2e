#include "database/DatabaseError.h"

#include <utility>

namespace mv {

DatabaseError::DatabaseError(long number, std::string description, std::string source)
    : std::runtime_error(description),
      number_(number),
      description_(std::move(description)),
      source_(std::move(source)) {}

bool DatabaseError::mayPass() const {
  return number_ == kLocked || number_ == kDiskFull || number_ == kDiskError || number_ == kReadOnly ||
         number_ == kNotOpen;
}

}  // namespace mv
