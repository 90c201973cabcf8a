#include "compositor/model/BasicAnimation.h"

#include <gtest/gtest.h>

#include "compositor/model/AnimationTiming.h"

namespace lumivane {
namespace {

BasicAnimation opacityAnimation(double from, double to, double seconds) {
  BasicAnimation animation;
  animation.from = from;
  animation.to = to;
  animation.duration = Seconds{seconds};
  animation.timing = TimingCurve::Linear;
  animation.beginTime = Seconds{100};
  return animation;
}

TEST(Eased, linearIsTheProgressItself) {
  for (const double x : {0.0, 0.1, 0.5, 1.0}) EXPECT_EQ(eased(TimingCurve::Linear, x), x);
}

// Reference values: the curve's parameter found by 200 bisections in 50-digit decimal arithmetic.
TEST(Eased, easeInEaseOutIsTheCubicBezier) {
  EXPECT_NEAR(eased(TimingCurve::EaseInEaseOut, 0.05), 0.004829749667859, 1e-12);
  EXPECT_NEAR(eased(TimingCurve::EaseInEaseOut, 0.1), 0.019722453548311, 1e-12);
  EXPECT_NEAR(eased(TimingCurve::EaseInEaseOut, 0.25), 0.129161931047320, 1e-12);
  EXPECT_NEAR(eased(TimingCurve::EaseInEaseOut, 0.9), 0.980277546451689, 1e-12);
  EXPECT_NEAR(eased(TimingCurve::EaseInEaseOut, 0.999999), 0.999999999998110, 1e-12);
}

TEST(Eased, endsAndMiddleAreExact) {
  EXPECT_EQ(eased(TimingCurve::EaseInEaseOut, 0), 0);
  EXPECT_EQ(eased(TimingCurve::EaseInEaseOut, 1), 1);
  EXPECT_DOUBLE_EQ(eased(TimingCurve::EaseInEaseOut, 0.5), 0.5);
}

TEST(Eased, solvesTheCurveEverywhere) {
  double last = 0;
  for (int i = 1; i < 2000; ++i) {
    const double t = i / 2000.0;
    const double s = 1 - t;
    const double x = 3 * s * s * t * 0.42 + 3 * s * t * t * 0.58 + t * t * t;
    const double y = 3 * s * t * t + t * t * t;
    const double found = eased(TimingCurve::EaseInEaseOut, x);
    ASSERT_NEAR(found, y, 1e-9) << "at progress " << x;
    ASSERT_GT(found, last);
    last = found;
  }
}

TEST(Eased, staysWithinZeroAndOne) {
  EXPECT_EQ(eased(TimingCurve::EaseInEaseOut, -1), 0);
  EXPECT_EQ(eased(TimingCurve::EaseInEaseOut, 2), 1);
}

TEST(ActiveDuration, countsReversalAndRepeats) {
  BasicAnimation animation = opacityAnimation(0, 1, 10);
  EXPECT_EQ(activeDuration(animation), Seconds{10});
  animation.autoreverses = true;
  EXPECT_EQ(activeDuration(animation), Seconds{20});
  animation.repeatCount = 1'000'000;
  EXPECT_EQ(activeDuration(animation), Seconds{20'000'000});
  animation.repeatCount = 0.75;
  EXPECT_EQ(activeDuration(animation), Seconds{15});
}

TEST(ActiveDuration, isNeverNegative) {
  EXPECT_EQ(activeDuration(opacityAnimation(0, 1, -3)), Seconds{0});
}

TEST(ProgressAt, runsFromBeginToEndAndIsNotInForceOutside) {
  const BasicAnimation animation = opacityAnimation(0, 1, 10);
  EXPECT_EQ(progressAt(animation, Seconds{99.9}), std::nullopt);
  EXPECT_EQ(progressAt(animation, Seconds{100}), 0);
  EXPECT_DOUBLE_EQ(progressAt(animation, Seconds{102.5}).value(), 0.25);
  EXPECT_EQ(progressAt(animation, Seconds{110}), std::nullopt);
}

TEST(ProgressAt, fillForwardsKeepsTheLastValue) {
  BasicAnimation animation = opacityAnimation(0, 1, 10);
  animation.fillMode = FillMode::Forwards;
  EXPECT_EQ(progressAt(animation, Seconds{99.9}), std::nullopt);
  EXPECT_EQ(progressAt(animation, Seconds{110}), 1);
  EXPECT_EQ(progressAt(animation, Seconds{1e9}), 1);
  animation.autoreverses = true;
  EXPECT_EQ(progressAt(animation, Seconds{1e9}), 0);
  animation.repeatCount = 0.75;  // forth, and half the way back
  EXPECT_DOUBLE_EQ(progressAt(animation, Seconds{1e9}).value(), 0.5);
}

TEST(ProgressAt, reversesAndRepeats) {
  BasicAnimation animation = opacityAnimation(0, 1, 10);
  animation.autoreverses = true;
  animation.repeatCount = 1'000'000;
  EXPECT_DOUBLE_EQ(progressAt(animation, Seconds{110}).value(), 1);
  EXPECT_DOUBLE_EQ(progressAt(animation, Seconds{112.5}).value(), 0.75);
  EXPECT_DOUBLE_EQ(progressAt(animation, Seconds{120}).value(), 0);
  EXPECT_DOUBLE_EQ(progressAt(animation, Seconds{122.5}).value(), 0.25);
}

TEST(ProgressAt, easesBackTheWayItCame) {
  BasicAnimation animation = opacityAnimation(0, 1, 10);
  animation.timing = TimingCurve::EaseInEaseOut;
  animation.autoreverses = true;
  EXPECT_NEAR(progressAt(animation, Seconds{102}).value(), progressAt(animation, Seconds{118}).value(),
              1e-12);
  EXPECT_NEAR(progressAt(animation, Seconds{101}).value(), 0.019722453548311, 1e-9);
}

TEST(ProgressAt, isPreciseAfterMonthsOfSwinging) {
  BasicAnimation animation = opacityAnimation(0, 1, 10);
  animation.autoreverses = true;
  animation.repeatCount = 1'000'000;
  EXPECT_NEAR(progressAt(animation, Seconds{100 + 19'999'980 + 2.5}).value(), 0.25, 1e-8);
}

TEST(ProgressAt, anAnimationOfNoLengthEndsWhereItBegins) {
  BasicAnimation animation = opacityAnimation(0, 1, 0);
  EXPECT_EQ(progressAt(animation, Seconds{100}), std::nullopt);
  animation.fillMode = FillMode::Forwards;
  EXPECT_EQ(progressAt(animation, Seconds{100}), 1);
}

TEST(ValueAt, mixesEveryKind) {
  BasicAnimation animation;
  animation.from = RectPt{{0, 10}, {100, 50}};
  animation.to = RectPt{{20, 0}, {200, 100}};
  EXPECT_EQ(std::get<RectPt>(valueAt(animation, 0.5)), (RectPt{{10, 5}, {150, 75}}));
  animation.from = PointPt{-3, 4};
  animation.to = PointPt{-1, 8};
  EXPECT_EQ(std::get<PointPt>(valueAt(animation, 0.25)), (PointPt{-2.5, 5}));
  animation.from = SizePt{1, 2};
  animation.to = SizePt{3, 6};
  EXPECT_EQ(std::get<SizePt>(valueAt(animation, 0.5)), (SizePt{2, 4}));
  EXPECT_EQ(std::get<SizePt>(valueAt(animation, 1)), (SizePt{3, 6}));
}

TEST(ChangesAfter, endsWithTheAnimation) {
  const BasicAnimation animation = opacityAnimation(0, 1, 10);
  EXPECT_TRUE(changesAfter(animation, Seconds{0}));
  EXPECT_TRUE(changesAfter(animation, Seconds{109.99}));
  EXPECT_FALSE(changesAfter(animation, Seconds{110}));
  EXPECT_FALSE(changesAfter(opacityAnimation(1, 1, 10), Seconds{105}));
}

TEST(LocalTime, followsBeginSpeedAndOffset) {
  LayerProperties layer;
  EXPECT_EQ(localTime(layer, Seconds{12}), Seconds{12});
  layer.beginTime = Seconds{10};
  layer.speed = 2;
  layer.timeOffset = Seconds{5};
  EXPECT_EQ(localTime(layer, Seconds{12}), Seconds{9});
  layer.speed = 0;
  EXPECT_EQ(localTime(layer, Seconds{1e6}), Seconds{5});
}

TEST(FitsKeyPath, tellsTheKinds) {
  EXPECT_TRUE(fitsKeyPath(RectPt{}, KeyPath::Bounds));
  EXPECT_TRUE(fitsKeyPath(SizePt{}, KeyPath::BoundsSize));
  EXPECT_TRUE(fitsKeyPath(PointPt{}, KeyPath::Position));
  EXPECT_TRUE(fitsKeyPath(1.0, KeyPath::Opacity));
  EXPECT_FALSE(fitsKeyPath(1.0, KeyPath::Bounds));
  EXPECT_FALSE(fitsKeyPath(RectPt{}, KeyPath::BoundsSize));
}

}  // namespace
}  // namespace lumivane
