#include "engine/FadeLength.h"

namespace lumivane {
namespace {

TEST(FadeLength, followsTheSquareOfTheSlider) {
  EXPECT_DOUBLE_EQ(fadeLength(0.5, 5, 2.75).count(), 1.625);
}

TEST(FadeLength, reachesBothEndsOfTheSlider) {
  EXPECT_DOUBLE_EQ(fadeLength(0.5, 10, 0.5).count(), 0.5);
  EXPECT_DOUBLE_EQ(fadeLength(0.5, 10, 10).count(), 10);
}

TEST(FadeLength, aSliderWithoutALengthHasOneValue) {
  EXPECT_DOUBLE_EQ(fadeLength(2, 2, 5).count(), 2);
  EXPECT_DOUBLE_EQ(fadeLength(2, 1, 5).count(), 2);
}

TEST(FadeLength, leavesRoomForTheFadeOutLead) {
  EXPECT_GT(fadeLength(0.5, 10, 0.5), kFadeOutLead);
  EXPECT_NEAR((kQuickFade - kFadeOutLead).count(), 0.1, 1e-12);
}

}  // namespace
}  // namespace lumivane
