#include "imaging/decode/RowFilters.h"

#include <algorithm>
#include <cstring>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace lumivane {

namespace {

constexpr std::size_t kChannels = 4;

std::uint8_t roundedByte(int sum) {
  return static_cast<std::uint8_t>(std::clamp((sum + (1 << (kWeightBits - 1))) >> kWeightBits, 0, 255));
}

void acrossPlainly(const std::uint8_t* in, const FilterTaps& columns, std::size_t begin, std::size_t end,
                   std::uint8_t* out) {
  for (std::size_t x = begin; x < end; ++x) {
    const std::uint8_t* first = in + static_cast<std::size_t>(columns.first[x]) * kChannels;
    const std::int16_t* weights = columns.weightsOf(x);
    for (std::size_t c = 0; c < kChannels; ++c) {
      int sum = 0;
      for (std::size_t i = 0; i < columns.taps; ++i) sum += weights[i] * first[i * kChannels + c];
      out[x * kChannels + c] = roundedByte(sum);
    }
  }
}

void downPlainly(const std::uint8_t* const* rows, const std::int16_t* weights, std::size_t taps,
                 std::size_t bytes, std::uint8_t* out) {
  for (std::size_t x = 0; x < bytes; ++x) {
    int sum = 0;
    for (std::size_t i = 0; i < taps; ++i) sum += weights[i] * rows[i][x];
    out[x] = roundedByte(sum);
  }
}

#if defined(__SSE2__)

inline std::int32_t weightPair(const std::int16_t* weights) {
  std::int32_t both = 0;
  std::memcpy(&both, weights, sizeof both);
  return both;
}

inline __m128i rounded(__m128i sum) {
  return _mm_srai_epi32(_mm_add_epi32(sum, _mm_set1_epi32(1 << (kWeightBits - 1))), kWeightBits);
}

inline void storePixel(__m128i sum, std::uint8_t* out) {
  const __m128i words = _mm_packs_epi32(rounded(sum), _mm_setzero_si128());
  const int pixel = _mm_cvtsi128_si32(_mm_packus_epi16(words, _mm_setzero_si128()));
  std::memcpy(out, &pixel, sizeof pixel);
}

// Two source pixels at a time, channel pairs side by side for the multiply-add.
void acrossBySse2(const std::uint8_t* in, const FilterTaps& columns, std::size_t begin, std::size_t end,
                  std::uint8_t* out) {
  for (std::size_t x = begin; x < end; ++x) {
    const std::uint8_t* first = in + static_cast<std::size_t>(columns.first[x]) * kChannels;
    const std::int16_t* weights = columns.weightsOf(x);
    __m128i sum = _mm_setzero_si128();
    for (std::size_t i = 0; i < columns.taps; i += 2) {
      const __m128i two = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(first + i * kChannels));
      const __m128i pairs =
          _mm_unpacklo_epi8(_mm_unpacklo_epi8(two, _mm_srli_si128(two, 4)), _mm_setzero_si128());
      sum = _mm_add_epi32(sum, _mm_madd_epi16(pairs, _mm_set1_epi32(weightPair(weights + i))));
    }
    storePixel(sum, out + x * kChannels);
  }
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

void downBySse2From(std::size_t x, const std::uint8_t* const* rows, const std::int16_t* weights,
                    std::size_t taps, std::size_t bytes, std::uint8_t* out) {
  for (; x < bytes; x += 16) {
    __m128i sums[4] = {};
    for (std::size_t i = 0; i < taps; i += 2) {
      addRowPair(rows[i] + x, rows[i + 1] + x, _mm_set1_epi32(weightPair(weights + i)), sums);
    }
    const __m128i low = _mm_packs_epi32(rounded(sums[0]), rounded(sums[1]));
    const __m128i high = _mm_packs_epi32(rounded(sums[2]), rounded(sums[3]));
    alignas(16) std::uint8_t result[16];
    _mm_store_si128(reinterpret_cast<__m128i*>(result), _mm_packus_epi16(low, high));
    std::memcpy(out + x, result, std::min<std::size_t>(16, bytes - x));
  }
}

void downBySse2(const std::uint8_t* const* rows, const std::int16_t* weights, std::size_t taps,
                std::size_t bytes, std::uint8_t* out) {
  downBySse2From(0, rows, weights, taps, bytes, out);
}

// Compiled for a processor that has it, whatever the rest is compiled for.
#define LUMIVANE_AVX2 __attribute__((target("avx2")))

// Four source pixels at a time: the first two in one half, the others in the other.
LUMIVANE_AVX2 void acrossByAvx2(const std::uint8_t* in, const FilterTaps& columns, std::size_t begin,
                                std::size_t end, std::uint8_t* out) {
  const __m128i channelPairs = _mm_setr_epi8(0, 4, 1, 5, 2, 6, 3, 7, 8, 12, 9, 13, 10, 14, 11, 15);
  const __m256i halves = _mm256_setr_epi32(0, 0, 0, 0, 1, 1, 1, 1);
  for (std::size_t x = begin; x < end; ++x) {
    const std::uint8_t* first = in + static_cast<std::size_t>(columns.first[x]) * kChannels;
    const std::int16_t* weights = columns.weightsOf(x);
    __m256i sum = _mm256_setzero_si256();
    for (std::size_t i = 0; i < columns.taps; i += 4) {
      const __m128i four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(first + i * kChannels));
      const __m256i pairs = _mm256_cvtepu8_epi16(_mm_shuffle_epi8(four, channelPairs));
      const __m128i weight = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(weights + i));
      const __m256i spread = _mm256_permutevar8x32_epi32(_mm256_castsi128_si256(weight), halves);
      sum = _mm256_add_epi32(sum, _mm256_madd_epi16(pairs, spread));
    }
    storePixel(_mm_add_epi32(_mm256_castsi256_si128(sum), _mm256_extracti128_si256(sum, 1)),
               out + x * kChannels);
  }
}

