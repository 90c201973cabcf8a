#include "compositor/model/LayerWalk.h"

#include <algorithm>

#include "compositor/model/AnimationTiming.h"

namespace lumivane {
namespace {

using Visitor = std::function<void(const LayerVisit&)>;

bool changes(const LayerVisit& here, bool opacity) {
  return here.speed > 0 && std::ranges::any_of(here.layer->animations, [&](const BasicAnimation& animation) {
           return (animation.keyPath == KeyPath::Opacity) == opacity &&
                  changesAfter(animation, here.localTime);
         });
}

// The visit to a layer, given the one to its superlayer and where that layer's coordinates begin.
LayerVisit step(const LayerSnapshot& layer, const LayerVisit& above, PointPt coordinates) {
  const LayerProperties& properties = layer.properties;
  LayerVisit here;
  here.layer = &layer;
  here.localTime = localTime(properties, above.localTime);
  here.speed = above.speed * properties.speed;
  here.state = presentationState(layer, here.localTime);
  here.frame = frameInSuperlayer(here.state, properties.anchorPoint);
  here.frame.origin.x += coordinates.x;
  here.frame.origin.y += coordinates.y;
  here.opacity = above.opacity * here.state.opacity;
  const bool fades = changes(here, true);
  here.fading = above.fading || fades;
  here.carried = above.carried || changes(here, false);
  here.visible = above.visible && !properties.hidden && (here.state.opacity > 0 || fades);
  return here;
}

void walk(const LayerVisit& here, const Visitor& visit) {
  visit(here);
  const PointPt coordinates = here.toViewport({}).origin;
  for (const auto& sublayer : here.layer->sublayers) walk(step(*sublayer, here, coordinates), visit);
}

}  // namespace

RectPt LayerVisit::toViewport(const RectPt& own) const {
  return {{frame.origin.x - state.bounds.origin.x + own.origin.x,
           frame.origin.y - state.bounds.origin.y + own.origin.y},
          own.size};
}

void visitLayers(const FrameSnapshot& frame, Seconds presentationTime, const Visitor& visit) {
  if (!frame.root) return;
  LayerVisit window;
  window.localTime = presentationTime;
  LayerVisit root = step(*frame.root, window, {});
  root.frame.origin = {};  // the root is placed by its window
  walk(root, visit);
}

}  // namespace lumivane
