// Windows and OS/2 bitmaps, read by ourselves: the libraries at hand leave them to ImageMagick, which reads far too
// much else to be let near unknown files.
//
// Threads: one at a time.
// Errors:  see PictureCodec. Bitmaps that wrap a JPEG or PNG, or have no pixels of 1 to 32 bits, are refused.
#pragma once

#include "imaging/decode/PictureCodec.h"

namespace lumivane {

// Requires: `file` outlives the codec.
[[nodiscard]] OpenedCodec openBmpCodec(const PictureFile& file);

}  // namespace lumivane
