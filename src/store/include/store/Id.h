// What tells records apart.
#pragma once

#include <cstdint>
#include <string>

namespace mv {

// The identifier of a record; 0 stands for none.
using Id = std::int64_t;

// A record as lists name it.
struct NamedId {
  Id id = 0;
  std::string name;
};

}  // namespace mv
