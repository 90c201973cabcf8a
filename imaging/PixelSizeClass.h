// How much memory is really taken for the pixels of a picture.
//
// Threads: a pure function.
// Units:   bytes.
// Errors:  none.
#pragma once

#include <bit>
#include <cstddef>

namespace lumivane {

// The next of eight steps per power of two, so that buffers of pictures of about the same size can stand in for each
// other.
[[nodiscard]] constexpr std::size_t pixelPoolSizeClass(std::size_t bytes) {
  constexpr std::size_t kSmallestClass = 4096;
  if (bytes <= kSmallestClass) return kSmallestClass;
  const std::size_t step = std::bit_floor(bytes - 1) / 8;
  return (bytes + step - 1) / step * step;
}

}  // namespace lumivane
