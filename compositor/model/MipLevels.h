// Which mip levels of a picture can be sampled at the size at which it is shown.
//
// Threads: any; pure.
// Units:   picture sizes in pixels, shown sizes in points, scale in device pixels a point.
// Errors:  none.
#pragma once

#include <cstddef>

#include "compositor/model/Bitmap.h"
#include "compositor/model/Layer.h"
#include "platform/Geometry.h"

namespace lumivane {

// The most detailed level (0 = full size) that is sampled when the whole picture is drawn no larger than this;
// every smaller level may be sampled as well. A linear filter knows only level 0.
[[nodiscard]] std::size_t mostDetailedLevel(const Bitmap& bitmap, SizePt largestShown, double scale,
                                            ContentsFilter minification);

}  // namespace lumivane
