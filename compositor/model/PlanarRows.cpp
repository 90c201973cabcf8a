// The loops here run over every sample of a photograph: they are written so that compilers make vector instructions of
// them, 16 bits a number, but for the one that compilers do badly.
#include "compositor/model/PlanarRows.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <bit>
#include <cassert>
#include <cstring>

namespace lumivane {
namespace {

// The upper half of a product of 32 bits.
inline std::int16_t upperHalf(std::int16_t a, std::int16_t b) {
  return static_cast<std::int16_t>((std::int32_t{a} * b) >> 16);
}

inline std::uint8_t clamped(int value) {
  return static_cast<std::uint8_t>(std::clamp(value, 0, 255));
}

// 1.402 = 1 + 0.402, 1.772 = 2 - 0.228 and 0.714136 = 1 - 0.285864, so that the factors fit into 16 bits; the products
// keep a bit or two more than the result, which makes it exact but for 1.
constexpr std::int16_t kRedOfRed = 26345;     // 0.402 x 65536
constexpr std::int16_t kBlueOfBlue = -14942;  // -0.228
constexpr std::int16_t kGreenOfRed = 18734;   // 0.285864
constexpr std::int16_t kGreenOfBlue = 22554;  // 0.344136

void toRgbaPlainly(const std::uint8_t* luma, const std::uint8_t* blue, const std::uint8_t* red,
                   std::uint8_t* rgba, std::size_t width) {
  const auto narrow = [](int value) { return static_cast<std::int16_t>(value); };
  for (std::size_t x = 0; x < width; ++x) {
    const int y = luma[x];
    const int cb = blue[x] - 128;
    const int cr = red[x] - 128;
    const int ofRed = (upperHalf(narrow(2 * cr), kRedOfRed) + 1) >> 1;
    const int ofBlue = (upperHalf(narrow(2 * cb), kBlueOfBlue) + 1) >> 1;
    const int ofGreen =
        (upperHalf(narrow(4 * cr), kGreenOfRed) - upperHalf(narrow(4 * cb), kGreenOfBlue) + 2) >> 2;
    rgba[4 * x] = clamped(y + cr + ofRed);
    rgba[4 * x + 1] = clamped(y - cr + ofGreen);
    rgba[4 * x + 2] = clamped(y + 2 * cb + ofBlue);
    rgba[4 * x + 3] = 255;
  }
}

#if defined(__SSE2__)

inline __m128i eightSamples(const std::uint8_t* samples) {
  return _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(samples)), _mm_setzero_si128());
}

void toRgba(const std::uint8_t* luma, const std::uint8_t* blue, const std::uint8_t* red, std::uint8_t* rgba,
            std::size_t width) {
  const __m128i middle = _mm_set1_epi16(128);
  const __m128i one = _mm_set1_epi16(1);
  const __m128i two = _mm_set1_epi16(2);
  const __m128i opaque = _mm_set1_epi8(-1);
  std::size_t x = 0;
  for (; x + 8 <= width; x += 8) {
    const __m128i y = eightSamples(luma + x);
    const __m128i cb = _mm_sub_epi16(eightSamples(blue + x), middle);
    const __m128i cr = _mm_sub_epi16(eightSamples(red + x), middle);
    const __m128i cb2 = _mm_slli_epi16(cb, 1);
    const __m128i cr2 = _mm_slli_epi16(cr, 1);
    const __m128i ofRed =
        _mm_srai_epi16(_mm_add_epi16(_mm_mulhi_epi16(cr2, _mm_set1_epi16(kRedOfRed)), one), 1);
    const __m128i ofBlue =
        _mm_srai_epi16(_mm_add_epi16(_mm_mulhi_epi16(cb2, _mm_set1_epi16(kBlueOfBlue)), one), 1);
    const __m128i ofGreen = _mm_srai_epi16(
        _mm_add_epi16(_mm_sub_epi16(_mm_mulhi_epi16(_mm_slli_epi16(cr, 2), _mm_set1_epi16(kGreenOfRed)),
                                    _mm_mulhi_epi16(_mm_slli_epi16(cb, 2), _mm_set1_epi16(kGreenOfBlue))),
                      two),
        2);
    const __m128i r = _mm_add_epi16(_mm_add_epi16(y, cr), ofRed);
    const __m128i g = _mm_add_epi16(_mm_sub_epi16(y, cr), ofGreen);
    const __m128i b = _mm_add_epi16(_mm_add_epi16(y, cb2), ofBlue);
    const __m128i rg = _mm_unpacklo_epi8(_mm_packus_epi16(r, r), _mm_packus_epi16(g, g));
    const __m128i ba = _mm_unpacklo_epi8(_mm_packus_epi16(b, b), opaque);
    auto* const out = reinterpret_cast<__m128i*>(rgba + 4 * x);
    _mm_storeu_si128(out, _mm_unpacklo_epi16(rg, ba));
    _mm_storeu_si128(out + 1, _mm_unpackhi_epi16(rg, ba));
  }
  toRgbaPlainly(luma + x, blue + x, red + x, rgba + 4 * x, width - x);
}

