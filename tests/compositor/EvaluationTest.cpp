#include "compositor/model/Evaluation.h"

#include <gtest/gtest.h>

#include "tests/support/LayerScenes.h"
#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

constexpr SizePt kScreen{1920, 1080};

class EvaluationTest : public testing::Test {
 protected:
  EvaluationTest() {
    root.edit([](LayerProperties& p) { p.bounds = {{0, 0}, kScreen}; });
  }
  [[nodiscard]] DrawList at(double seconds) const { return evaluate(*snapshot(), Seconds{seconds}); }
  [[nodiscard]] bool movingAt(double seconds) const { return isMoving(*snapshot(), Seconds{seconds}); }
  [[nodiscard]] std::shared_ptr<const FrameSnapshot> snapshot() const {
    return makeFrameSnapshot(root, kScreen, 1);
  }
  // The frame of the only quad, which has to be a picture.
  [[nodiscard]] RectPt pictureFrame(double seconds) const {
    const DrawList list = at(seconds);
    return list.quads.size() == 1 ? std::get<PictureQuad>(list.quads[0]).frame : RectPt{};
  }
  [[nodiscard]] std::vector<double> opacities(double seconds) const {
    std::vector<double> all;
    for (const Quad& quad : at(seconds).quads) {
      all.push_back(std::visit([](const auto& q) { return q.opacity; }, quad));
    }
    return all;
  }

  Layer root;
  BitmapRef picture = makeBitmap({400, 300});
};

void expectNear(const RectPt& found, const RectPt& expected, double tolerance = 1e-9) {
  EXPECT_NEAR(found.origin.x, expected.origin.x, tolerance);
  EXPECT_NEAR(found.origin.y, expected.origin.y, tolerance);
  EXPECT_NEAR(found.size.width, expected.size.width, tolerance);
  EXPECT_NEAR(found.size.height, expected.size.height, tolerance);
}

TEST_F(EvaluationTest, anEmptyTreeDrawsNothing) {
  EXPECT_TRUE(at(0).quads.empty());
  EXPECT_FALSE(movingAt(0));
  EXPECT_TRUE(evaluate(FrameSnapshot{}, Seconds{0}).quads.empty());
}

TEST_F(EvaluationTest, fitsAPictureIntoTheScreen) {
  root.addSublayer(plainPictureLayer(picture, kScreen));
  EXPECT_EQ(pictureFrame(0), (RectPt{{240, 0}, {1440, 1080}}));
  EXPECT_EQ(at(0).viewport, kScreen);
}

TEST_F(EvaluationTest, fillsTheScreenBeyondItsEdges) {
  root.addSublayer(plainPictureLayer(picture, kScreen))->edit([](LayerProperties& p) {
    p.contentsGravity = ContentsGravity::ResizeAspectFill;
  });
  EXPECT_EQ(pictureFrame(0), (RectPt{{0, -180}, {1920, 1440}}));
}

TEST_F(EvaluationTest, usesTheSizeAsSeen) {
  root.addSublayer(plainPictureLayer(makeBitmap({400, 300}, Rgba{}, 6), kScreen));
  EXPECT_EQ(pictureFrame(0), (RectPt{{555, 0}, {810, 1080}}));
}

TEST_F(EvaluationTest, zoomsAboutTheMiddle) {
  Layer* layer = root.addSublayer(plainPictureLayer(picture, kScreen));
  layer->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1600, 900}, SizePt{2304, 1296}, 10), "zoom",
                      Seconds{5});
  expectNear(pictureFrame(5), {{360, 90}, {1200, 900}});
  expectNear(pictureFrame(10), {{228, -9}, {1464, 1098}});  // half way, by the curve's symmetry
  expectNear(pictureFrame(15), {{96, -108}, {1728, 1296}});
  expectNear(pictureFrame(20), {{228, -9}, {1464, 1098}});
  expectNear(pictureFrame(25), {{360, 90}, {1200, 900}});
  EXPECT_TRUE(movingAt(25));
}

TEST_F(EvaluationTest, pansWithoutRounding) {
  const RectPt left{{0, 10.5}, {320, 180}};
  const RectPt right{{80, 100}, {320, 180}};
  root.addSublayer(panningPictureLayer(picture, kScreen, left, right, 10, Seconds{0}));
  expectNear(pictureFrame(0), {{0, -63}, {2400, 1800}});
  expectNear(pictureFrame(10), {{-480, -600}, {2400, 1800}});
  expectNear(pictureFrame(2.5), {{-480 * 0.129161931, -63 - 537 * 0.129161931}, {2400, 1800}}, 1e-5);
}

