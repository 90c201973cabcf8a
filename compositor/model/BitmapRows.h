// The rows of a picture's mip levels as RGBA, whether they are stored like that or have to be made from its planes.
//
// Threads: one at a time.
// Owns:    the rows that it made last.
// Units:   levels are those of the bitmap, 0 = full size; rows from the top, not turned.
// Errors:  none.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "compositor/model/PlanarRows.h"

namespace lumivane {

struct RgbaRows {
  const std::byte* first = nullptr;
  std::size_t strideBytes = 0;
};

class BitmapRows {
 public:
  // Requires: the bitmap outlives this.
  explicit BitmapRows(const Bitmap& bitmap);

  // Valid until the next call. Requires: the rows lie in the level, `count` is at least 1.
  [[nodiscard]] RgbaRows read(std::size_t level, int first, int count);

 private:
  const Bitmap& bitmap_;
  std::optional<PlanarRows> planes_;
  std::vector<std::byte> made_;
};

}  // namespace lumivane
