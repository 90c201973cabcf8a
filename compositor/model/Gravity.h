// Where a layer's contents lie in relation to its bounds.
//
// Threads: any; pure.
// Units:   points; the content size in any unit, only its proportions count.
// Errors:  contents or bounds without area give a rectangle without area.
#pragma once

#include "compositor/model/Layer.h"
#include "platform/Geometry.h"

namespace lumivane {

// The whole content scaled, centred on the rectangle: stretched to it, fitted into it, or filling it (it then
// reaches beyond the rectangle; nothing is cut off).
[[nodiscard]] RectPt contentsRect(const RectPt& rect, SizePt content, ContentsGravity gravity);

// The same for sizes only.
[[nodiscard]] SizePt contentsSize(SizePt box, SizePt content, ContentsGravity gravity);

}  // namespace lumivane
