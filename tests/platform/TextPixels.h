// Looks at what a text renderer drew.
#pragma once

#include <QRect>
#include <cstddef>

#include "compositor/model/Bitmap.h"
#include "platform/linux/TextFonts.h"

namespace lumivane {

// Figures hold for these, whatever the language of the desktop that the tests are run on.
inline const TextFonts kTestFonts{"DejaVu Sans Mono", "DejaVu Sans", "Noto Color Emoji"};

struct Pixel {
  int red = 0, green = 0, blue = 0, alpha = 0;
  [[nodiscard]] bool isGrey() const { return red == green && green == blue; }
};

[[nodiscard]] inline Pixel pixelAt(const Bitmap& bitmap, int x, int y) {
  const BitmapLevel& level = bitmap.levels().front();
  const std::size_t at = static_cast<std::size_t>(y) * level.strideBytes + static_cast<std::size_t>(x) * 4;
  const auto bytes = bitmap.levelBytes(0).subspan(at, 4);
  return {std::to_integer<int>(bytes[0]), std::to_integer<int>(bytes[1]), std::to_integer<int>(bytes[2]),
          std::to_integer<int>(bytes[3])};
}

// The smallest rectangle that holds everything that is not transparent.
[[nodiscard]] inline QRect inkOf(const Bitmap& bitmap) {
  QRect ink;
  for (int y = 0; y < bitmap.storedSize().height; ++y) {
    for (int x = 0; x < bitmap.storedSize().width; ++x) {
      if (pixelAt(bitmap, x, y).alpha > 16) ink |= QRect(x, y, 1, 1);
    }
  }
  return ink;
}

// How many pixels have a colour.
[[nodiscard]] inline int colouredPixels(const Bitmap& bitmap) {
  int count = 0;
  for (int y = 0; y < bitmap.storedSize().height; ++y) {
    for (int x = 0; x < bitmap.storedSize().width; ++x) count += pixelAt(bitmap, x, y).isGrey() ? 0 : 1;
  }
  return count;
}

}  // namespace lumivane