TEST_F(EvaluationTest, crossDissolveFadesOneInAndTheOtherOut) {
  Layer* old = root.addSublayer(plainPictureLayer(picture, kScreen));
  Layer* fresh = root.addSublayer(plainPictureLayer(makeBitmap({400, 300}), kScreen));
  addFade(*fresh, 2, 0, 1, Seconds{10});
  addFade(*old, 1.95, 1, 0, Seconds{10});
  EXPECT_EQ(opacities(10), std::vector{1.0});  // the new one is not to be seen yet
  const double in = eased(TimingCurve::EaseInEaseOut, 0.25);
  const double out = 1 - eased(TimingCurve::EaseInEaseOut, 0.5 / 1.95);
  ASSERT_EQ(opacities(10.5).size(), 2U);
  EXPECT_NEAR(opacities(10.5)[0], out, 1e-12);
  EXPECT_NEAR(opacities(10.5)[1], in, 1e-12);
  EXPECT_EQ(opacities(11.96).size(), 1U);  // gone 0.05 s before the new one is fully there
  EXPECT_EQ(opacities(12), std::vector{1.0});
  EXPECT_EQ(opacities(500), std::vector{1.0});
  EXPECT_TRUE(movingAt(11.99));
  EXPECT_FALSE(movingAt(12));
}

TEST_F(EvaluationTest, aFadedOutPictureThatStillZoomsDoesNotMove) {
  Layer* old = root.addSublayer(plainPictureLayer(picture, kScreen));
  old->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1600, 900}, SizePt{2304, 1296}, 10), "zoom",
                    Seconds{0});
  addFade(*old, 1, 1, 0, Seconds{10});
  EXPECT_TRUE(movingAt(10.5));
  EXPECT_FALSE(movingAt(11));
  EXPECT_TRUE(at(11).quads.empty());
}

TEST_F(EvaluationTest, aFrozenPictureStandsStill) {
  Layer* layer = root.addSublayer(plainPictureLayer(picture, kScreen));
  layer->addAnimation(swinging(KeyPath::BoundsSize, SizePt{1600, 900}, SizePt{2304, 1296}, 10), "zoom",
                      Seconds{0});
  const RectPt then = pictureFrame(3);
  pauseLayer(*layer, Seconds{3});
  EXPECT_EQ(pictureFrame(3), then);
  EXPECT_EQ(pictureFrame(100), then);
  EXPECT_FALSE(movingAt(3));
  resumeLayer(*layer, Seconds{100});
  expectNear(pictureFrame(100), then);
  EXPECT_TRUE(movingAt(100));
  expectNear(pictureFrame(107), {{96, -108}, {1728, 1296}});
}

TEST_F(EvaluationTest, laterAnimationsOverrideEarlierOnes) {
  Layer* layer = root.addSublayer(plainPictureLayer(picture, kScreen));
  addFade(*layer, 1, 0, 1, Seconds{0});
  BasicAnimation out;
  out.from = 1.0;
  out.to = 0.0;
  out.duration = Seconds{2};
  out.timing = TimingCurve::Linear;
  layer->addAnimation(out, "out", Seconds{10});
  EXPECT_EQ(opacities(5), std::vector{1.0});
  EXPECT_EQ(opacities(11), std::vector{0.5});
  EXPECT_EQ(opacities(12), std::vector{1.0});  // not filled: the earlier one shows again
}

TEST_F(EvaluationTest, leavesOutWhatCannotBeSeen) {
  Layer* layer = root.addSublayer(plainPictureLayer(picture, kScreen));
  layer->edit([](LayerProperties& p) { p.opacity = 0; });
  EXPECT_TRUE(at(0).quads.empty());
  layer->edit([](LayerProperties& p) {
    p.opacity = 1;
    p.hidden = true;
  });
  EXPECT_TRUE(at(0).quads.empty());
  layer->edit([](LayerProperties& p) {
    p.hidden = false;
    p.bounds.size.height = 0;
  });
  EXPECT_TRUE(at(0).quads.empty());
}

TEST_F(EvaluationTest, multipliesOpacitiesAndHidesWithTheSuperlayer) {
  root.edit([](LayerProperties& p) { p.opacity = 0.5; });
  Layer* layer = root.addSublayer(plainPictureLayer(picture, kScreen));
  layer->edit([](LayerProperties& p) { p.opacity = 0.5; });
  EXPECT_EQ(opacities(0), std::vector{0.25});
  root.edit([](LayerProperties& p) { p.hidden = true; });
  EXPECT_TRUE(at(0).quads.empty());
}

