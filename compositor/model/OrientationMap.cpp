#include "compositor/model/OrientationMap.h"

#include <array>
#include <cassert>

namespace lumivane {

OrientationMap orientationMap(OrientationCode code) {
  // Exif says of each code where the first stored row and the first stored column are seen.
  static constexpr std::array<OrientationMap, 8> kMaps{{
      {{1, 0, 0}, {0, -1, 1}},   // 1: row at the top, column at the left
      {{-1, 0, 1}, {0, -1, 1}},  // 2: top, right
      {{-1, 0, 1}, {0, 1, 0}},   // 3: bottom, right
      {{1, 0, 0}, {0, 1, 0}},    // 4: bottom, left
      {{0, -1, 1}, {1, 0, 0}},   // 5: left, top
      {{0, -1, 1}, {-1, 0, 1}},  // 6: right, top
      {{0, 1, 0}, {-1, 0, 1}},   // 7: right, bottom
      {{0, 1, 0}, {1, 0, 0}},    // 8: left, bottom
  }};
  assert(code >= 1 && code <= 8);
  return kMaps[static_cast<std::size_t>(code - 1)];
}

}  // namespace lumivane
