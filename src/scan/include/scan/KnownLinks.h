// Addresses that are certain to stand in the table `link`, so that the links that every page of a site repeats cost no
// query. Knows the last few thousand.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>

namespace mv {

class KnownLinks {
 public:
  // Before it is asked: forgets everything when rows may have gone since the last time.
  void refresh();
  // `url` as stored. False says nothing.
  bool contains(const std::string& url);
  // It was found in the table, or put there.
  void add(const std::string& url);

 private:
  static constexpr std::size_t kGeneration = 8192;

  std::int64_t invalidations_ = -1;
  // The older generation goes when the newer one is full; what is asked for again moves on to the newer.
  std::unordered_set<std::string> newer_;
  std::unordered_set<std::string> older_;
};

}  // namespace mv
