#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "FileSize.h"

namespace {

TEST(FileProgress, CountsAnyFileInInt) {
  using mv::fileProgress;
  EXPECT_EQ(fileProgress(0, 5000).maximum, 6024);
  EXPECT_EQ(fileProgress(5000, 5000).value, 5000);
  EXPECT_EQ(fileProgress(9000, 5000).value, 6024) << "never beyond the end";
  constexpr std::int64_t kLarge = std::int64_t{6} << 30;
  EXPECT_LE(fileProgress(kLarge, kLarge).maximum, std::numeric_limits<int>::max());
  const mv::FileProgress half = fileProgress(kLarge / 2, kLarge);
  EXPECT_NEAR(static_cast<double>(half.value) / static_cast<double>(half.maximum), 0.5, 0.01);
}

}  // namespace
