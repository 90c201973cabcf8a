#include "compositor/model/Dissolve.h"

#include <gtest/gtest.h>

#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

PictureQuad picture(RectPt frame, Rgba color = {9, 9, 9, 255}) {
  return {frame, makeBitmap({2, 2}, color), 0.5};
}

TEST(Dissolve, joinsTwoOpaquePicturesThatOverlap) {
  const Quad lower = picture({{0, 0}, {100, 100}});
  const Quad upper = picture({{50, 0}, {100, 100}});
  const auto joined = dissolveOf(lower, upper);
  ASSERT_TRUE(joined);
  EXPECT_EQ(joined->lower, &std::get<PictureQuad>(lower));
  EXPECT_EQ(joined->upper, &std::get<PictureQuad>(upper));
}

TEST(Dissolve, leavesOtherQuadsAlone) {
  const Quad full = picture({{0, 0}, {100, 100}});
  EXPECT_FALSE(dissolveOf(full, picture({{100, 0}, {100, 100}})));                // side by side
  EXPECT_FALSE(dissolveOf(full, picture({{0, 0}, {100, 100}}, {9, 9, 9, 128})));  // text-like
  EXPECT_FALSE(dissolveOf(ColorQuad{}, full));
  EXPECT_FALSE(dissolveOf(full, ShadowQuad{}));
}

}  // namespace
}  // namespace lumivane
