// The number of an error, for the error panel.
#pragma once

#include <exception>

#include "database/Database.h"
#include "files/AtomicFile.h"

namespace mv {

// Of a database or file error its own, of any other 0.
inline long errorNumber(const std::exception& error) {
  if (const auto* failure = dynamic_cast<const DatabaseError*>(&error)) return failure->number();
  if (const auto* failure = dynamic_cast<const FileError*>(&error)) return failure->number();
  return 0;
}

}  // namespace mv
