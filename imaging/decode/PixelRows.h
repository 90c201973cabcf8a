// Small steps on rows of RGBA pixels of 8 bits a channel.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lumivane {

// Multiplies the colours by their alpha, rounded to nearest; true when every alpha was 255.
inline bool premultiplyRow(std::uint8_t* row, std::size_t pixels) {
  unsigned allAlphas = 255;
  for (std::size_t x = 0; x < pixels; ++x, row += 4) {
    const unsigned alpha = row[3];
    allAlphas &= alpha;
    if (alpha == 255) continue;
    for (int c = 0; c < 3; ++c) row[c] = static_cast<std::uint8_t>((row[c] * alpha + 127) / 255);
  }
  return allAlphas == 255;
}

// Red, green, blue and alpha of pixels of `bands` bytes: 1 grey, 2 grey and alpha, 3 colours, 4 colours and alpha.
inline void spreadToRgba(int bands, const std::uint8_t* in, std::uint8_t* rgba, std::size_t pixels) {
  const auto put = [&rgba](std::uint8_t red, std::uint8_t green, std::uint8_t blue, std::uint8_t alpha) {
    rgba[0] = red, rgba[1] = green, rgba[2] = blue, rgba[3] = alpha;
    rgba += 4;
  };
  switch (bands) {
    case 1:
      for (std::size_t x = 0; x < pixels; ++x) put(in[x], in[x], in[x], 255);
      break;
    case 2:
      for (std::size_t x = 0; x < pixels; ++x) put(in[2 * x], in[2 * x], in[2 * x], in[2 * x + 1]);
      break;
    case 3:
      for (; pixels > 1; --pixels, in += 3, rgba += 4) {
        std::memcpy(rgba, in, 4);  // with a byte of the next pixel, which is faster than three
        rgba[3] = 255;
      }
      if (pixels == 1) put(in[0], in[1], in[2], 255);
      break;
    default:
      std::memcpy(rgba, in, 4 * pixels);
  }
}

}  // namespace lumivane
