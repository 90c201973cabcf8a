// Small steps on rows of RGBA pixels of 8 bits a channel.
//
// Threads: any; pure functions.
// Errors:  none.
#pragma once

#include <cstddef>
#include <cstdint>

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

}  // namespace lumivane
