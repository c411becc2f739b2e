// Addresses that are certain to stand in the table `link`, so that the links that every page of a site repeats cost no
// query. Knows the last few thousand.
#pragma once

#include <cstdint>
#include <optional>
#include <unordered_set>

#include "store/EscapedAddress.h"

namespace mv {

class KnownLinks {
 public:
  // Before it is asked: forgets everything when rows may have gone since the last time.
  void refresh();
  // False says nothing.
  bool contains(const EscapedAddress& url);
  // It was found in the table, or put there.
  void add(const EscapedAddress& url);

 private:
  static constexpr std::size_t kGeneration = 8192;

  std::optional<std::int64_t> mark_;  // LinkStore's, when it was last asked for
  // The older generation goes when the newer one is full; what is asked for again moves on to the newer.
  std::unordered_set<EscapedAddress> newer_;
  std::unordered_set<EscapedAddress> older_;
};

}  // namespace mv
