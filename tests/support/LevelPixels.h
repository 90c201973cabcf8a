// A mip level of a picture as RGBA without gaps between its rows, whichever way the picture is stored.
#pragma once

#include <vector>

#include "compositor/model/BitmapRows.h"

namespace lumivane {

[[nodiscard]] inline std::vector<std::byte> levelPixels(const Bitmap& bitmap, std::size_t level) {
  BitmapRows rows(bitmap);
  const SizePx size = bitmap.levels()[level].size;
  const std::size_t rowBytes = static_cast<std::size_t>(size.width) * 4;
  std::vector<std::byte> pixels;
  pixels.reserve(rowBytes * static_cast<std::size_t>(size.height));
  for (int row = 0; row < size.height; ++row) {
    const std::byte* const first = rows.read(level, row, 1).first;
    pixels.insert(pixels.end(), first, first + rowBytes);
  }
  return pixels;
}

}  // namespace lumivane
