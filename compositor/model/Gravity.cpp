#include "compositor/model/Gravity.h"

#include <algorithm>

namespace lumivane {

SizePt contentsSize(SizePt box, SizePt content, ContentsGravity gravity) {
  if (gravity == ContentsGravity::Resize) return box;
  if (gravity == ContentsGravity::LowerLeft) return content;
  if (!(content.width > 0 && content.height > 0)) return {};
  const double across = box.width / content.width;
  const double up = box.height / content.height;
  // One side is taken from the box itself, so that it fits to the last bit.
  const bool byWidth = (gravity == ContentsGravity::ResizeAspect) == (across < up);
  return byWidth ? SizePt{box.width, content.height * across} : SizePt{content.width * up, box.height};
}

RectPt contentsRect(const RectPt& rect, SizePt content, ContentsGravity gravity) {
  if (gravity == ContentsGravity::LowerLeft) return {rect.origin, content};
  const SizePt size = contentsSize(rect.size, content, gravity);
  return {{rect.origin.x + (rect.size.width - size.width) / 2,
           rect.origin.y + (rect.size.height - size.height) / 2},
          size};
}

}  // namespace lumivane
