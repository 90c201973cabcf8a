// Reads from a HEIF or AVIF file how its container turns the primary picture ('irot' and 'imir').
//
// The library that decodes these files applies the turn and does not tell it; the size as stored cannot be known without.
//
// Threads: any; a pure function of the file.
// Errors:  1 (no turn) for whatever cannot be read.
#pragma once

#include "compositor/model/Bitmap.h"
#include "imaging/decode/PictureFile.h"

namespace lumivane {

[[nodiscard]] OrientationCode heifTurnOf(const PictureFile& file);

}  // namespace lumivane
