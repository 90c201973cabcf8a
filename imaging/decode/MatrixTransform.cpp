#include "imaging/decode/MatrixTransform.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <optional>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace lumivane {

namespace {

// So many steps of light that the darkest values of sRGB are five steps apart.
constexpr int kLightSteps = 16384;
// No curve of a picture leads further; sums of such numbers stay numbers.
constexpr double kMostLight = 4;

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;  // columns

constexpr std::array<cmsTagSignature, 3> kColorants = {cmsSigRedColorantTag, cmsSigGreenColorantTag,
                                                       cmsSigBlueColorantTag};
constexpr std::array<cmsTagSignature, 3> kCurves = {cmsSigRedTRCTag, cmsSigGreenTRCTag, cmsSigBlueTRCTag};
// With one of them a profile means something else than its curves and matrix.
constexpr std::array<cmsTagSignature, 4> kTables = {cmsSigAToB0Tag, cmsSigAToB1Tag, cmsSigDToB0Tag,
                                                    cmsSigDToB1Tag};

bool hasOnlyCurvesAndMatrix(cmsHPROFILE profile) {
  return cmsIsMatrixShaper(profile) && cmsGetColorSpace(profile) == cmsSigRgbData &&
         cmsGetPCS(profile) == cmsSigXYZData &&
         std::none_of(kTables.begin(), kTables.end(),
                      [profile](cmsTagSignature tag) { return cmsIsTag(profile, tag) != FALSE; });
}

std::optional<Matrix> colorantsOf(cmsHPROFILE profile) {
  Matrix matrix;
  for (std::size_t i = 0; i < 3; ++i) {
    const auto* colorant = static_cast<const cmsCIEXYZ*>(cmsReadTag(profile, kColorants[i]));
    if (colorant == nullptr) return std::nullopt;
    matrix[i] = {colorant->X, colorant->Y, colorant->Z};
  }
  return matrix;
}

Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vector& a, const Vector& b) {
  return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

// What has to be taken of each column of `matrix` to make `colour` (Cramer's rule).
std::optional<Vector> solved(const Matrix& matrix, const Vector& colour) {
  const double determinant = dot(matrix[0], cross(matrix[1], matrix[2]));
  if (!(std::abs(determinant) > 1e-6)) return std::nullopt;
  return Vector{dot(colour, cross(matrix[1], matrix[2])) / determinant,
                dot(matrix[0], cross(colour, matrix[2])) / determinant,
                dot(matrix[0], cross(matrix[1], colour)) / determinant};
}

std::uint8_t encodedSrgb(double light) {
  const double value = light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
  return static_cast<std::uint8_t>(std::lround(value * 255));
}

}  // namespace

std::unique_ptr<MatrixTransform> MatrixTransform::make(void* profile, void* srgb) {
  if (!hasOnlyCurvesAndMatrix(profile)) return nullptr;
  const auto from = colorantsOf(profile);
  const auto to = colorantsOf(srgb);
  if (!from || !to) return nullptr;
  std::unique_ptr<MatrixTransform> transform(new MatrixTransform);
  for (std::size_t i = 0; i < 3; ++i) {
    const auto* curve = static_cast<const cmsToneCurve*>(cmsReadTag(profile, kCurves[i]));
    const auto share = solved(*to, (*from)[i]);
    if (curve == nullptr || !share) return nullptr;
    for (std::size_t value = 0; value < 256; ++value) {
      const double light = cmsEvalToneCurveFloat(curve, static_cast<float>(value) / 255);
      if (!(std::abs(light) <= kMostLight)) return nullptr;
      for (std::size_t k = 0; k < 3; ++k) {
        transform->channels_[i][value].of[k] = static_cast<float>((*share)[k] * light * kLightSteps);
      }
    }
  }
  transform->encoded_.resize(kLightSteps + 1);
  for (int step = 0; step <= kLightSteps; ++step) {
    transform->encoded_[static_cast<std::size_t>(step)] =
        encodedSrgb(static_cast<double>(step) / kLightSteps);
  }
  return transform;
}

#if defined(__SSE2__)

void MatrixTransform::apply(const std::uint8_t* in, std::size_t step, std::uint8_t* out,
                            std::size_t pixels) const {
  const __m128 most = _mm_set1_ps(kLightSteps);
  const std::uint8_t* encoded = encoded_.data();
  for (std::size_t x = 0; x < pixels; ++x, in += step, out += 4) {
    const __m128 red = _mm_load_ps(channels_[0][in[0]].of.data());
    const __m128 green = _mm_load_ps(channels_[1][in[1]].of.data());
    const __m128 blue = _mm_load_ps(channels_[2][in[2]].of.data());
    const __m128 sum = _mm_add_ps(_mm_add_ps(red, green), blue);
    const __m128i light = _mm_cvtps_epi32(_mm_min_ps(_mm_max_ps(sum, _mm_setzero_ps()), most));
    out[0] = encoded[_mm_extract_epi16(light, 0)];
    out[1] = encoded[_mm_extract_epi16(light, 2)];
    out[2] = encoded[_mm_extract_epi16(light, 4)];
  }
}

#else

void MatrixTransform::apply(const std::uint8_t* in, std::size_t step, std::uint8_t* out,
                            std::size_t pixels) const {
  for (std::size_t x = 0; x < pixels; ++x, in += step, out += 4) {
    const Share& red = channels_[0][in[0]];
    const Share& green = channels_[1][in[1]];
    const Share& blue = channels_[2][in[2]];
    for (std::size_t k = 0; k < 3; ++k) {
      const float sum = std::clamp(red.of[k] + green.of[k] + blue.of[k], 0.0F, float{kLightSteps});
      out[k] = encoded_[static_cast<std::size_t>(std::lround(sum))];
    }
  }
}

#endif

}  // namespace lumivane
