#include "imaging/LongestSide.h"

#include "imaging/ImageDecoder.h"

namespace lumivane {
namespace {

TEST(LongestSide, IsTheLargestWithEnoughMemory) {
  EXPECT_EQ(longestSideFor(kScarceMemoryMB), kThumbnailMaxPixelSize);
  EXPECT_EQ(longestSideFor(1'000'000), kThumbnailMaxPixelSize);
}

TEST(LongestSide, ShrinksWithTheMemory) {
  EXPECT_EQ(longestSideFor(1024), 4344);
  EXPECT_EQ(longestSideFor(400), 2715);
  for (std::int64_t memory = 1; memory < kScarceMemoryMB; ++memory)
    ASSERT_LE(longestSideFor(memory - 1), longestSideFor(memory));
}

TEST(LongestSide, StillFillsAnOrdinaryScreen) {
  EXPECT_EQ(longestSideFor(0), 1920);
  EXPECT_EQ(longestSideFor(-5), 1920);
}

}  // namespace
}  // namespace lumivane
