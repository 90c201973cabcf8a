// Counts intervals, as many as there may be in weeks, in a fixed room: how long they were, but for the last tenth of a
// millisecond.
//
// Threads: a value.
// Units:   nanoseconds; quantiles are rounded up to the tenth of a millisecond. What is longer than kLongest counts
//          as that long, the maximum is exact.
// Errors:  none; 0 while nothing was counted.
#pragma once

#include <array>
#include <cstdint>

#include "platform/Clock.h"

namespace lumivane {

class IntervalHistogram {
 public:
  static constexpr Nanoseconds kStep{100'000};
  static constexpr Nanoseconds kLongest{2'000'000'000};

  void add(Nanoseconds interval);

  [[nodiscard]] std::uint64_t count() const { return count_; }
  [[nodiscard]] Nanoseconds maximum() const { return maximum_; }
  // The shortest time that the given part (0..1) of all intervals did not exceed.
  [[nodiscard]] Nanoseconds quantile(double part) const;

 private:
  std::array<std::uint64_t, kLongest / kStep> counts_{};
  std::uint64_t count_ = 0;
  Nanoseconds maximum_{};
};

}  // namespace lumivane
