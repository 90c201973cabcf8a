// The text that stands in a layer: set anew only when something changed that it depends on.
//
// Threads: main only.
// Owns:    a note of what was set last.
// Units:   points; scale is device pixels a point.
// Errors:  none.
#pragma once

#include <optional>

#include "compositor/model/Layer.h"
#include "imaging/TextLayout.h"

namespace lumivane {

class LayerText {
 public:
  // Gives the layer the text, as large as it comes out, and the shadow its size. Where the same text stands already,
  // in the same place of the same screen, the layer is left alone: nothing is drawn anew.
  // Requires: always the same layer, placed where it is to stay.
  void set(Layer& layer, const TextRenderer& renderer, TextLayoutRequest request, double scale);

 private:
  struct Setting {
    TextLayoutRequest request;
    double scale = 1;
    PointPt position;  // of the layer: what of it lies on the screen
    bool operator==(const Setting&) const = default;
  };
  std::optional<Setting> shown_;
};

}  // namespace lumivane
