// Made-up pictures in which a wrong turn, a wrong place or a wrong filter is seen at once.
#pragma once

#include <cmath>

#include "tests/support/TestBitmaps.h"

namespace lumivane {

inline std::uint8_t byteOf(double value) {
  return static_cast<std::uint8_t>(std::lround(std::min(255.0, std::max(0.0, value))));
}

// Red grows to the right, green downward, blue is constant.
inline BitmapRef gradientPicture(SizePx size, OrientationCode orientation = 1) {
  return makeBitmap(
      size,
      [size](int x, int y) {
        return Rgba{byteOf((x + 0.5) * 255 / size.width), byteOf((y + 0.5) * 255 / size.height), 64, 255};
      },
      orientation);
}

// A landscape: sky, sun at the upper left, hills, and a fine fence along the bottom.
inline BitmapRef landscapePicture(SizePx size) {
  return makeBitmap(size, [size](int px, int py) {
    const double x = (px + 0.5) / size.width;
    const double y = (py + 0.5) / size.height;
    const double hill = 0.62 + 0.1 * std::sin(x * 9) + 0.04 * std::sin(x * 23 + 1);
    if (std::hypot((x - 0.25) * size.width / size.height, y - 0.28) < 0.12) return Rgba{255, 230, 120, 255};
    if (y < hill) return Rgba{byteOf(90 + 120 * y), byteOf(150 + 80 * y), byteOf(230), 255};
    if (y > 0.92 && px / 4 % 2 == 0) return Rgba{240, 235, 225, 255};
    return Rgba{byteOf(40 + 80 * (y - hill)), byteOf(120 - 90 * (y - hill)), byteOf(50), 255};
  });
}

// A portrait of stripes and discs in warm colours.
inline BitmapRef portraitPicture(SizePx size) {
  return makeBitmap(size, [size](int px, int py) {
    const double x = (px + 0.5) / size.width;
    const double y = (py + 0.5) / size.height;
    const double ring = std::hypot(x - 0.5, (y - 0.4) * size.height / size.width);
    if (ring < 0.35) return std::fmod(ring * 20, 2) < 1 ? Rgba{250, 90, 60, 255} : Rgba{120, 20, 70, 255};
    return Rgba{byteOf(200 - 120 * y), byteOf(140 - 60 * x), byteOf(90 + 100 * y), 255};
  });
}

// An "F" on white, 12 x 16, stored so that the given code shows it upright.
inline BitmapRef letterPicture(OrientationCode code) {
  static constexpr const char* kLetter[16] = {"............", "............", "..########..", "..########..",
                                              "..##........", "..##........", "..##........", "..######....",
                                              "..######....", "..##........", "..##........", "..##........",
                                              "..##........", "..##........", "............", "............"};
  const SizePx seen{12, 16};
  const SizePx stored = code >= 5 ? SizePx{seen.height, seen.width} : seen;
  return makeBitmap(
      stored,
      [&](int column, int row) {
        // Where the stored pixel is seen, from the upper left, by what each code says of rows and columns.
        const int x = code >= 5 ? row : column;
        const int y = code >= 5 ? column : row;
        const bool mirrorX = code == 2 || code == 3 || code == 6 || code == 7;
        const bool mirrorY = code == 3 || code == 4 || code == 7 || code == 8;
        const char mark = kLetter[mirrorY ? seen.height - 1 - y : y][mirrorX ? seen.width - 1 - x : x];
        return mark == '#' ? Rgba{20, 60, 160, 255} : Rgba{250, 245, 235, 255};
      },
      code);
}

}  // namespace lumivane
