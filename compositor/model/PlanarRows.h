// Makes rows of RGBA from the planes of a photograph: of its full size, or of one of the first mip levels, each pixel of
// which is the mean of a block of samples.
//
// Threads: one at a time; the planes are only read.
// Owns:    a few rows of scratch memory.
// Units:   levels are those of the picture, 0 = full size; sRGB, alpha 255.
// Errors:  none.
// Sources: YCbCr to RGB as JFIF 1.02 has it (ITU-R BT.601, full range). Colour of half the size is widened by the triangle
//          filter (3/4 of the nearer sample, 1/4 of the farther one), the same that libjpeg uses.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "compositor/model/PlanarLayout.h"

namespace lumivane {

class PlanarRows {
 public:
  // Requires: `layout` and `pixels`, which the layout fits into, outlive this.
  PlanarRows(const PlanarLayout& layout, std::span<const std::byte> pixels);

  // Makes a row. Requires: `level` is at most kFirstStoredLevel, `row` lies in it, `rgba` has room for it.
  void make(std::size_t level, int row, std::byte* rgba);

 private:
  [[nodiscard]] const std::uint8_t* samples(const Plane& plane, int row) const;
  // The row of a colour plane at the level's size; valid until the next call with the same `out`.
  const std::uint8_t* colourRow(const Plane& plane, std::size_t level, int row,
                                std::vector<std::uint8_t>& out);
  const std::uint8_t* widenedRow(const Plane& plane, int row, std::vector<std::uint8_t>& out);
  // The means of blocks of 2^columnSteps x 2^rowSteps samples.
  const std::uint8_t* meanRow(const Plane& plane, int columnSteps, int rowSteps, int row, int width,
                              std::vector<std::uint8_t>& out);

  const PlanarLayout& layout_;
  const std::span<const std::byte> pixels_;
  std::vector<std::uint16_t> sums_;
  std::vector<std::uint16_t> halved_;
  std::vector<std::uint8_t> luma_;
  std::vector<std::uint8_t> blue_;
  std::vector<std::uint8_t> red_;
};

}  // namespace lumivane
