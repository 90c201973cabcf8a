#include "imaging/LongestSide.h"

#include <algorithm>
#include <cmath>

#include "imaging/ImageDecoder.h"

namespace lumivane {
namespace {

constexpr int kShortestLongestSide = 1920;
constexpr double kBytesPerPixel = 4;
constexpr double kLevels = 4.0 / 3;  // with every level of half the size
constexpr double kCopies = 2;        // the texture is one more where the GPU is the CPU
constexpr double kPartOfMemory = 1.0 / 8;
constexpr double kAspect = 1.5;  // of most photographs

}  // namespace

int longestSideFor(std::int64_t freeMemoryMB) {
  if (freeMemoryMB >= kScarceMemoryMB) return kThumbnailMaxPixelSize;
  const double bytes = static_cast<double>(std::max<std::int64_t>(freeMemoryMB, 0)) * 1024 * 1024;
  const double pixels = bytes * kPartOfMemory / (kBytesPerPixel * kLevels * kCopies);
  return std::clamp(static_cast<int>(std::sqrt(pixels * kAspect)), kShortestLongestSide,
                    kThumbnailMaxPixelSize);
}

}  // namespace lumivane
