#include "compositor/model/TexturesWanted.h"

#include <algorithm>

#include "compositor/model/Gravity.h"
#include "compositor/model/LayerWalk.h"
#include "compositor/model/MipLevels.h"

namespace lumivane {
namespace {

SizePt larger(SizePt a, SizePt b) {
  return {std::max(a.width, b.width), std::max(a.height, b.height)};
}

// Width and height of the largest bounds that the layer takes on.
SizePt largestBounds(const LayerSnapshot& layer) {
  SizePt largest = layer.properties.bounds.size;
  for (const BasicAnimation& animation : layer.animations) {
    for (const AnimatedValue& value : {animation.from, animation.to}) {
      if (const auto* rect = std::get_if<RectPt>(&value)) largest = larger(largest, rect->size);
      if (const auto* size = std::get_if<SizePt>(&value)) largest = larger(largest, *size);
    }
  }
  return largest;
}

SizePt largestExtent(const LayerSnapshot& layer) {
  const SizePx pixels = layer.properties.contents->displaySize();
  const SizePt content{static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
  return contentsSize(largestBounds(layer), content, layer.properties.contentsGravity);
}

// A bitmap may be in several layers: a picture on the screen is often still held ready in a hidden one. What is
// shown counts more than what may be; of two that are shown, the more detailed one.
void merge(const WantedTexture& texture, std::vector<WantedTexture>& wanted) {
  const auto known = std::ranges::find(wanted, texture.bitmap, &WantedTexture::bitmap);
  if (known == wanted.end()) {
    wanted.push_back(texture);
  } else if (known->shown == texture.shown) {
    known->mostDetailedLevel = std::min(known->mostDetailedLevel, texture.mostDetailedLevel);
  } else if (texture.shown) {
    *known = texture;
  }
}

// The shown ones first, otherwise as they were. They are few; std::stable_partition would allocate.
void putShownFirst(std::vector<WantedTexture>& wanted) {
  auto held = wanted.begin();
  for (auto texture = held; texture != wanted.end(); ++texture) {
    if (texture->shown) std::rotate(held++, texture, texture + 1);
  }
}

}  // namespace

void texturesWanted(const FrameSnapshot& frame, Seconds presentationTime,
                    std::vector<WantedTexture>& wanted) {
  wanted.clear();
  visitLayers(frame, presentationTime, [&](const LayerVisit& visit) {
    const LayerProperties& properties = visit.layer->properties;
    if (!properties.contents) return;
    const SizePt extent = largestExtent(*visit.layer);
    const std::size_t level =
        mostDetailedLevel(*properties.contents, extent, frame.scale, properties.minificationFilter);
    merge({properties.contents, level, visit.visible}, wanted);
  });
  putShownFirst(wanted);
}

}  // namespace lumivane
