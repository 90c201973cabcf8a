// The libraries that read picture formats, with nothing around them: the whole file is in memory already, the pixels go
// into memory that was used before, and what a picture file says besides its pixels is not looked at.
//
// Threads: one at a time.
// Owns:    nothing; the pool keeps the memory of the last pictures.
// Units:   RGBA, 8 bits a channel, but where it says otherwise.
// Errors:  false when the library does not like the picture.
#pragma once

#include <cstddef>
#include <functional>
#include <span>

#include "imaging/decode/PixelPool.h"

namespace lumivane {

using FileBytes = std::span<const std::byte>;
using CodecFloor = std::function<bool(FileBytes file, PixelPool& pool)>;

[[nodiscard]] bool decodeJpegAlone(FileBytes file, PixelPool& pool);
// Light and colours apart, as the file has them: 1.5 bytes a pixel.
[[nodiscard]] bool decodeJpegPlanesAlone(FileBytes file, PixelPool& pool);
[[nodiscard]] bool decodePngAlone(FileBytes file, PixelPool& pool);
[[nodiscard]] bool decodeTiffAlone(FileBytes file, PixelPool& pool);
[[nodiscard]] bool decodeWebpAlone(FileBytes file, PixelPool& pool);
// HEIC and AVIF. The library takes memory of its own for the pixels; there is no way to lend it any.
[[nodiscard]] bool decodeHeifAlone(FileBytes file, PixelPool& pool);

}  // namespace lumivane
