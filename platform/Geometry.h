// Points, sizes and rectangles of the layer tree, and sizes in pixels.
//
// Threads: values.
// Units:   ...Pt in points, origin lower left, y up; ...Px in pixels. Positions are never rounded.
#pragma once

#include <cstdint>

namespace lumivane {

struct PointPt {
  double x = 0;
  double y = 0;
  bool operator==(const PointPt&) const = default;
};

struct SizePt {
  double width = 0;
  double height = 0;
  bool operator==(const SizePt&) const = default;
};

struct RectPt {
  PointPt origin;
  SizePt size;
  bool operator==(const RectPt&) const = default;
};

struct SizePx {
  int width = 0;
  int height = 0;
  bool operator==(const SizePx&) const = default;
};

// Straight (not premultiplied) sRGB, each part from 0 to 1.
struct Color {
  float red = 0;
  float green = 0;
  float blue = 0;
  float alpha = 0;
  bool operator==(const Color&) const = default;
};

}  // namespace lumivane
