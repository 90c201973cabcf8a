#include "imaging/PictureLayers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "imaging/PanAndZoom.h"
#include "tests/support/RecordingLog.h"

namespace lumivane {
namespace {

const PictureStage kStage{{{0, 0}, {1920, 1080}}, 10, Seconds(100)};

BitmapRef makePicture() {
  const SizePx size{4, 3};
  return std::make_shared<Bitmap>(PixelBuffer::allocate(packedLevelsBytes(size)), packedLevels(size), 1,
                                  true);
}

void expectMotion(const BasicAnimation* motion, KeyPath keyPath) {
  ASSERT_NE(motion, nullptr);
  EXPECT_EQ(motion->keyPath, keyPath);
  EXPECT_EQ(motion->timing, TimingCurve::EaseInEaseOut);
  EXPECT_EQ(motion->duration, Seconds(10));
  EXPECT_TRUE(motion->autoreverses);
  EXPECT_EQ(motion->repeatCount, 1'000'000);
  EXPECT_EQ(motion->fillMode, FillMode::Removed);
}

TEST(PictureLayers, PlainLayerFitsThePictureIntoTheScreen) {
  const BitmapRef picture = makePicture();
  const auto layer = makeImageLayer(picture, kStage);
  const LayerProperties& properties = layer->properties();
  EXPECT_EQ(properties.contents, picture);
  EXPECT_EQ(properties.contentsGravity, ContentsGravity::ResizeAspect);
  EXPECT_EQ(properties.opacity, 1);
  EXPECT_EQ(properties.position, (PointPt{960, 540}));
  EXPECT_EQ(properties.anchorPoint, (PointPt{0.5, 0.5}));
  EXPECT_EQ(properties.zPosition, -1);
  EXPECT_EQ(properties.bounds, (RectPt{{0, 0}, {1920, 1080}}));
  EXPECT_EQ(properties.minificationFilter, ContentsFilter::Trilinear);
  EXPECT_EQ(properties.magnificationFilter, ContentsFilter::Trilinear);
  EXPECT_TRUE(layer->animations().empty());
}

TEST(PictureLayers, ZoomLayerChangesItsSizeToAndFro) {
  const auto layer = makeImageLayer(makePicture(), SizePt{1600, 900}, SizePt{2304, 1296}, kStage);
  EXPECT_EQ(layer->properties().contentsGravity, ContentsGravity::ResizeAspect);
  EXPECT_EQ(layer->properties().anchorPoint, (PointPt{0.5, 0.5}));
  ASSERT_EQ(layer->animations().size(), 1U);
  const BasicAnimation* motion = layer->animation("myBoundsAnim");
  expectMotion(motion, KeyPath::BoundsSize);
  EXPECT_EQ(std::get<SizePt>(motion->from), (SizePt{1600, 900}));
  EXPECT_EQ(std::get<SizePt>(motion->to), (SizePt{2304, 1296}));
  EXPECT_EQ(motion->beginTime, Seconds(100));
}

TEST(PictureLayers, PanAndZoomLayerIsPlacedByItsAnimationsAlone) {
  RecordingLog log;
  TwisterRandom random;
  const BitmapRef picture = makePicture();
  const auto layer = makeImageLayerWithKenBurns(picture, 4000, 3000, kStage, random, log);
  const LayerProperties& properties = layer->properties();
  EXPECT_EQ(properties.contents, picture);
  EXPECT_EQ(properties.contentsGravity, ContentsGravity::Resize);
  EXPECT_EQ(properties.opacity, 1);
  EXPECT_EQ(properties.anchorPoint, (PointPt{0, 0}));
  EXPECT_EQ(properties.zPosition, 0);
  EXPECT_EQ(properties.bounds, RectPt{});
  EXPECT_EQ(properties.position, PointPt{});
  EXPECT_EQ(properties.minificationFilter, ContentsFilter::Trilinear);
  EXPECT_EQ(properties.magnificationFilter, ContentsFilter::Trilinear);
  EXPECT_TRUE(log.entries().empty());
}

TEST(PictureLayers, PanAndZoomFillsTheScreenWithItsTwoParts) {
  RecordingLog log;
  TwisterRandom random;
  TwisterRandom sameRandom;
  const auto layer = makeImageLayerWithKenBurns(makePicture(), 4000, 3000, kStage, random, log);
  const auto [from, to] = calcKenBurnsForImageWidth(4000, 3000, kStage.drawRect.size, sameRandom, log);
  ASSERT_EQ(layer->animations().size(), 2U);

  const BasicAnimation* bounds = layer->animation("myBoundsAnim");
  expectMotion(bounds, KeyPath::Bounds);
  const double fromScale = 1920 / from.width;
  const double toScale = 1920 / to.width;
  EXPECT_EQ(std::get<RectPt>(bounds->from), (RectPt{{0, 0}, {fromScale * 4000, fromScale * 3000}}));
  EXPECT_EQ(std::get<RectPt>(bounds->to), (RectPt{{0, 0}, {toScale * 4000, toScale * 3000}}));

  const BasicAnimation* position = layer->animation("myPositionAnim");
  expectMotion(position, KeyPath::Position);
  EXPECT_EQ(std::get<PointPt>(position->from), (PointPt{-from.x * fromScale, -from.y * fromScale}));
  EXPECT_EQ(std::get<PointPt>(position->to), (PointPt{-to.x * toScale, -to.y * toScale}));
  EXPECT_EQ(bounds->beginTime, position->beginTime);
}

TEST(PictureLayers, PictureWithoutASizePutsNoInfinityIntoTheTree) {
  RecordingLog log;
  TwisterRandom random;
  for (const auto& [width, height] : {std::pair(0.0F, 0.0F), std::pair(100.0F, 0.0F)}) {
    const auto layer = makeImageLayerWithKenBurns(makePicture(), width, height, kStage, random, log);
    EXPECT_EQ(std::get<RectPt>(layer->animation("myBoundsAnim")->from).size, SizePt{});
    EXPECT_EQ(std::get<PointPt>(layer->animation("myPositionAnim")->to), PointPt{});
  }
}

TEST(PictureLayers, FadeKeepsItsEnd) {
  const BasicAnimation fade = makeOpacityAnimWithDuration(Seconds(1.575), 1, 0);
  EXPECT_EQ(fade.keyPath, KeyPath::Opacity);
  EXPECT_EQ(std::get<double>(fade.from), 1);
  EXPECT_EQ(std::get<double>(fade.to), 0);
  EXPECT_EQ(fade.duration, Seconds(1.575));
  EXPECT_EQ(fade.timing, TimingCurve::EaseInEaseOut);
  EXPECT_EQ(fade.fillMode, FillMode::Forwards);
  EXPECT_FALSE(fade.removedOnCompletion);
  EXPECT_FALSE(fade.autoreverses);
  EXPECT_EQ(fade.repeatCount, 1);
  EXPECT_FALSE(fade.beginTime.has_value()) << "not yet attached";
}

}  // namespace
}  // namespace lumivane
