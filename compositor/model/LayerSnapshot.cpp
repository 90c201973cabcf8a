#include "compositor/model/LayerSnapshot.h"

#include <algorithm>

namespace lumivane {
namespace {

std::shared_ptr<const LayerSnapshot> snapshotOf(const Layer& layer) {
  auto snapshot = std::make_shared<LayerSnapshot>();
  snapshot->properties = layer.properties();
  for (const Layer::KeyedAnimation& keyed : layer.animations()) {
    snapshot->animations.push_back(keyed.animation);
    snapshot->animations.back().didStop = nullptr;
  }
  for (const auto& sublayer : layer.sublayers()) snapshot->sublayers.push_back(snapshotOf(*sublayer));
  std::ranges::stable_sort(snapshot->sublayers, {},
                           [](const auto& sublayer) { return sublayer->properties.zPosition; });
  return snapshot;
}

}  // namespace

std::shared_ptr<const FrameSnapshot> makeFrameSnapshot(const Layer& root, SizePt viewport, double scale) {
  return std::make_shared<const FrameSnapshot>(FrameSnapshot{snapshotOf(root), viewport, scale});
}

}  // namespace lumivane
