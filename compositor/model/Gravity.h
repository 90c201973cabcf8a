// Where a layer's contents lie in relation to its bounds.
//
// Threads: any; pure.
// Units:   points. Of a content that is scaled only the proportions count.
// Errors:  contents or bounds without area give a rectangle without area.
#pragma once

#include "compositor/model/Layer.h"
#include "platform/Geometry.h"

namespace lumivane {

// The whole content scaled, centred on the rectangle: stretched to it, fitted into it, or filling it (it then
// reaches beyond the rectangle; nothing is cut off). Or as large as it is, in the lower left corner.
[[nodiscard]] RectPt contentsRect(const RectPt& rect, SizePt content, ContentsGravity gravity);

// The same for sizes only.
[[nodiscard]] SizePt contentsSize(SizePt box, SizePt content, ContentsGravity gravity);

}  // namespace lumivane
