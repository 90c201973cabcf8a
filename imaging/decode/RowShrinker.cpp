#include "imaging/decode/RowShrinker.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <type_traits>
#include <utility>

namespace lumivane {

namespace {

constexpr int kChannels = 4;
constexpr int kWeightBits = 14;
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
std::vector<std::int16_t> asIntegers(const std::vector<double>& weights) {
  double sum = 0;
  for (const double weight : weights) sum += weight;
  std::vector<std::int16_t> integers(roundedUp(weights.size(), 2), 0);
  int rest = 1 << kWeightBits;
  for (std::size_t i = 0; i < weights.size(); ++i) {
    integers[i] = static_cast<std::int16_t>(std::lround(weights[i] / sum * (1 << kWeightBits)));
    rest -= integers[i];
  }
  const auto largest = std::max_element(integers.begin(), integers.end());
  *largest = static_cast<std::int16_t>(*largest + rest);
  return integers;
}

#if defined(__SSE2__)

inline __m128i weightPair(const std::int16_t* weights) {
  std::int32_t both = 0;
  std::memcpy(&both, weights, sizeof both);
  return _mm_set1_epi32(both);
}

inline __m128i rounded(__m128i sum) {
  return _mm_srai_epi32(_mm_add_epi32(sum, _mm_set1_epi32(1 << (kWeightBits - 1))), kWeightBits);
}

// One pixel of the result: two source pixels at a time, channel pairs side by side for the multiply-add.
inline void filterPixel(const std::uint8_t* in, const std::vector<std::int16_t>& weights, std::uint8_t* out) {
  const __m128i zero = _mm_setzero_si128();
  __m128i sum = zero;
  for (std::size_t i = 0; i < weights.size(); i += 2) {
    const __m128i two = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in + i * kChannels));
    const __m128i pairs = _mm_unpacklo_epi8(_mm_unpacklo_epi8(two, _mm_srli_si128(two, 4)), zero);
    sum = _mm_add_epi32(sum, _mm_madd_epi16(pairs, weightPair(&weights[i])));
  }
  const __m128i words = _mm_packs_epi32(rounded(sum), zero);
  const int pixel = _mm_cvtsi128_si32(_mm_packus_epi16(words, zero));
  std::memcpy(out, &pixel, sizeof pixel);
}

// Sixteen bytes of two rows, weighted and added to the four sums.
inline void addRowPair(const std::uint8_t* a, const std::uint8_t* b, __m128i weights, __m128i (&sums)[4]) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(a));
  const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(b));
  const __m128i low = _mm_unpacklo_epi8(first, second);
  const __m128i high = _mm_unpackhi_epi8(first, second);
  sums[0] = _mm_add_epi32(sums[0], _mm_madd_epi16(_mm_unpacklo_epi8(low, zero), weights));
  sums[1] = _mm_add_epi32(sums[1], _mm_madd_epi16(_mm_unpackhi_epi8(low, zero), weights));
  sums[2] = _mm_add_epi32(sums[2], _mm_madd_epi16(_mm_unpacklo_epi8(high, zero), weights));
  sums[3] = _mm_add_epi32(sums[3], _mm_madd_epi16(_mm_unpackhi_epi8(high, zero), weights));
}

void filterRows(const std::vector<const std::uint8_t*>& rows, const std::vector<std::int16_t>& weights,
                std::size_t bytes, std::uint8_t* out) {
  for (std::size_t x = 0; x < bytes; x += 16) {
    __m128i sums[4] = {};
    for (std::size_t i = 0; i < weights.size(); i += 2) {
      addRowPair(rows[i] + x, rows[i + 1] + x, weightPair(&weights[i]), sums);
    }
    const __m128i low = _mm_packs_epi32(rounded(sums[0]), rounded(sums[1]));
    const __m128i high = _mm_packs_epi32(rounded(sums[2]), rounded(sums[3]));
    alignas(16) std::uint8_t result[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(result), _mm_packus_epi16(low, high));
    std::memcpy(out + x, result, std::min<std::size_t>(16, bytes - x));
  }
}

#else

inline std::uint8_t roundedByte(int sum) {
  return static_cast<std::uint8_t>(std::clamp((sum + (1 << (kWeightBits - 1))) >> kWeightBits, 0, 255));
}

inline void filterPixel(const std::uint8_t* in, const std::vector<std::int16_t>& weights, std::uint8_t* out) {
  for (int c = 0; c < kChannels; ++c) {
    int sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) sum += weights[i] * in[i * kChannels + c];
    out[c] = roundedByte(sum);
  }
}

