// The header of a Windows or OS/2 bitmap, checked.
//
// Threads: a value; reading is a pure function.
// Units:   pixels; bytes from the start of the file.
// Errors:  nothing for a header that makes no sense or is of a kind that is not read.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "platform/Geometry.h"

namespace lumivane {

// One colour channel of a pixel number: which bits, 0 = the channel is not there.
struct BmpChannel {
  std::uint32_t mask = 0;
  // The channel's value in `pixel`, spread to 0..255.
  [[nodiscard]] std::uint8_t valueIn(std::uint32_t pixel) const;
};

struct BmpHeader {
  enum class Packing { Plain, RunLength8, RunLength4 };

  SizePx size;
  bool topDown = false;
  int bitsPerPixel = 0;
  Packing packing = Packing::Plain;
  std::uint32_t pixelsAt = 0;
  std::array<BmpChannel, 4> channels;                // of 16 and 32 bits: red, green, blue, alpha
  std::vector<std::array<std::uint8_t, 3>> palette;  // of 1 to 8 bits: red, green, blue; always full length
};

// How many bytes from the start of the file are enough: the longest header and palette.
inline constexpr std::size_t kBmpHeaderBytes = 14 + 124 + 12 + 256 * 4;

[[nodiscard]] std::optional<BmpHeader> readBmpHeader(std::span<const std::byte> start);

}  // namespace lumivane
