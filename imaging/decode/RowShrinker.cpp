#include "imaging/decode/RowShrinker.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <numbers>
#include <type_traits>
#include <utility>

namespace lumivane {

namespace {

constexpr int kChannels = 4;
constexpr double kLobes = 3;

double lanczos(double x) {
  if (x == 0) return 1;
  if (std::abs(x) >= kLobes) return 0;
  const double p = std::numbers::pi * x;
  return kLobes * std::sin(p) * std::sin(p / kLobes) / (p * p);
}

template <typename Number>
Number roundedUp(Number value, std::type_identity_t<Number> step) {
  return (value + step - 1) / step * step;
}

// Weights as integers whose sum is exact, so that an even area keeps its value.
void writeIntegers(const std::vector<double>& weights, std::int16_t* integers) {
  double sum = 0;
  for (const double weight : weights) sum += weight;
  int rest = 1 << kWeightBits;
  for (std::size_t i = 0; i < weights.size(); ++i) {
    integers[i] = static_cast<std::int16_t>(std::lround(weights[i] / sum * (1 << kWeightBits)));
    rest -= integers[i];
  }
  auto* const largest = std::max_element(integers, integers + weights.size());
  *largest = static_cast<std::int16_t>(*largest + rest);
}

// The filter's negative lobes can leave a colour above its alpha, which no renderer expects.
void keepColourBelowAlpha(std::uint8_t* row, int pixels) {
  std::uint8_t allAlphas = 255;
  for (int x = 0; x < pixels; ++x) allAlphas &= row[x * kChannels + 3];
  if (allAlphas == 255) return;
  for (int x = 0; x < pixels; ++x, row += kChannels) {
    if (row[3] == 255) continue;
    for (int c = 0; c < 3; ++c) row[c] = std::min(row[c], row[3]);
  }
}

// `ratio` is how many of the `from` pixels make one of the `to` pixels; the last of them may be cut off.
FilterTaps lanczosTaps(int from, int to, double ratio, std::size_t tapsStep) {
  FilterTaps all;
  all.taps = roundedUp(static_cast<std::size_t>(2 * kLobes * ratio) + 1, tapsStep);
  all.weights.resize(all.taps * static_cast<std::size_t>(to), 0);
  for (int i = 0; i < to; ++i) {
    const double center = (i + 0.5) * ratio - 0.5;
    const int first = std::max(0, static_cast<int>(std::ceil(center - kLobes * ratio)));
    const int last = std::min({from - 1, first + static_cast<int>(all.taps) - 1,
                               static_cast<int>(std::floor(center + kLobes * ratio))});
    std::vector<double> weights;
    for (int k = first; k <= last; ++k) weights.push_back(lanczos((k - center) / ratio));
    all.first.push_back(first);
    writeIntegers(weights, &all.weights[static_cast<std::size_t>(i) * all.taps]);
  }
  return all;
}

}  // namespace

RowShrinker::RowShrinker(SizePx from, SizePx to, Destination destination)
    : from_(from),
      box_{from.width / to.width, from.height / to.height},
      boxed_{roundedUp(from.width, box_.width) / box_.width,
             roundedUp(from.height, box_.height) / box_.height},
      to_(to),
      destination_(std::move(destination)),
      filters_(fastestRowFilters()),
      columns_(lanczosTaps(boxed_.width, to.width, static_cast<double>(from.width) / box_.width / to.width,
                           filters_.tapsStep)),
      rows_(lanczosTaps(boxed_.height, to.height, static_cast<double>(from.height) / box_.height / to.height,
                        std::min<std::size_t>(filters_.tapsStep, 2))),
      rowBytes_(roundedUp(static_cast<std::size_t>(to.width) * kChannels, 16)) {
  const auto taps = static_cast<int>(columns_.taps);
  const auto isInside = [&](std::int32_t first) { return first + taps <= boxed_.width; };
  const auto outside = std::partition_point(columns_.first.begin(), columns_.first.end(), isInside);
  columnsInside_ = static_cast<std::size_t>(outside - columns_.first.begin());
  if (outside != columns_.first.end()) {
    edgeFirst_ = *outside;
    edge_.resize(static_cast<std::size_t>(columns_.first.back() + taps - edgeFirst_) * kChannels, 0);
    edgeColumns_.taps = columns_.taps;
    const auto skipped = static_cast<std::ptrdiff_t>(columnsInside_ * columns_.taps);
    edgeColumns_.weights.assign(columns_.weights.begin() + skipped, columns_.weights.end());
    std::transform(outside, columns_.first.end(), std::back_inserter(edgeColumns_.first),
                   [this](std::int32_t first) { return first - edgeFirst_; });
  }
  sums_.resize(static_cast<std::size_t>(boxed_.width) * kChannels, 0);
  boxedRow_.resize(static_cast<std::size_t>(boxed_.width) * kChannels, 0);
  ring_.resize(rowBytes_ * rows_.taps, 0);
  rowPointers_.resize(rows_.taps);
}

void RowShrinker::add(const std::uint8_t* row) {
  if (boxedRowsSeen_ == boxed_.height) return;
  if (box_ == SizePx{1, 1}) {
    addBoxed(row);
    return;
  }
  std::uint32_t* sum = sums_.data();
  for (int x = 0; x < from_.width; sum += kChannels) {
    for (const int end = std::min(x + box_.width, from_.width); x < end; ++x, row += kChannels) {
      for (int k = 0; k < kChannels; ++k) sum[k] += row[k];
    }
  }
  ++rowsSeen_;
  ++rowsInBlock_;
  if (rowsInBlock_ == box_.height || rowsSeen_ == from_.height) finishBlock();
}

// The last block of a row or column may be cut off by the picture's edge; its mean is of what there is.
void RowShrinker::finishBlock() {
  for (int x = 0; x < boxed_.width; ++x) {
    const int across = std::min(box_.width, from_.width - x * box_.width);
    const auto area = static_cast<std::uint32_t>(across) * static_cast<std::uint32_t>(rowsInBlock_);
    for (int k = 0; k < kChannels; ++k) {
      const auto i = static_cast<std::size_t>(x * kChannels + k);
      boxedRow_[i] = static_cast<std::uint8_t>((sums_[i] + area / 2) / area);
    }
  }
  std::fill(sums_.begin(), sums_.end(), 0U);
  rowsInBlock_ = 0;
  addBoxed(boxedRow_.data());
}

void RowShrinker::addBoxed(const std::uint8_t* row) {
  const std::size_t slot = static_cast<std::size_t>(boxedRowsSeen_) % rows_.taps;
  shrinkAcross(row, ring_.data() + slot * rowBytes_);
  ++boxedRowsSeen_;
  emitReadyRows();
}

void RowShrinker::shrinkAcross(const std::uint8_t* row, std::uint8_t* out) {
  if (boxed_.width == to_.width) {
    std::memcpy(out, row, static_cast<std::size_t>(to_.width) * kChannels);
    return;
  }
  filters_.across(row, columns_, 0, columnsInside_, out);
  if (edge_.empty()) return;
  // The filters read all taps of a pixel, also those beyond the row's end, which count for nothing.
  const auto left = static_cast<std::size_t>(boxed_.width - edgeFirst_) * kChannels;
  std::memcpy(edge_.data(), row + static_cast<std::size_t>(edgeFirst_) * kChannels, left);
  filters_.across(edge_.data(), edgeColumns_, 0, edgeColumns_.first.size(), out + columnsInside_ * kChannels);
}

void RowShrinker::emitReadyRows() {
  for (; nextRow_ < to_.height; ++nextRow_) {
    const int first = rows_.first[static_cast<std::size_t>(nextRow_)];
    // The last weights may be padding, for which no rows need to be there.
    const int needed = std::min(first + static_cast<int>(rows_.taps), boxed_.height);
    if (needed > boxedRowsSeen_) return;
    for (std::size_t i = 0; i < rows_.taps; ++i) {
      rowPointers_[i] = ring_.data() + (static_cast<std::size_t>(first) + i) % rows_.taps * rowBytes_;
    }
    std::uint8_t* out = destination_(nextRow_);
    filters_.down(rowPointers_.data(), rows_.weightsOf(static_cast<std::size_t>(nextRow_)), rows_.taps,
                  static_cast<std::size_t>(to_.width) * kChannels, out);
    keepColourBelowAlpha(out, to_.width);
  }
}

}  // namespace lumivane
