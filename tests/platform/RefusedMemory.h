// A program that is short of memory.
#pragma once

#include <atomic>
#include <cstddef>
#include <limits>

namespace mvtest {

inline constexpr std::size_t kNothingRefused = std::numeric_limits<std::size_t>::max();

// Blocks of this size and more are refused to all of the program that asks for them by `new`.
extern std::atomic<std::size_t> refusedFrom;

}  // namespace mvtest
