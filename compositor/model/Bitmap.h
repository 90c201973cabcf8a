// A picture in memory, ready to be drawn: pixels, their mip levels, and how they are to be turned.
//
// Threads: immutable once made; read from any thread.
// Owns:    its pixels; what they came from (a pool, shared memory) gets them back when the last owner goes.
// Units:   pixels. 8 bits a channel, red green blue alpha, alpha premultiplied, rows from the top, no padding
//          between levels assumed; colours are sRGB. A photograph may lie in planes instead: BitmapRows.h gives the rows
//          of either.
// Errors:  none; a maker checks sizes before it makes one.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "compositor/model/PlanarLayout.h"
#include "platform/Geometry.h"

namespace lumivane {

// A block of memory on loan. Whoever made it gets it back through the release function.
class PixelBuffer {
 public:
  using Release = std::function<void(std::byte* data, std::size_t bytes)>;

  PixelBuffer() = default;
  PixelBuffer(std::byte* data, std::size_t bytes, Release release);
  PixelBuffer(PixelBuffer&& other) noexcept;
  PixelBuffer& operator=(PixelBuffer&& other) noexcept;
  PixelBuffer(const PixelBuffer&) = delete;
  PixelBuffer& operator=(const PixelBuffer&) = delete;
  ~PixelBuffer();

  // A buffer of its own, freed when dropped: for text, tests and other small things. Zeroed.
  [[nodiscard]] static PixelBuffer allocate(std::size_t bytes);

  [[nodiscard]] std::span<std::byte> bytes() { return {data_, size_}; }
  [[nodiscard]] std::span<const std::byte> bytes() const { return {data_, size_}; }

 private:
  std::byte* data_ = nullptr;
  std::size_t size_ = 0;
  Release release_;
};

// How stored pixels are turned to be seen, by the codes 1 to 8 of Exif (1 = as stored, 6 = a quarter turn
// clockwise, ...). The turn is made in texture coordinates, never by moving pixels.
using OrientationCode = int;

class Bitmap {
 public:
  // Requires: levels[0] is the full size, each next one half of it (rounded down, at least 1), all inside the
  // buffer; orientation 1..8. `opaque` promises that every alpha is 255.
  Bitmap(PixelBuffer pixels, std::vector<BitmapLevel> levels, OrientationCode orientation, bool opaque);

  // Requires: the layout fits into the buffer; orientation 1..8. Such a picture is opaque.
  Bitmap(PixelBuffer pixels, PlanarLayout layout, OrientationCode orientation);

  [[nodiscard]] std::span<const BitmapLevel> levels() const { return levels_; }
  // Requires: the level is stored, as all are but the first ones of a picture in planes.
  [[nodiscard]] std::span<const std::byte> levelBytes(std::size_t level) const;
  [[nodiscard]] bool isStored(std::size_t level) const { return levels_[level].strideBytes != 0; }
  [[nodiscard]] const std::optional<PlanarLayout>& planes() const { return planes_; }
  [[nodiscard]] std::span<const std::byte> bytes() const { return pixels_.bytes(); }
  [[nodiscard]] OrientationCode orientation() const { return orientation_; }
  [[nodiscard]] bool opaque() const { return opaque_; }
  [[nodiscard]] SizePx storedSize() const { return levels_.front().size; }
  // The size as seen: width and height swapped for the codes 5 to 8.
  [[nodiscard]] SizePx displaySize() const;

 private:
  PixelBuffer pixels_;
  std::vector<BitmapLevel> levels_;
  std::optional<PlanarLayout> planes_;
  OrientationCode orientation_;
  bool opaque_;
};

using BitmapRef = std::shared_ptr<const Bitmap>;

// Where each level of a picture of this size lies when the levels follow each other without gaps, down to 1 x 1.
[[nodiscard]] std::vector<BitmapLevel> packedLevels(SizePx fullSize);
[[nodiscard]] std::size_t packedLevelsBytes(SizePx fullSize);

}  // namespace lumivane