#else

constexpr auto toRgba = toRgbaPlainly;

#endif

void greyToRgba(const std::uint8_t* __restrict luma, std::uint8_t* __restrict rgba, std::size_t width) {
  for (std::size_t x = 0; x < width; ++x) {
    rgba[4 * x] = luma[x];
    rgba[4 * x + 1] = luma[x];
    rgba[4 * x + 2] = luma[x];
    rgba[4 * x + 3] = 255;
  }
}

void setSums(std::uint16_t* __restrict sums, const std::uint8_t* __restrict samples, std::size_t count) {
  for (std::size_t x = 0; x < count; ++x) sums[x] = samples[x];
}

void addToSums(std::uint16_t* __restrict sums, const std::uint8_t* __restrict samples, std::size_t count) {
  for (std::size_t x = 0; x < count; ++x) sums[x] = static_cast<std::uint16_t>(sums[x] + samples[x]);
}

// The two bytes of a word added up, whichever of them comes first.
inline std::uint16_t pairSum(const std::uint8_t* samples) {
  std::uint16_t word = 0;
  std::memcpy(&word, samples, sizeof word);
  return static_cast<std::uint16_t>((word & 0xFF) + (word >> 8));
}

void setPairSums(std::uint16_t* __restrict sums, const std::uint8_t* __restrict samples, std::size_t pairs) {
  for (std::size_t x = 0; x < pairs; ++x) sums[x] = pairSum(samples + 2 * x);
}

void addPairSums(std::uint16_t* __restrict sums, const std::uint8_t* __restrict samples, std::size_t pairs) {
  for (std::size_t x = 0; x < pairs; ++x)
    sums[x] = static_cast<std::uint16_t>(sums[x] + pairSum(samples + 2 * x));
}

void addNeighbours(const std::uint16_t* __restrict sums, std::uint16_t* __restrict out, std::size_t pairs) {
  for (std::size_t x = 0; x < pairs; ++x) {
    std::uint32_t word = 0;
    std::memcpy(&word, sums + 2 * x, sizeof word);
    out[x] = static_cast<std::uint16_t>((word & 0xFFFF) + (word >> 16));
  }
}

void toMeans(const std::uint16_t* __restrict sums, std::uint8_t* __restrict out, std::size_t count,
             int steps) {
  const auto half = static_cast<std::uint16_t>((1 << steps) >> 1);
  for (std::size_t x = 0; x < count; ++x) out[x] = static_cast<std::uint8_t>((sums[x] + half) >> steps);
}

// Three parts of the nearer row and one of the farther one.
void mixRows(const std::uint8_t* __restrict nearer, const std::uint8_t* __restrict farther,
             std::uint16_t* __restrict out, std::size_t count) {
  for (std::size_t x = 0; x < count; ++x) out[x] = static_cast<std::uint16_t>(3 * nearer[x] + farther[x]);
}

// Two samples, `first` before `second` in memory.
inline std::uint16_t neighbours(int first, int second) {
  return static_cast<std::uint16_t>(std::endian::native == std::endian::little ? first | second << 8
                                                                               : first << 8 | second);
}

// Two samples for each number, which is `1 << shift >> 2` times one; `left` and `right` round them in turn.
void widen(const std::uint16_t* __restrict in, std::uint8_t* __restrict out, std::size_t count, int shift,
           int left, int right) {
  const std::size_t last = count - 1;
  out[0] = static_cast<std::uint8_t>((4 * in[0] + left) >> shift);
  for (std::size_t x = 0; x < last; ++x) {
    const std::uint16_t both =
        neighbours((3 * in[x] + in[x + 1] + right) >> shift, (3 * in[x + 1] + in[x] + left) >> shift);
    std::memcpy(out + 2 * x + 1, &both, sizeof both);
  }
  out[2 * last + 1] = static_cast<std::uint8_t>((4 * in[last] + right) >> shift);
}

}  // namespace

