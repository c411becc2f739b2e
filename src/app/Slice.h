// Long work on the user-interface thread is done in slices: a loop tests spent() and goes on in a later event when the
// time is up.
#pragma once

#include <chrono>

namespace mv {

class Slice {
 public:
  bool spent() const { return std::chrono::steady_clock::now() - start_ > kLength; }

 private:
  static constexpr std::chrono::milliseconds kLength{4};
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace mv
