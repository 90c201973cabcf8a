#include "compositor/model/OrientationMap.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

struct Corner {
  float x, y;
  bool operator==(const Corner&) const = default;
};

// Which stored corner is seen at a corner of the picture. Stored: (0, 0) is the first pixel in memory, (1, 0) the
// end of its row. Seen: y up, so (0, 1) is the upper left corner.
Corner stored(int code, float x, float y) {
  const OrientationMap map = orientationMap(code);
  return {map.along[0] * x + map.along[1] * y + map.along[2],
          map.across[0] * x + map.across[1] * y + map.across[2]};
}

constexpr Corner kFirst{0, 0};      // first row, first column
constexpr Corner kRowEnd{1, 0};     // first row, last column
constexpr Corner kColumnEnd{0, 1};  // last row, first column
constexpr Corner kLast{1, 1};

struct Seen {
  int code;
  Corner upperLeft, upperRight, lowerLeft, lowerRight;
};

TEST(OrientationMap, findsTheStoredCornersAsExifDescribesThem) {
  for (const Seen& seen : {Seen{1, kFirst, kRowEnd, kColumnEnd, kLast},
                           Seen{2, kRowEnd, kFirst, kLast, kColumnEnd},     // mirrored left to right
                           Seen{3, kLast, kColumnEnd, kRowEnd, kFirst},     // half a turn
                           Seen{4, kColumnEnd, kLast, kFirst, kRowEnd},     // mirrored top to bottom
                           Seen{5, kFirst, kColumnEnd, kRowEnd, kLast},     // rows become columns
                           Seen{6, kColumnEnd, kFirst, kLast, kRowEnd},     // a quarter turn clockwise
                           Seen{7, kLast, kRowEnd, kColumnEnd, kFirst},     // mirrored on the other diagonal
                           Seen{8, kRowEnd, kLast, kFirst, kColumnEnd}}) {  // a quarter turn the other way
    EXPECT_EQ(stored(seen.code, 0, 1), seen.upperLeft) << seen.code;
    EXPECT_EQ(stored(seen.code, 1, 1), seen.upperRight) << seen.code;
    EXPECT_EQ(stored(seen.code, 0, 0), seen.lowerLeft) << seen.code;
    EXPECT_EQ(stored(seen.code, 1, 0), seen.lowerRight) << seen.code;
  }
}

}  // namespace
}  // namespace lumivane
