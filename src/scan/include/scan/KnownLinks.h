// Links that are certain to stand in the table `link`, so that those that every page of a site repeats cost no query
// and no test. Knows the last few thousand.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace mv {

class KnownLinks {
 public:
  // Before it is asked: forgets everything when rows may have gone since the last time.
  void refresh();
  // False says nothing. `link`: as whoever added it spelt it.
  bool contains(std::string_view link);
  // It was found in the table, or put there.
  void add(std::string link);

 private:
  static constexpr std::size_t kGeneration = 8192;
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Links = std::unordered_set<std::string, Hash, std::equal_to<>>;

  std::optional<std::int64_t> mark_;  // LinkStore's, when it was last asked for
  // The older generation goes when the newer one is full; what is asked for again moves on to the newer.
  Links newer_;
  Links older_;
};

}  // namespace mv
