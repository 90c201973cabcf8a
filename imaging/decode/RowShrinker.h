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
  // The weights of one pixel of the result along one axis: those from `first` on count, padded to an even number.
  struct Taps {
    int first = 0;
    std::vector<std::int16_t> weights;  // sum is 1 << 14
  };
  // `ratio` is how many of the `from` pixels make one of the `to` pixels; the last of them may be cut off.
  static std::vector<Taps> lanczosTaps(int from, int to, double ratio);

  void finishBlock();
  void addBoxed(const std::uint8_t* row);
  void emitReadyRows();
  void shrinkAcross(const std::uint8_t* row, std::uint8_t* out) const;
  void emit(const Taps& taps, std::uint8_t* out) const;

  // Constant after construction
  SizePx from_;
  SizePx box_;    // whole factors
  SizePx boxed_;  // size after the box mean
  SizePx to_;
  Destination destination_;
  std::vector<Taps> columns_;
  std::vector<Taps> rows_;
  std::size_t rowBytes_;  // of a held row, a multiple of 16

  // While rows come in
  std::vector<std::uint32_t> sums_;  // of the block of rows being averaged
  int rowsInBlock_ = 0;
  int rowsSeen_ = 0;
  std::vector<std::uint8_t> boxedRow_;  // padded: filters read two pixels at a time
  std::vector<std::uint8_t> ring_;      // the last rows, shrunk across
  int ringRows_ = 0;
  int boxedRowsSeen_ = 0;
  int nextRow_ = 0;
};

}  // namespace lumivane
