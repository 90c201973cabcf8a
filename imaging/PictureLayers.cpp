#include "imaging/PictureLayers.h"

#include <cmath>
#include <utility>

#include "imaging/PanAndZoom.h"

namespace lumivane {
namespace {

// A picture that stays longer than one pass swings to and fro; this many times is for ever.
constexpr double kForever = 1'000'000;

constexpr double kPlainLayerZ = -1;
constexpr double kPanAndZoomLayerZ = 0;

// One of the animations that move a picture. All of them keep the same time.
BasicAnimation makeMotion(KeyPath keyPath, AnimatedValue from, AnimatedValue to, const PictureStage& stage) {
  BasicAnimation motion;
  motion.keyPath = keyPath;
  motion.from = from;
  motion.to = to;
  motion.duration = Seconds(stage.durationPerImage);
  motion.timing = TimingCurve::EaseInEaseOut;
  motion.autoreverses = true;
  motion.repeatCount = kForever;
  return motion;
}

void setPicture(LayerProperties& properties, BitmapRef image) {
  properties.contents = std::move(image);
  properties.opacity = 1;
  properties.minificationFilter = ContentsFilter::Trilinear;
  properties.magnificationFilter = properties.minificationFilter;
}

// Where the layer of the whole picture has to be for one part of it to fill the screen.
struct Placement {
  RectPt bounds;
  PointPt position;
};

Placement placementFor(const PictureRect& part, double width, double height, double screenWidth) {
  // Both parts have the screen's aspect, so the widths say it all.
  const double scale = screenWidth / part.width;
  if (!std::isfinite(scale))
    return {};  // a picture of no size shows nothing, but puts no infinity into the tree
  return {{{0, 0}, {scale * width, scale * height}}, {-part.x * scale, -part.y * scale}};
}

}  // namespace

std::unique_ptr<Layer> makeImageLayer(BitmapRef image, const PictureStage& stage) {
  auto layer = std::make_unique<Layer>();
  layer->edit([&](LayerProperties& properties) {
    setPicture(properties, std::move(image));
    properties.contentsGravity = ContentsGravity::ResizeAspect;
    properties.position = {stage.drawRect.size.width / 2, stage.drawRect.size.height / 2};
    properties.anchorPoint = {0.5, 0.5};
    properties.zPosition = kPlainLayerZ;
    properties.bounds = stage.drawRect;
  });
  return layer;
}

std::unique_ptr<Layer> makeImageLayer(BitmapRef image, SizePt fromSize, SizePt toSize,
                                      const PictureStage& stage) {
  std::unique_ptr<Layer> layer = makeImageLayer(std::move(image), stage);
  layer->addAnimation(makeMotion(KeyPath::BoundsSize, fromSize, toSize, stage), kBoundsAnimKey, stage.now);
  return layer;
}

std::unique_ptr<Layer> makeImageLayerWithKenBurns(BitmapRef image, float width, float height,
                                                  const PictureStage& stage, RandomSource& random, Log& log) {
  auto layer = std::make_unique<Layer>();
  layer->edit([&](LayerProperties& properties) {
    setPicture(properties, std::move(image));
    properties.anchorPoint = {0, 0};
    properties.zPosition = kPanAndZoomLayerZ;
  });
  const auto [fromRect, toRect] = calcKenBurnsForImageWidth(width, height, stage.drawRect.size, random, log);
  const Placement from = placementFor(fromRect, width, height, stage.drawRect.size.width);
  const Placement to = placementFor(toRect, width, height, stage.drawRect.size.width);
  layer->addAnimation(makeMotion(KeyPath::Bounds, from.bounds, to.bounds, stage), kBoundsAnimKey, stage.now);
  layer->addAnimation(makeMotion(KeyPath::Position, from.position, to.position, stage), kPositionAnimKey,
                      stage.now);
  return layer;
}

BasicAnimation makeOpacityAnimWithDuration(Seconds duration, double from, double to) {
  BasicAnimation fade;
  fade.keyPath = KeyPath::Opacity;
  fade.from = from;
  fade.to = to;
  fade.duration = duration;
  fade.timing = TimingCurve::EaseInEaseOut;
  fade.fillMode = FillMode::Forwards;
  fade.removedOnCompletion = false;
  return fade;
}

}  // namespace lumivane
