// The two inner loops of shrinking: one row filtered across, and several rows filtered into one. In three forms, for
// processors of different width, that give the same to the last bit.
//
// Threads: any; pure functions.
// Units:   RGBA, 8 bits a channel; weights have the sum 1 << kWeightBits.
// Errors:  none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumivane {

inline constexpr int kWeightBits = 14;

// For each pixel of the result the first source pixel that counts, and the same number of weights from there on.
struct FilterTaps {
  std::size_t taps = 0;  // a multiple of RowFilters::tapsStep; those beyond the source have no weight
  std::vector<std::int32_t> first;
  std::vector<std::int16_t> weights;

  [[nodiscard]] const std::int16_t* weightsOf(std::size_t i) const { return &weights[i * taps]; }
};

struct RowFilters {
  // The pixels `begin` to `end` of the result, from pixels that are counted from `in` on. Reads all taps of each.
  using Across = void (*)(const std::uint8_t* in, const FilterTaps& columns, std::size_t begin,
                          std::size_t end, std::uint8_t* out);
  // `bytes` of the result from `taps` rows. Reads whole blocks of 16 bytes of each row and writes no byte too many.
  using Down = void (*)(const std::uint8_t* const* rows, const std::int16_t* weights, std::size_t taps,
                        std::size_t bytes, std::uint8_t* out);

  Across across = nullptr;
  Down down = nullptr;
  std::size_t tapsStep = 1;
};

// The fastest that this processor can run, and all of them, the plain one first.
[[nodiscard]] RowFilters fastestRowFilters();
[[nodiscard]] std::vector<RowFilters> allRowFilters();

}  // namespace lumivane
