// Shrinks a picture while it is being decoded: takes its rows from the top and hands out the rows of the smaller one.
//
// Two steps, as image libraries do it: whole factors of 2 and more by a box mean, then the rest (below 2) by a
// Lanczos filter of three lobes. Only a few rows are held at a time.
//
// Threads: one at a time.
// Units:   RGBA, 8 bits a channel, premultiplied.
// Errors:  none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "imaging/decode/RowFilters.h"
#include "platform/Geometry.h"

namespace lumivane {

class RowShrinker {
 public:
  // Where row `y` of the result is to be written.
  using Destination = std::function<std::uint8_t*(int y)>;

  // Requires: 1 <= to <= from on both sides.
  RowShrinker(SizePx from, SizePx to, Destination destination);

  // The next row from the top. Rows beyond the picture's height are ignored.
  void add(const std::uint8_t* row);

 private:
  void finishBlock();
  void addBoxed(const std::uint8_t* row);
  void emitReadyRows();
  void shrinkAcross(const std::uint8_t* row, std::uint8_t* out);

  // Constant after construction
  SizePx from_;
  SizePx box_;    // whole factors
  SizePx boxed_;  // size after the box mean
  SizePx to_;
  Destination destination_;
  RowFilters filters_;
  FilterTaps columns_;
  FilterTaps rows_;
  std::size_t columnsInside_ = 0;  // those before have all their taps in the row
  FilterTaps edgeColumns_;         // the others, counted from edgeFirst_
  std::int32_t edgeFirst_ = 0;     // the first pixel that they read
  std::size_t rowBytes_;           // of a held row, a multiple of 16

  // While rows come in
  std::vector<std::uint32_t> sums_;  // of the block of rows being averaged
  int rowsInBlock_ = 0;
  int rowsSeen_ = 0;
  std::vector<std::uint8_t> boxedRow_;
  std::vector<std::uint8_t> edge_;  // the row's end, and what a filter may read beyond it
  std::vector<std::uint8_t> ring_;  // the last rows, shrunk across
  std::vector<const std::uint8_t*> rowPointers_;
  int boxedRowsSeen_ = 0;
  int nextRow_ = 0;
};

}  // namespace lumivane
