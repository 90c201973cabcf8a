// Takes the rows of a picture as its decoder makes them and ends up with a bitmap of at most the wanted size.
//
// A picture that fits is decoded right where it stays; a larger one passes through a few scratch rows and is
// shrunk on the way, so that it never lies in memory at its full size.
//
// Threads: one at a time.
// Owns:    the pixels until finish() hands them out.
// Units:   RGBA, 8 bits a channel, premultiplied sRGB.
// Errors:  make() gives nothing when there is no memory.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "imaging/decode/PixelSource.h"
#include "imaging/decode/RowShrinker.h"

namespace lumivane {

// `size` with its longer side at most maxPixelSize, in proportion, no side below 1.
[[nodiscard]] SizePx fittingSize(SizePx size, int maxPixelSize);

class PictureWriter {
 public:
  static constexpr int kRowsAtOnce = 16;

  // Rows of `source` size will come; the result is `target`, no larger on either side.
  [[nodiscard]] static std::optional<PictureWriter> make(PixelSource& pool, SizePx source, SizePx target);

  // Room for the next rows of the source: kRowsAtOnce of them, but never beyond the picture's end.
  [[nodiscard]] std::uint8_t* rows();
  [[nodiscard]] int rowsAtOnce() const { return std::min(kRowsAtOnce, rowsLeft()); }
  [[nodiscard]] std::size_t strideBytes() const { return strideBytes_; }
  [[nodiscard]] int rowsLeft() const { return source_.height - rowsDone_; }
  [[nodiscard]] SizePx source() const { return source_; }
  // The first `count` of those rows are filled in.
  void commit(int count);

  // Requires: rowsLeft() is 0.
  [[nodiscard]] BitmapRef finish(OrientationCode orientation, bool opaque);

 private:
  PictureWriter(PixelBuffer pixels, std::vector<BitmapLevel> levels, SizePx source);

  PixelBuffer pixels_;
  std::vector<BitmapLevel> levels_;
  SizePx source_;
  std::size_t strideBytes_ = 0;
  int rowsDone_ = 0;
  std::optional<RowShrinker> shrinker_;
  std::vector<std::uint8_t> scratch_;
};

}  // namespace lumivane
