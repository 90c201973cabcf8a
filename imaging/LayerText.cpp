#include "imaging/LayerText.h"

#include <algorithm>
#include <utility>

namespace lumivane {
namespace {

// How much of a layer lies on the screen from the layer's lower left corner on: what lies beyond needs no pixels,
// however large a font size was asked for.
double visibleLength(double length, double position, double anchor, double screen) {
  const double begin = std::max(0.0, position - anchor * length);
  return std::max(0.0, std::min(length, screen - begin));
}

SizePt visibleSize(const LayerProperties& layer, SizePt size, SizePt screen) {
  return {visibleLength(size.width, layer.position.x, layer.anchorPoint.x, screen.width),
          visibleLength(size.height, layer.position.y, layer.anchorPoint.y, screen.height)};
}

}  // namespace

void LayerText::set(Layer& layer, const TextRenderer& renderer, TextLayoutRequest request, double scale) {
  Setting setting{std::move(request), scale, layer.properties().position};
  if (shown_ == setting) return;
  const TextLayout layout = layOutText(renderer, setting.request);
  const SizePt visible = visibleSize(layer.properties(), layout.bounds.size, setting.request.screen);
  BitmapRef rendered = renderer.render(layout.text, layout.style, visible, scale);
  layer.edit([&](LayerProperties& p) {
    p.contents = std::move(rendered);
    p.contentsGravity = ContentsGravity::LowerLeft;
    p.bounds = layout.bounds;
    p.shadow.path = layout.bounds;
  });
  shown_ = std::move(setting);
}

}  // namespace lumivane
