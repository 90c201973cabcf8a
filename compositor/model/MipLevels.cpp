#include "compositor/model/MipLevels.h"

#include <algorithm>
#include <cmath>

namespace lumivane {
namespace {

// Where the level between two is that close to the lesser one, the more detailed one is not missed.
constexpr double kNegligibleShare = 0.02;

}  // namespace

std::size_t mostDetailedLevel(const Bitmap& bitmap, SizePt largestShown, double scale,
                              ContentsFilter minification) {
  if (minification == ContentsFilter::Linear) return 0;
  const std::size_t last = bitmap.levels().size() - 1;
  if (!(largestShown.width > 0 && largestShown.height > 0 && scale > 0)) return last;
  const SizePx picture = bitmap.displaySize();
  // As GL chooses the level: by the side along which more picture pixels fall on one of the screen.
  const double density =
      std::max(picture.width / (largestShown.width * scale), picture.height / (largestShown.height * scale));
  const double level = std::floor(std::log2(density) + kNegligibleShare);
  return static_cast<std::size_t>(std::clamp(level, 0.0, static_cast<double>(last)));
}

}  // namespace lumivane
