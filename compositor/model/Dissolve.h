// When two neighbouring quads can be drawn as one.
//
// Threads: any; pure.
// Errors:  none.
#pragma once

#include <optional>

#include "compositor/model/DrawList.h"

namespace lumivane {

// The two pictures of a cross-dissolve, when `lower` and `upper` follow each other in a draw list and are opaque
// pictures that lie over one another. Drawn in one pass, each pixel of the screen is touched once instead of twice;
// blending `upper` over `lower` first and the outcome over what lies below gives the same picture as blending one
// after the other.
struct Dissolve {
  const PictureQuad* lower = nullptr;
  const PictureQuad* upper = nullptr;
};
[[nodiscard]] std::optional<Dissolve> dissolveOf(const Quad& lower, const Quad& upper);

}  // namespace lumivane
