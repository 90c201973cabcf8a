#include "compositor/model/Gravity.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

constexpr RectPt kBox{{10, 20}, {200, 100}};

TEST(Gravity, resizeTakesTheBoxAsItIs) {
  EXPECT_EQ(contentsRect(kBox, {3, 7}, ContentsGravity::Resize), kBox);
}

TEST(Gravity, aspectFitsInside) {
  EXPECT_EQ(contentsRect(kBox, {1, 1}, ContentsGravity::ResizeAspect), (RectPt{{60, 20}, {100, 100}}));
  EXPECT_EQ(contentsRect(kBox, {4, 1}, ContentsGravity::ResizeAspect), (RectPt{{10, 45}, {200, 50}}));
}

TEST(Gravity, aspectFillReachesBeyond) {
  EXPECT_EQ(contentsRect(kBox, {1, 1}, ContentsGravity::ResizeAspectFill), (RectPt{{10, -30}, {200, 200}}));
  EXPECT_EQ(contentsRect(kBox, {4, 1}, ContentsGravity::ResizeAspectFill), (RectPt{{-90, 20}, {400, 100}}));
}

TEST(Gravity, theSameProportionsGiveTheBoxToTheLastBit) {
  EXPECT_EQ(contentsSize({1920, 1080}, {1600, 900}, ContentsGravity::ResizeAspect).height, 1080);
  EXPECT_EQ(contentsSize({1920, 1080}, {1600, 900}, ContentsGravity::ResizeAspectFill).width, 1920);
}

TEST(Gravity, lowerLeftLeavesTheContentsAsLargeAsTheyAre) {
  EXPECT_EQ(contentsRect(kBox, {300, 7}, ContentsGravity::LowerLeft), (RectPt{{10, 20}, {300, 7}}));
  EXPECT_EQ(contentsSize({200, 100}, {300, 7}, ContentsGravity::LowerLeft), (SizePt{300, 7}));
}

TEST(Gravity, contentsWithoutAreaStayWithoutArea) {
  EXPECT_EQ(contentsSize({200, 100}, {0, 5}, ContentsGravity::ResizeAspect), (SizePt{}));
}

}  // namespace
}  // namespace lumivane
