// What a shrunk picture ought to look like: the full picture, shrunk by libvips with a Lanczos filter of three lobes.
//
// Threads: one at a time.
// Units:   steps of 255.
// Errors:  vips::VError where the picture cannot be read.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Geometry.h"

namespace lumivane {

// The mean distance of all channels. Requires: `pixels` hold `size` with `channels` (3 or 4, red green blue first), without gaps.
[[nodiscard]] double meanError(const std::string& path, const std::uint8_t* pixels, SizePx size,
                               int channels);

}  // namespace lumivane
