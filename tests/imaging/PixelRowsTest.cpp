#include "imaging/decode/PixelRows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace lumivane {
namespace {

using testing::ElementsAre;
using Bytes = std::vector<std::uint8_t>;

// In blocks of just their size, so that a sanitizer sees a step beyond.
Bytes spread(int bands, const Bytes& in) {
  const std::size_t pixels = in.size() / static_cast<std::size_t>(bands);
  Bytes out(pixels * 4);
  spreadToRgba(bands, in.data(), out.data(), pixels);
  return out;
}

TEST(PixelRows, spreads_every_number_of_bands) {
  EXPECT_THAT(spread(1, {7, 8}), ElementsAre(7, 7, 7, 255, 8, 8, 8, 255));
  EXPECT_THAT(spread(2, {7, 100, 8, 0}), ElementsAre(7, 7, 7, 100, 8, 8, 8, 0));
  EXPECT_THAT(spread(3, {1, 2, 3, 4, 5, 6, 7, 8, 9}), ElementsAre(1, 2, 3, 255, 4, 5, 6, 255, 7, 8, 9, 255));
  EXPECT_THAT(spread(3, {1, 2, 3}), ElementsAre(1, 2, 3, 255));
  EXPECT_THAT(spread(4, {1, 2, 3, 4, 5, 6, 7, 8}), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
}

TEST(PixelRows, multiplies_colours_by_their_alpha) {
  Bytes row = {255, 128, 0, 128, 10, 20, 30, 255, 9, 9, 9, 0};
  EXPECT_FALSE(premultiplyRow(row.data(), 3));
  EXPECT_THAT(row, ElementsAre(128, 64, 0, 128, 10, 20, 30, 255, 0, 0, 0, 0));
  EXPECT_TRUE(premultiplyRow(row.data() + 4, 1));
}

}  // namespace
}  // namespace lumivane
