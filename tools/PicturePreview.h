// A small copy of a decoded picture, as it is seen, in a PNG file's bytes.
//
// Threads: any; a pure function.
// Units:   pixels.
// Errors:  an Error where there is no memory.
#pragma once

#include <string>

#include "compositor/model/Bitmap.h"
#include "platform/Result.h"

namespace lumivane {

// At most longestSide on its longer side, never enlarged; the orientation is applied.
[[nodiscard]] Result<std::string> previewPng(const Bitmap& picture, int longestSide);

}  // namespace lumivane
