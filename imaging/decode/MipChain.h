// Makes the smaller levels of a picture from its full size, each pixel the mean of a 2 x 2 block of the level above.
//
// A side of odd length loses its last row or column; a side of length 1 stays 1, and its pixel is the mean of two.
// Means are rounded half up, channel by channel, so premultiplied colours stay no larger than their alpha.
//
// Threads: any; pure functions.
// Units:   RGBA, 8 bits a channel.
// Errors:  none.
#pragma once

#include <cstddef>
#include <span>

#include "compositor/model/Bitmap.h"

namespace lumivane {

// Requires: `levels` as packedLevels() gives them, all inside `pixels`; level 0 is filled.
void buildMipChain(std::span<std::byte> pixels, std::span<const BitmapLevel> levels);

// One row of the next level from two rows of this one, `outPixels` wide. The plain form is what the fast one must equal.
void halveRowPair(const std::byte* upper, const std::byte* lower, std::byte* out, std::size_t outPixels);
void halveRowPairPlainly(const std::byte* upper, const std::byte* lower, std::byte* out,
                         std::size_t outPixels);

}  // namespace lumivane