LUMIVANE_AVX2 inline __m256i rounded(__m256i sum) {
  return _mm256_srai_epi32(_mm256_add_epi32(sum, _mm256_set1_epi32(1 << (kWeightBits - 1))), kWeightBits);
}

LUMIVANE_AVX2 void downByAvx2(const std::uint8_t* const* rows, const std::int16_t* weights, std::size_t taps,
                              std::size_t bytes, std::uint8_t* out) {
  const __m256i zero = _mm256_setzero_si256();
  std::size_t x = 0;
  for (; x + 32 <= bytes; x += 32) {
    __m256i sums[4] = {zero, zero, zero, zero};
    for (std::size_t i = 0; i < taps; i += 2) {
      const __m256i weight = _mm256_set1_epi32(weightPair(weights + i));
      const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(rows[i] + x));
      const __m256i second = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(rows[i + 1] + x));
      const __m256i low = _mm256_unpacklo_epi8(first, second);
      const __m256i high = _mm256_unpackhi_epi8(first, second);
      sums[0] = _mm256_add_epi32(sums[0], _mm256_madd_epi16(_mm256_unpacklo_epi8(low, zero), weight));
      sums[1] = _mm256_add_epi32(sums[1], _mm256_madd_epi16(_mm256_unpackhi_epi8(low, zero), weight));
      sums[2] = _mm256_add_epi32(sums[2], _mm256_madd_epi16(_mm256_unpacklo_epi8(high, zero), weight));
      sums[3] = _mm256_add_epi32(sums[3], _mm256_madd_epi16(_mm256_unpackhi_epi8(high, zero), weight));
    }
    const __m256i low = _mm256_packs_epi32(rounded(sums[0]), rounded(sums[1]));
    const __m256i high = _mm256_packs_epi32(rounded(sums[2]), rounded(sums[3]));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + x), _mm256_packus_epi16(low, high));
  }
  downBySse2From(x, rows, weights, taps, bytes, out);
}

#endif

}  // namespace

std::vector<RowFilters> allRowFilters() {
  std::vector<RowFilters> all = {{&acrossPlainly, &downPlainly, 1}};
#if defined(__SSE2__)
  all.push_back({&acrossBySse2, &downBySse2, 2});
  if (__builtin_cpu_supports("avx2")) all.push_back({&acrossByAvx2, &downByAvx2, 4});
#endif
  return all;
}

RowFilters fastestRowFilters() {
  return allRowFilters().back();
}

}  // namespace lumivane
