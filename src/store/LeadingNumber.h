// Numbers at the front of texts.
#pragma once

#include <charconv>
#include <cstdint>
#include <limits>
#include <string_view>

namespace mv {

// The number that `text` begins with, behind blanks and tabs; 0 when there is none, the largest number for a larger
// one.
inline std::int64_t leadingNumber(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  std::int64_t value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc::result_out_of_range ? std::numeric_limits<std::int64_t>::max() : value;
}

}  // namespace mv
