#include "compositor/model/Evaluation.h"

#include "compositor/model/Gravity.h"
#include "compositor/model/LayerWalk.h"
#include "compositor/model/TexturesWanted.h"

namespace lumivane {
namespace {

bool hasArea(const RectPt& rect) {
  return rect.size.width > 0 && rect.size.height > 0;
}

bool castsShadow(const LayerProperties& properties) {
  return properties.shadow.path && properties.shadow.opacity > 0 && properties.shadow.color.alpha > 0;
}

bool drawsAnything(const LayerProperties& properties) {
  return properties.contents || properties.backgroundColor.alpha > 0 || castsShadow(properties);
}

void drawShadow(const LayerVisit& visit, std::vector<Quad>& quads) {
  const LayerShadow& shadow = visit.layer->properties.shadow;
  RectPt rect = visit.toViewport(*shadow.path);
  rect.origin.x += shadow.offset.x;
  rect.origin.y += shadow.offset.y;
  if (hasArea(rect))
    quads.push_back(ShadowQuad{rect, shadow.radius, shadow.color, shadow.opacity * visit.opacity});
}

void drawContents(const LayerVisit& visit, double scale, std::vector<Quad>& quads) {
  const LayerProperties& properties = visit.layer->properties;
  const SizePx pixels = properties.contents->displaySize();
  const bool pixelForPixel = properties.contentsGravity == ContentsGravity::LowerLeft;
  const double pixelsAPoint = pixelForPixel ? scale : 1;
  const SizePt content{pixels.width / pixelsAPoint, pixels.height / pixelsAPoint};
  quads.push_back(PictureQuad{contentsRect(visit.frame, content, properties.contentsGravity),
                              properties.contents, visit.opacity, properties.minificationFilter,
                              properties.magnificationFilter, pixelForPixel});
}

void draw(const LayerVisit& visit, double scale, std::vector<Quad>& quads) {
  if (!visit.visible || !(visit.opacity > 0)) return;
  const LayerProperties& properties = visit.layer->properties;
  if (castsShadow(properties)) drawShadow(visit, quads);
  if (!hasArea(visit.frame)) return;
  if (properties.backgroundColor.alpha > 0) {
    quads.push_back(ColorQuad{visit.frame, properties.backgroundColor, visit.opacity});
  }
  if (properties.contents) drawContents(visit, scale, quads);
}

}  // namespace

void evaluate(const FrameSnapshot& frame, Seconds presentationTime, DrawList& list) {
  list.viewport = frame.viewport;
  list.quads.clear();
  texturesWanted(frame, presentationTime, list.wanted);
  visitLayers(frame, presentationTime,
              [&](const LayerVisit& visit) { draw(visit, frame.scale, list.quads); });
}

DrawList evaluate(const FrameSnapshot& frame, Seconds presentationTime) {
  DrawList list;
  evaluate(frame, presentationTime, list);
  return list;
}

bool isMoving(const FrameSnapshot& frame, Seconds time) {
  bool moving = false;
  visitLayers(frame, time, [&](const LayerVisit& visit) {
    const bool changes = visit.fading || (visit.carried && visit.opacity > 0);
    moving = moving || (visit.visible && changes && drawsAnything(visit.layer->properties));
  });
  return moving;
}

}  // namespace lumivane