void filterRows(const std::vector<const std::uint8_t*>& rows, const std::vector<std::int16_t>& weights,
                std::size_t bytes, std::uint8_t* out) {
  for (std::size_t x = 0; x < bytes; ++x) {
    int sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) sum += weights[i] * rows[i][x];
    out[x] = roundedByte(sum);
  }
}

#endif

// The filter's negative lobes can leave a colour above its alpha, which no renderer expects.
void keepColourBelowAlpha(std::uint8_t* row, int pixels) {
  for (int x = 0; x < pixels; ++x, row += kChannels) {
    if (row[3] == 255) continue;
    for (int c = 0; c < 3; ++c) row[c] = std::min(row[c], row[3]);
  }
}

}  // namespace

std::vector<RowShrinker::Taps> RowShrinker::lanczosTaps(int from, int to, double ratio) {
  std::vector<Taps> all(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    const double center = (i + 0.5) * ratio - 0.5;
    const int first = std::max(0, static_cast<int>(std::ceil(center - kLobes * ratio)));
    const int last = std::min(from - 1, static_cast<int>(std::floor(center + kLobes * ratio)));
    std::vector<double> weights;
    for (int k = first; k <= last; ++k) weights.push_back(lanczos((k - center) / ratio));
    all[static_cast<std::size_t>(i)] = {first, asIntegers(weights)};
  }
  return all;
}

RowShrinker::RowShrinker(SizePx from, SizePx to, Destination destination)
    : from_(from),
      box_{from.width / to.width, from.height / to.height},
      boxed_{roundedUp(from.width, box_.width) / box_.width,
             roundedUp(from.height, box_.height) / box_.height},
      to_(to),
      destination_(std::move(destination)),
      columns_(lanczosTaps(boxed_.width, to.width, static_cast<double>(from.width) / box_.width / to.width)),
      rows_(
          lanczosTaps(boxed_.height, to.height, static_cast<double>(from.height) / box_.height / to.height)),
      rowBytes_(roundedUp(static_cast<std::size_t>(to.width) * kChannels, 16)) {
  sums_.resize(static_cast<std::size_t>(boxed_.width) * kChannels, 0);
  boxedRow_.resize(static_cast<std::size_t>(boxed_.width) * kChannels + 16, 0);
  std::size_t longest = 2;
  for (const Taps& taps : rows_) longest = std::max(longest, taps.weights.size());
  ringRows_ = static_cast<int>(longest);
  ring_.resize(rowBytes_ * longest, 0);
}

void RowShrinker::add(const std::uint8_t* row) {
  if (boxedRowsSeen_ == boxed_.height) return;
  if (box_ == SizePx{1, 1}) {
    std::memcpy(boxedRow_.data(), row, static_cast<std::size_t>(boxed_.width) * kChannels);
    addBoxed(boxedRow_.data());
    return;
  }
  for (int x = 0; x < from_.width; ++x, row += kChannels) {
    std::uint32_t* sum = &sums_[static_cast<std::size_t>(x / box_.width) * kChannels];
    for (int k = 0; k < kChannels; ++k) sum[k] += row[k];
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
  const auto slot = static_cast<std::size_t>(boxedRowsSeen_ % ringRows_);
  shrinkAcross(row, ring_.data() + slot * rowBytes_);
  ++boxedRowsSeen_;
  emitReadyRows();
}

void RowShrinker::shrinkAcross(const std::uint8_t* row, std::uint8_t* out) const {
  if (boxed_.width == to_.width) {
    std::memcpy(out, row, static_cast<std::size_t>(to_.width) * kChannels);
    return;
  }
  for (const Taps& taps : columns_) {
    filterPixel(row + static_cast<std::size_t>(taps.first) * kChannels, taps.weights, out);
    out += kChannels;
  }
}

void RowShrinker::emitReadyRows() {
  for (; nextRow_ < to_.height; ++nextRow_) {
    const Taps& taps = rows_[static_cast<std::size_t>(nextRow_)];
    // The last weight may be padding, for which no row needs to be there.
    const int needed = std::min(taps.first + static_cast<int>(taps.weights.size()), boxed_.height);
    if (needed > boxedRowsSeen_) return;
    emit(taps, destination_(nextRow_));
  }
}

void RowShrinker::emit(const Taps& taps, std::uint8_t* out) const {
  std::vector<const std::uint8_t*> rows;
  for (std::size_t i = 0; i < taps.weights.size(); ++i) {
    const auto slot = static_cast<std::size_t>(taps.first) + i;
    rows.push_back(ring_.data() + slot % static_cast<std::size_t>(ringRows_) * rowBytes_);
  }
  filterRows(rows, taps.weights, static_cast<std::size_t>(to_.width) * kChannels, out);
  keepColourBelowAlpha(out, to_.width);
}

}  // namespace lumivane
