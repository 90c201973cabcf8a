// Where the memory that a picture is decoded into comes from.
//
// Threads: as its implementation says.
// Owns:    nothing of what it hands out.
// Units:   bytes.
// Errors:  take() hands out an empty buffer when there is no memory.
#pragma once

#include <cstddef>

#include "compositor/model/Bitmap.h"

namespace lumivane {

class PixelSource {
 public:
  virtual ~PixelSource() = default;

  // A buffer of exactly this many bytes, at least 64-byte aligned; its content is undefined.
  [[nodiscard]] virtual PixelBuffer take(std::size_t bytes) = 0;
};

}  // namespace lumivane
