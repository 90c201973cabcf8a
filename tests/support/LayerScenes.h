// Layers as a slideshow makes them, for tests of what becomes of them on the screen.
#pragma once

#include <memory>
#include <utility>

#include "compositor/model/Layer.h"
#include "compositor/model/LayerSnapshot.h"

namespace lumivane {

// A picture fitted into the screen, its anchor in the middle.
inline std::unique_ptr<Layer> plainPictureLayer(BitmapRef picture, SizePt screen) {
  auto layer = std::make_unique<Layer>();
  layer->edit([&](LayerProperties& p) {
    p.contents = std::move(picture);
    p.contentsGravity = ContentsGravity::ResizeAspect;
    p.position = {screen.width / 2, screen.height / 2};
    p.zPosition = -1;
    p.minificationFilter = p.magnificationFilter = ContentsFilter::Trilinear;
    p.bounds = {{0, 0}, screen};
  });
  return layer;
}

inline BasicAnimation swinging(KeyPath keyPath, AnimatedValue from, AnimatedValue to, double seconds) {
  BasicAnimation animation;
  animation.keyPath = keyPath;
  animation.from = from;
  animation.to = to;
  animation.duration = Seconds{seconds};
  animation.autoreverses = true;
  animation.repeatCount = 1'000'000;
  return animation;
}

// A picture whose part `from` fills the screen at first and whose part `to` fills it at the end of a pass; the parts
// are in picture pixels, origin lower left, and have the screen's proportions.
inline std::unique_ptr<Layer> panningPictureLayer(const BitmapRef& picture, SizePt screen, RectPt from,
                                                  RectPt to, double seconds, Seconds now) {
  const SizePx size = picture->displaySize();
  const auto scale = [&](const RectPt& part) { return screen.width / part.size.width; };
  const auto bounds = [&](const RectPt& part) {
    return RectPt{{0, 0}, {scale(part) * size.width, scale(part) * size.height}};
  };
  const auto position = [&](const RectPt& part) {
    return PointPt{-part.origin.x * scale(part), -part.origin.y * scale(part)};
  };
  auto layer = std::make_unique<Layer>();
  layer->edit([&](LayerProperties& p) {
    p.contents = picture;
    p.anchorPoint = {0, 0};
    p.minificationFilter = p.magnificationFilter = ContentsFilter::Trilinear;
  });
  layer->addAnimation(swinging(KeyPath::Bounds, bounds(from), bounds(to), seconds), "bounds", now);
  layer->addAnimation(swinging(KeyPath::Position, position(from), position(to), seconds), "position", now);
  return layer;
}

inline void addFade(Layer& layer, double seconds, double from, double to, Seconds now) {
  BasicAnimation animation;
  animation.keyPath = KeyPath::Opacity;
  animation.from = from;
  animation.to = to;
  animation.duration = Seconds{seconds};
  animation.fillMode = FillMode::Forwards;
  animation.removedOnCompletion = false;
  layer.addAnimation(std::move(animation), "fade", now);
}

// Freezes a layer's local time, and lets it go on, as the key for pausing the motion does.
inline void pauseLayer(Layer& layer, Seconds now) {
  const Seconds local = layer.convertTime(now);
  layer.edit([&](LayerProperties& p) {
    p.speed = 0;
    p.timeOffset = local;
  });
}
inline void resumeLayer(Layer& layer, Seconds now) {
  const Seconds paused = layer.properties().timeOffset;
  layer.edit([](LayerProperties& p) {
    p.speed = 1;
    p.timeOffset = p.beginTime = Seconds{0};
  });
  const Seconds begin = layer.convertTime(now) - paused;
  layer.edit([&](LayerProperties& p) { p.beginTime = begin; });
}

}  // namespace lumivane
