// How a point of a picture as seen is found in the picture as stored: the turn by the codes 1 to 8 of Exif.
//
// Threads: any; pure.
// Units:   fractions of the picture's sides. As seen: x to the right, y up. As stored: x along the rows, y from row
//          to row, so that (0, 0) is the first pixel in memory and a texture can be read without flipping.
// Errors:  none.
#pragma once

#include "compositor/model/Bitmap.h"

namespace lumivane {

// stored.x = dot(along, (x, y, 1)), stored.y = dot(across, (x, y, 1)).
struct OrientationMap {
  float along[3] = {1, 0, 0};
  float across[3] = {0, -1, 1};
};

// Requires: a code of 1 to 8.
[[nodiscard]] OrientationMap orientationMap(OrientationCode code);

}  // namespace lumivane
