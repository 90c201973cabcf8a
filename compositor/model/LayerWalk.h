// Goes through a snapshot's layers from back to front, with each layer's time, state and place at one moment.
//
// Threads: any; pure.
// Units:   points of the viewport; seconds.
// Errors:  none.
#pragma once

#include <functional>

#include "compositor/model/LayerSnapshot.h"
#include "compositor/model/PresentationState.h"

namespace lumivane {

struct LayerVisit {
  const LayerSnapshot* layer = nullptr;
  Seconds localTime{0};
  double speed = 1;  // of local time against media time
  PresentationState state;
  RectPt frame;          // in the viewport
  double opacity = 1;    // the product of its own and those of all layers above it
  bool visible = true;   // can be seen at this moment or, by a fade, at a later one
  bool fading = false;   // its opacity, or that of a layer above it, still changes
  bool carried = false;  // its place, or that of a layer above it, still changes

  // Where a rectangle in the layer's own coordinates lies in the viewport.
  [[nodiscard]] RectPt toViewport(const RectPt& own) const;
};

void visitLayers(const FrameSnapshot& frame, Seconds presentationTime,
                 const std::function<void(const LayerVisit&)>& visit);

}  // namespace lumivane
