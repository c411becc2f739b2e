// A record as a list of choices shows it.
#pragma once

#include <cstdint>
#include <string>

namespace mv {

struct NamedId {
  std::int64_t id = 0;
  std::string name;
};

}  // namespace mv
