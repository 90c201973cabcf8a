// Small pictures made by the tests themselves.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>

#include "compositor/model/Bitmap.h"

namespace lumivane {

struct Rgba {
  std::uint8_t red = 0, green = 0, blue = 0, alpha = 255;
  bool operator==(const Rgba&) const = default;
};

// Each smaller level as the mean of 2 x 2 pixels of the one before.
inline void fillSmallerLevels(std::uint8_t* bytes, const std::vector<BitmapLevel>& levels) {
  for (std::size_t level = 1; level < levels.size(); ++level) {
    const BitmapLevel& large = levels[level - 1];
    const BitmapLevel& small = levels[level];
    const auto sample = [&](int x, int y, int channel) {
      const auto column = static_cast<std::size_t>(std::min(x, large.size.width - 1));
      const auto row = static_cast<std::size_t>(std::min(y, large.size.height - 1));
      return int{bytes[large.offsetBytes + row * large.strideBytes + column * 4 +
                       static_cast<std::size_t>(channel)]};
    };
    for (int y = 0; y < small.size.height; ++y) {
      for (int x = 0; x < small.size.width; ++x) {
        for (int channel = 0; channel < 4; ++channel) {
          const int sum = sample(2 * x, 2 * y, channel) + sample(2 * x + 1, 2 * y, channel) +
                          sample(2 * x, 2 * y + 1, channel) + sample(2 * x + 1, 2 * y + 1, channel);
          bytes[small.offsetBytes + static_cast<std::size_t>(y) * small.strideBytes +
                static_cast<std::size_t>(x * 4 + channel)] = static_cast<std::uint8_t>((sum + 2) / 4);
        }
      }
    }
  }
}

// A picture whose stored pixel (x, y), y counted from the top, is pixel(x, y), with all its mip levels. The alpha
// must be premultiplied already; it is opaque when every alpha is 255.
inline BitmapRef makeBitmap(SizePx size, const std::function<Rgba(int x, int y)>& pixel,
                            OrientationCode orientation = 1) {
  const auto levels = packedLevels(size);
  PixelBuffer buffer = PixelBuffer::allocate(packedLevelsBytes(size));
  auto* bytes = reinterpret_cast<std::uint8_t*>(buffer.bytes().data());
  bool opaque = true;
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const Rgba color = pixel(x, y);
      const auto place = static_cast<std::size_t>((y * size.width + x) * 4);
      bytes[place] = color.red;
      bytes[place + 1] = color.green;
      bytes[place + 2] = color.blue;
      bytes[place + 3] = color.alpha;
      opaque = opaque && color.alpha == 255;
    }
  }
  fillSmallerLevels(bytes, levels);
  return std::make_shared<const Bitmap>(std::move(buffer), levels, orientation, opaque);
}

inline BitmapRef makeBitmap(SizePx size, Rgba color = {128, 128, 128, 255}, OrientationCode orientation = 1) {
  return makeBitmap(
      size, [color](int, int) { return color; }, orientation);
}

// A picture of which only the size counts: costs no time to make, however large.
inline BitmapRef blankBitmap(SizePx size, OrientationCode orientation = 1) {
  return std::make_shared<const Bitmap>(PixelBuffer::allocate(packedLevelsBytes(size)), packedLevels(size),
                                        orientation, true);
}

}  // namespace lumivane
