// How other programs get a picture into memory: the libraries that they stand on, called as they call them.
//
// Threads: one at a time.
// Errors:  nothing, or false, where the library cannot read the picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/Geometry.h"

namespace lumivane {

// imlib2, which feh shows pictures with: its cache off, turned by itself as the picture's Exif orientation says.
[[nodiscard]] std::optional<SizePx> loadWithImlib(const std::string& path);

// QImageReader with the turn applied, as Qt programs read. With `longestSide` above 0 the reader shrinks larger pictures to it. With
// `toSrgb` the colours are converted from the embedded profile.
struct QtWish {
  int longestSide = 0;
  bool toSrgb = false;
};
[[nodiscard]] std::optional<SizePx> loadWithQt(const std::string& path, QtWish wish);
// The same, and its pixels: red, green, blue, row by row without gaps.
[[nodiscard]] std::vector<std::uint8_t> pixelsOfQt(const std::string& path, QtWish wish, SizePx& size);

// vips_thumbnail(): shrinks larger pictures to `longestSide`, turns them, converts colours to sRGB.
[[nodiscard]] std::optional<SizePx> loadWithVips(const std::string& path, int longestSide);

}  // namespace lumivane
