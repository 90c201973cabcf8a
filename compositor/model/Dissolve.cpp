#include "compositor/model/Dissolve.h"

namespace lumivane {
namespace {

bool overlap(const RectPt& a, const RectPt& b) {
  return a.origin.x < b.origin.x + b.size.width && b.origin.x < a.origin.x + a.size.width &&
         a.origin.y < b.origin.y + b.size.height && b.origin.y < a.origin.y + a.size.height;
}

}  // namespace

std::optional<Dissolve> dissolveOf(const Quad& lower, const Quad& upper) {
  const auto* below = std::get_if<PictureQuad>(&lower);
  const auto* above = std::get_if<PictureQuad>(&upper);
  if (below == nullptr || above == nullptr) return std::nullopt;
  if (!below->contents->opaque() || !above->contents->opaque()) return std::nullopt;
  if (!overlap(below->frame, above->frame)) return std::nullopt;
  return Dissolve{below, above};
}

}  // namespace lumivane