TEST_F(EvaluationTest, placesSublayersInTheirSuperlayersCoordinates) {
  Layer* box = root.addSublayer(std::make_unique<Layer>());
  box->edit([](LayerProperties& p) {
    p.bounds = {{10, 20}, {200, 100}};
    p.position = {500, 300};
  });
  Layer* inner = box->addSublayer(std::make_unique<Layer>());
  inner->edit([](LayerProperties& p) {
    p.bounds = {{0, 0}, {40, 30}};
    p.anchorPoint = {0, 0};
    p.position = {10, 20};
    p.backgroundColor = {1, 0, 0, 1};
  });
  // The box's lower left corner is at (400, 250) and is (10, 20) in its own coordinates.
  ASSERT_EQ(at(0).quads.size(), 1U);
  EXPECT_EQ(std::get<ColorQuad>(at(0).quads[0]).frame, (RectPt{{400, 250}, {40, 30}}));
}

TEST_F(EvaluationTest, theRootLiesInTheLowerLeftCornerWhereverItsPosition) {
  root.edit([](LayerProperties& p) {
    p.position = {77, 88};
    p.backgroundColor = {0, 0, 1, 1};
  });
  EXPECT_EQ(std::get<ColorQuad>(at(0).quads[0]).frame, (RectPt{{0, 0}, kScreen}));
}

TEST_F(EvaluationTest, drawsShadowThenBackgroundThenContents) {
  Layer* text = root.addSublayer(std::make_unique<Layer>());
  text->edit([&](LayerProperties& p) {
    p.bounds = {{0, 0}, {300, 40}};
    p.anchorPoint = {0, 0};
    p.position = {14, 14};
    p.contents = picture;
    p.opacity = 0.5;
    p.backgroundColor = {0.5, 0.5, 0.5, 0.3F};
    p.shadow = {{0, 0, 0, 1}, 0.5, 7, {2, -3}, RectPt{{0, 0}, {300, 40}}};
  });
  const auto quads = at(0).quads;
  ASSERT_EQ(quads.size(), 3U);
  EXPECT_EQ(std::get<ShadowQuad>(quads[0]), (ShadowQuad{{{16, 11}, {300, 40}}, 7, {0, 0, 0, 1}, 0.25}));
  EXPECT_EQ(std::get<ColorQuad>(quads[1]), (ColorQuad{{{14, 14}, {300, 40}}, {0.5, 0.5, 0.5, 0.3F}, 0.5}));
  EXPECT_EQ(std::get<PictureQuad>(quads[2]).frame, (RectPt{{14, 14}, {300, 40}}));
}

TEST_F(EvaluationTest, aLayerThatDrawsNothingDoesNotMove) {
  Layer* layer = root.addSublayer(std::make_unique<Layer>());
  addFade(*layer, 5, 1, 0, Seconds{0});
  EXPECT_FALSE(movingAt(1));
  layer->addSublayer(plainPictureLayer(picture, kScreen));
  EXPECT_TRUE(movingAt(1));
  EXPECT_FALSE(movingAt(5));
}

TEST_F(EvaluationTest, anAnimationYetToBeginCountsAsMotion) {
  Layer* layer = root.addSublayer(plainPictureLayer(picture, kScreen));
  BasicAnimation animation;
  animation.from = 1.0;
  animation.to = 0.0;
  animation.duration = Seconds{1};
  animation.beginTime = Seconds{50};
  layer->addAnimation(animation, "later", Seconds{0});
  EXPECT_TRUE(movingAt(10));
  EXPECT_EQ(opacities(10), std::vector{1.0});
  EXPECT_FALSE(movingAt(51));
}

// Of contents made for the screen's own pixels it is the pixels that tell how many points they take up.
TEST_F(EvaluationTest, contentsInTheLowerLeftCornerAreDrawnPixelForPixel) {
  Layer* const text = root.addSublayer(std::make_unique<Layer>());
  text->edit([&](LayerProperties& p) {
    p.bounds = {{0, 0}, {161.3, 121.7}};
    p.anchorPoint = {0, 0};
    p.position = {14, 14};
    p.contents = picture;
    p.contentsGravity = ContentsGravity::LowerLeft;
  });
  const DrawList list = evaluate(*makeFrameSnapshot(root, kScreen, 2.5), Seconds{0});
  ASSERT_EQ(list.quads.size(), 1U);
  const auto& quad = std::get<PictureQuad>(list.quads.front());
  EXPECT_TRUE(quad.pixelForPixel);
  EXPECT_EQ(quad.frame, (RectPt{{14, 14}, {160, 120}}));
  text->edit([](LayerProperties& p) { p.contentsGravity = ContentsGravity::Resize; });
  EXPECT_FALSE(std::get<PictureQuad>(at(0).quads.front()).pixelForPixel);
}

}  // namespace
}  // namespace lumivane
