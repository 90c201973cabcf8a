#include "compositor/model/PixelRect.h"

#include <gtest/gtest.h>

#include <random>

namespace lumivane {
namespace {

bool holdsPixel(const RectPx& rect, int x, int y) {
  return rect.left <= x && x + 1 <= rect.right && rect.bottom <= y && y + 1 <= rect.top;
}

TEST(PixelRectTest, WholePixelsAreThoseThatNoEdgeCuts) {
  EXPECT_EQ(wholePixels({1.25, 2, 5.75, 6.5}), (RectPx{2, 2, 5, 6}));
  EXPECT_EQ(touchedPixels({1.25, 2, 5.75, 6.5}), (RectPx{1, 2, 6, 7}));
  EXPECT_EQ(wholePixels({-3, 0, 4, 2}), touchedPixels({-3, 0, 4, 2})) << "edges between pixels cut none";
  EXPECT_TRUE(isEmpty(wholePixels({1.25, 0, 1.75, 9})));
}

TEST(PixelRectTest, CommonAndJoinedAreTheSmallestAndTheLargest) {
  const RectPx one{0, 0, 4, 4};
  const RectPx other{2, -1, 6, 3};
  EXPECT_EQ(common(one, other), (RectPx{2, 0, 4, 3}));
  EXPECT_EQ(joined(one, other), (RectPx{0, -1, 6, 4}));
  EXPECT_TRUE(isEmpty(common(one, {5, 5, 6, 6})));
}

TEST(PixelRectTest, AroundNothingIsAll) {
  const RectPx all{0, 0, 4, 4};
  const auto strips = around(all, {3, 3, 3, 9});
  EXPECT_EQ(strips[0], all);
  for (std::size_t i = 1; i < strips.size(); ++i) EXPECT_TRUE(isEmpty(strips[i]));
}

TEST(PixelRectTest, EveryPixelIsInThePartOrInOneStrip) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> place(-4, 20);
  for (int round = 0; round < 2000; ++round) {
    const auto [left, right] = std::minmax({place(random), place(random)});
    const auto [bottom, top] = std::minmax({place(random), place(random)});
    const RectPx rect{left, bottom, right, top};
    const RectPx all = common(touchedPixels(rect), {0, 0, 16, 16});
    if (isEmpty(all)) continue;
    const RectPx part = common(all, wholePixels(rect));
    for (int y = 0; y < 16; ++y) {
      for (int x = 0; x < 16; ++x) {
        int times = !isEmpty(part) && holdsPixel(part, x, y) ? 1 : 0;
        for (const RectPx& strip : around(all, part)) times += holdsPixel(strip, x, y) ? 1 : 0;
        ASSERT_EQ(times, holdsPixel(all, x, y) ? 1 : 0) << x << ' ' << y << " round " << round;
      }
    }
  }
}

}  // namespace
}  // namespace lumivane
