// Where brightness and colour of a photograph lie in memory when they stay apart, as JPEG stores them: a picture kept
// like this takes less than a third of the memory of one in RGBA.
//
// The planes hold the full size. The first levels of the mip chain are made from them row by row when they are wanted
// (PlanarRows.h); from kFirstStoredLevel on, where they hardly count, levels are stored as RGBA.
//
// Threads: pure functions on values.
// Units:   pixels; bytes. One byte a sample, full range.
// Errors:  none.
// Sources: the sample positions of JPEG files, JFIF 1.02.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/Geometry.h"

namespace lumivane {

inline constexpr std::size_t kFirstStoredLevel = 3;
// Smaller pictures are not worth the trouble.
inline constexpr int kSmallestPlanarSide = 64;

// One mip level: where in the buffer it starts, its size, the distance between its rows.
struct BitmapLevel {
  std::size_t offsetBytes = 0;
  SizePx size;
  std::size_t strideBytes = 0;  // 0 = not stored
};

// The size of the colour planes beside that of the brightness.
enum class Chroma : std::uint8_t { None, Full, HalfWidth, HalfHeight, Half };
inline constexpr Chroma kLastChroma = Chroma::Half;

[[nodiscard]] constexpr int chromaColumns(Chroma chroma) {
  return chroma == Chroma::HalfWidth || chroma == Chroma::Half ? 2 : 1;
}
[[nodiscard]] constexpr int chromaRows(Chroma chroma) {
  return chroma == Chroma::HalfHeight || chroma == Chroma::Half ? 2 : 1;
}

// Rows are padded to whole blocks of 8 samples, so that a decoder can write blocks.
struct Plane {
  std::size_t offsetBytes = 0;
  SizePx size;
  std::size_t strideBytes = 0;
};

struct PlanarLayout {
  Chroma chroma = Chroma::None;
  Plane luma;
  Plane blue;  // empty without colour, as is the next
  Plane red;
  std::vector<BitmapLevel> levels;  // all, the full size first
  std::size_t bytes = 0;
};

// Requires: no side below kSmallestPlanarSide.
[[nodiscard]] PlanarLayout packedPlanes(SizePx fullSize, Chroma chroma);

// The next level of a mip chain, rounded down.
[[nodiscard]] SizePx halved(SizePx size);

}  // namespace lumivane