PlanarRows::PlanarRows(const PlanarLayout& layout, std::span<const std::byte> pixels)
    : layout_(layout), pixels_(pixels) {
  assert(layout.bytes <= pixels.size());
  const std::size_t most = layout.luma.strideBytes;
  sums_.resize(most);
  halved_.resize(most);
  luma_.resize(most);
  if (layout.chroma == Chroma::None) return;
  blue_.resize(most);
  red_.resize(most);
}

const std::uint8_t* PlanarRows::samples(const Plane& plane, int row) const {
  return reinterpret_cast<const std::uint8_t*>(pixels_.data()) + plane.offsetBytes +
         static_cast<std::size_t>(row) * plane.strideBytes;
}

void PlanarRows::make(std::size_t level, int row, std::byte* rgba) {
  const int steps = static_cast<int>(level);
  const int width = layout_.levels[level].size.width;
  const std::uint8_t* const luma =
      steps == 0 ? samples(layout_.luma, row) : meanRow(layout_.luma, steps, steps, row, width, luma_);
  auto* const out = reinterpret_cast<std::uint8_t*>(rgba);
  if (layout_.chroma == Chroma::None) return greyToRgba(luma, out, static_cast<std::size_t>(width));
  toRgba(luma, colourRow(layout_.blue, level, row, blue_), colourRow(layout_.red, level, row, red_), out,
         static_cast<std::size_t>(width));
}

const std::uint8_t* PlanarRows::colourRow(const Plane& plane, std::size_t level, int row,
                                          std::vector<std::uint8_t>& out) {
  if (level == 0) return widenedRow(plane, row, out);
  const int steps = static_cast<int>(level);
  const int columnSteps = steps - (chromaColumns(layout_.chroma) - 1);
  const int rowSteps = steps - (chromaRows(layout_.chroma) - 1);
  if (columnSteps == 0 && rowSteps == 0) return samples(plane, row);
  return meanRow(plane, columnSteps, rowSteps, row, layout_.levels[level].size.width, out);
}

const std::uint8_t* PlanarRows::meanRow(const Plane& plane, int columnSteps, int rowSteps, int row, int width,
                                        std::vector<std::uint8_t>& out) {
  const auto pixels = static_cast<std::size_t>(width);
  const int rows = 1 << rowSteps;
  const bool inPairs = columnSteps > 0;
  const std::size_t sums = inPairs ? (pixels << columnSteps) / 2 : pixels;
  for (int i = 0; i < rows; ++i) {
    const std::uint8_t* const from = samples(plane, row * rows + i);
    const auto take = i == 0 ? (inPairs ? setPairSums : setSums) : (inPairs ? addPairSums : addToSums);
    take(sums_.data(), from, sums);
  }
  for (std::size_t left = sums / 2; left >= pixels; left /= 2) {
    addNeighbours(sums_.data(), halved_.data(), left);
    sums_.swap(halved_);
  }
  toMeans(sums_.data(), out.data(), pixels, columnSteps + rowSteps);
  return out.data();
}

const std::uint8_t* PlanarRows::widenedRow(const Plane& plane, int row, std::vector<std::uint8_t>& out) {
  const auto columns = static_cast<std::size_t>(plane.size.width);
  const bool wide = chromaColumns(layout_.chroma) == 2;
  if (chromaRows(layout_.chroma) == 1) {
    if (!wide) return samples(plane, row);
    setSums(sums_.data(), samples(plane, row), columns);
    widen(sums_.data(), out.data(), columns, 2, 1, 2);
    return out.data();
  }
  const int nearer = row / 2;
  const int farther = std::clamp(row % 2 == 0 ? nearer - 1 : nearer + 1, 0, plane.size.height - 1);
  mixRows(samples(plane, nearer), samples(plane, farther), sums_.data(), columns);
  if (wide) {
    widen(sums_.data(), out.data(), columns, 4, 8, 7);
  } else {
    const int rounding = row % 2 == 0 ? 1 : 2;
    for (std::size_t x = 0; x < columns; ++x) out[x] = static_cast<std::uint8_t>((sums_[x] + rounding) >> 2);
  }
  return out.data();
}

}  // namespace lumivane
