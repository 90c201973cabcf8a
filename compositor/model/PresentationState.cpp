#include "compositor/model/PresentationState.h"

#include <algorithm>

#include "compositor/model/AnimationTiming.h"

namespace lumivane {
namespace {

void apply(const AnimatedValue& value, KeyPath keyPath, PresentationState& state) {
  switch (keyPath) {
    case KeyPath::Bounds:
      state.bounds = std::get<RectPt>(value);
      break;
    case KeyPath::BoundsSize:
      state.bounds.size = std::get<SizePt>(value);
      break;
    case KeyPath::Position:
      state.position = std::get<PointPt>(value);
      break;
    case KeyPath::Opacity:
      state.opacity = std::get<double>(value);
      break;
  }
}

}  // namespace

PresentationState presentationState(const LayerSnapshot& layer, Seconds localTime) {
  const LayerProperties& properties = layer.properties;
  PresentationState state{properties.bounds, properties.position, properties.opacity};
  for (const BasicAnimation& animation : layer.animations) {
    const auto progress = progressAt(animation, localTime);
    if (progress) apply(valueAt(animation, *progress), animation.keyPath, state);
  }
  state.opacity = std::clamp(state.opacity, 0.0, 1.0);
  return state;
}

RectPt frameInSuperlayer(const PresentationState& state, PointPt anchorPoint) {
  const SizePt size = state.bounds.size;
  return {{state.position.x - anchorPoint.x * size.width, state.position.y - anchorPoint.y * size.height},
          size};
}

}  // namespace lumivane
