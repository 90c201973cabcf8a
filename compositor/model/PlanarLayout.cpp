#include "compositor/model/PlanarLayout.h"

#include <algorithm>
#include <cassert>

namespace lumivane {
namespace {

constexpr std::size_t kBytesPerPixel = 4;
constexpr std::size_t kBlockSide = 8;
constexpr std::size_t kAlignment = 64;  // that of the fastest loads and stores

std::size_t roundedUp(std::size_t number, std::size_t multiple) {
  return (number + multiple - 1) / multiple * multiple;
}

int dividedRoundingUp(int number, int divisor) {
  return (number + divisor - 1) / divisor;
}

// Puts a plane after what is there already.
Plane addPlane(std::size_t& bytes, SizePx size) {
  const Plane plane{bytes, size, roundedUp(static_cast<std::size_t>(size.width), kBlockSide)};
  bytes = roundedUp(bytes + plane.strideBytes * static_cast<std::size_t>(size.height), kAlignment);
  return plane;
}

}  // namespace

SizePx halved(SizePx size) {
  return {std::max(1, size.width / 2), std::max(1, size.height / 2)};
}

PlanarLayout packedPlanes(SizePx fullSize, Chroma chroma) {
  assert(std::min(fullSize.width, fullSize.height) >= kSmallestPlanarSide);
  PlanarLayout layout;
  layout.chroma = chroma;
  layout.luma = addPlane(layout.bytes, fullSize);
  if (chroma != Chroma::None) {
    const SizePx colour{dividedRoundingUp(fullSize.width, chromaColumns(chroma)),
                        dividedRoundingUp(fullSize.height, chromaRows(chroma))};
    layout.blue = addPlane(layout.bytes, colour);
    layout.red = addPlane(layout.bytes, colour);
  }
  for (SizePx size = fullSize;; size = halved(size)) {
    BitmapLevel level{0, size, 0};
    if (layout.levels.size() >= kFirstStoredLevel) {
      level = {layout.bytes, size, static_cast<std::size_t>(size.width) * kBytesPerPixel};
      layout.bytes += level.strideBytes * static_cast<std::size_t>(size.height);
    }
    layout.levels.push_back(level);
    if (size.width == 1 && size.height == 1) return layout;
  }
}

}  // namespace lumivane
