#include "app/IntervalHistogram.h"

#include <algorithm>
#include <cmath>

namespace lumivane {

void IntervalHistogram::add(Nanoseconds interval) {
  const auto step = static_cast<std::size_t>(std::max(interval, Nanoseconds{}) / kStep);
  ++counts_[std::min(step, counts_.size() - 1)];
  ++count_;
  maximum_ = std::max(maximum_, interval);
}

Nanoseconds IntervalHistogram::quantile(double part) const {
  const auto wanted = static_cast<std::uint64_t>(std::ceil(part * static_cast<double>(count_)));
  std::uint64_t seen = 0;
  for (std::size_t step = 0; step < counts_.size() && count_ > 0; ++step) {
    seen += counts_[step];
    if (seen >= wanted) return std::min(kStep * static_cast<Nanoseconds::rep>(step + 1), maximum_);
  }
  return maximum_;
}

}  // namespace lumivane
