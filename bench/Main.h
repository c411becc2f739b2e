// The main() of every program here that may fail.
#pragma once

#include <cstdio>
#include <exception>
#include <utility>

namespace mvbench {

// What main() returns: 1 when `work` could not be done, which is then said.
template <class Work>
int run(Work&& work) {
  try {
    std::forward<Work>(work)();
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}

}  // namespace mvbench
