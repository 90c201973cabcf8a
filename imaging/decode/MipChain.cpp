#include "imaging/decode/MipChain.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <cstdint>

namespace lumivane {

namespace {

constexpr std::size_t kPixelBytes = 4;

// A level of which one side is 1 already: pairs of neighbours along the other side.
void halveLine(const std::byte* in, std::size_t inStep, std::byte* out, std::size_t outStep,
               std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < kPixelBytes; ++c) {
      const auto first = std::to_integer<unsigned>(in[2 * i * inStep + c]);
      const auto second = std::to_integer<unsigned>(in[(2 * i + 1) * inStep + c]);
      out[i * outStep + c] = static_cast<std::byte>((first + second + 1) / 2);
    }
  }
}

void halveLevel(std::byte* pixels, const BitmapLevel& from, const BitmapLevel& to) {
  const std::byte* in = pixels + from.offsetBytes;
  std::byte* out = pixels + to.offsetBytes;
  const auto width = static_cast<std::size_t>(to.size.width);
  const auto height = static_cast<std::size_t>(to.size.height);
  if (from.size.width == 1) return halveLine(in, from.strideBytes, out, to.strideBytes, height);
  if (from.size.height == 1) return halveLine(in, kPixelBytes, out, kPixelBytes, width);
  for (std::size_t y = 0; y < height; ++y) {
    const std::byte* upper = in + 2 * y * from.strideBytes;
    halveRowPair(upper, upper + from.strideBytes, out + y * to.strideBytes, width);
  }
}

}  // namespace

void halveRowPairPlainly(const std::byte* upper, const std::byte* lower, std::byte* out,
                         std::size_t outPixels) {
  for (std::size_t x = 0; x < outPixels; ++x) {
    for (std::size_t c = 0; c < kPixelBytes; ++c) {
      const std::size_t left = 2 * x * kPixelBytes + c;
      const unsigned sum = std::to_integer<unsigned>(upper[left]) + std::to_integer<unsigned>(lower[left]) +
                           std::to_integer<unsigned>(upper[left + kPixelBytes]) +
                           std::to_integer<unsigned>(lower[left + kPixelBytes]);
      out[x * kPixelBytes + c] = static_cast<std::byte>((sum + 2) / 4);
    }
  }
}

#if defined(__SSE2__)

namespace {

// Four pixels of two rows to two pixels of 16 bits a channel.
inline __m128i halveFour(const std::byte* upper, const std::byte* lower) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(upper));
  const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(lower));
  const __m128i left = _mm_add_epi16(_mm_unpacklo_epi8(a, zero), _mm_unpacklo_epi8(b, zero));   // pixels 0, 1
  const __m128i right = _mm_add_epi16(_mm_unpackhi_epi8(a, zero), _mm_unpackhi_epi8(b, zero));  // pixels 2, 3
  const __m128i sum = _mm_add_epi16(_mm_unpacklo_epi64(left, right), _mm_unpackhi_epi64(left, right));
  return _mm_srli_epi16(_mm_add_epi16(sum, _mm_set1_epi16(2)), 2);
}

}  // namespace

void halveRowPair(const std::byte* upper, const std::byte* lower, std::byte* out, std::size_t outPixels) {
  std::size_t x = 0;
  for (; x + 4 <= outPixels; x += 4) {
    const std::size_t in = 2 * x * kPixelBytes;
    const __m128i first = halveFour(upper + in, lower + in);
    const __m128i second = halveFour(upper + in + 16, lower + in + 16);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out + x * kPixelBytes), _mm_packus_epi16(first, second));
  }
  const std::size_t rest = 2 * x * kPixelBytes;
  halveRowPairPlainly(upper + rest, lower + rest, out + x * kPixelBytes, outPixels - x);
}

#else

void halveRowPair(const std::byte* upper, const std::byte* lower, std::byte* out, std::size_t outPixels) {
  halveRowPairPlainly(upper, lower, out, outPixels);
}

#endif

void buildMipChain(std::span<std::byte> pixels, std::span<const BitmapLevel> levels) {
  for (std::size_t i = 1; i < levels.size(); ++i) halveLevel(pixels.data(), levels[i - 1], levels[i]);
}

}  // namespace lumivane
