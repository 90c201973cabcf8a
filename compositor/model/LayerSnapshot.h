// An immutable copy of a layer tree, as it is handed to the render thread.
//
// Threads: made on the main thread; read from any.
// Owns:    its values; shares the contents of the layers.
// Units:   points, origin lower left, y up; scale is device pixels a point; times are seconds of media time.
// Errors:  none.
#pragma once

#include <memory>
#include <vector>

#include "compositor/model/BasicAnimation.h"
#include "compositor/model/Layer.h"

namespace lumivane {

struct LayerSnapshot {
  LayerProperties properties;
  // In the order of adding, without their calls.
  std::vector<BasicAnimation> animations;
  // Back to front: by z position, those with the same one in the order of adding.
  std::vector<std::shared_ptr<const LayerSnapshot>> sublayers;
};

// What one frame is made from. The root layer's bounds origin lies in the viewport's lower left corner, whatever
// its position and anchor point: the root is placed by its window.
struct FrameSnapshot {
  std::shared_ptr<const LayerSnapshot> root;
  SizePt viewport;
  double scale = 1;
};

[[nodiscard]] std::shared_ptr<const FrameSnapshot> makeFrameSnapshot(const Layer& root, SizePt viewport,
                                                                     double scale);

}  // namespace lumivane
