// What a layer looks like at one moment: its properties with its animations in force.
//
// Threads: any; pure.
// Units:   points in the superlayer's coordinates; seconds of the layer's local time.
// Errors:  none.
#pragma once

#include "compositor/model/LayerSnapshot.h"
#include "platform/Geometry.h"

namespace lumivane {

struct PresentationState {
  RectPt bounds;
  PointPt position;
  double opacity = 1;
};

// Animations override the properties in the order of their adding.
[[nodiscard]] PresentationState presentationState(const LayerSnapshot& layer, Seconds localTime);

// The layer's rectangle in its superlayer: its bounds, placed by position and anchor point.
[[nodiscard]] RectPt frameInSuperlayer(const PresentationState& state, PointPt anchorPoint);

}  // namespace lumivane
