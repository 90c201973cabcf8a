// What one frame shows, as plain rectangles from back to front.
//
// Threads: a value.
// Owns:    shares the contents.
// Units:   points of the viewport, origin lower left, y up; never rounded here.
// Errors:  none.
#pragma once

#include <variant>
#include <vector>

#include "compositor/model/Bitmap.h"
#include "compositor/model/Layer.h"
#include "platform/Geometry.h"

namespace lumivane {

// The whole of a bitmap, as its orientation turns it, in a rectangle; it may reach beyond the viewport.
// Pixel for pixel: the rectangle tells the place to the next whole pixel of the screen, the bitmap itself its size.
struct PictureQuad {
  RectPt frame;
  BitmapRef contents;
  double opacity = 1;
  ContentsFilter minification = ContentsFilter::Linear;
  ContentsFilter magnification = ContentsFilter::Linear;
  bool pixelForPixel = false;
  bool operator==(const PictureQuad&) const = default;
};

struct ColorQuad {
  RectPt frame;
  Color color;
  double opacity = 1;
  bool operator==(const ColorQuad&) const = default;
};

// A filled rectangle blurred by a Gaussian.
struct ShadowQuad {
  RectPt rect;
  double radius = 0;  // the standard deviation of the blur
  Color color;
  double opacity = 1;
  bool operator==(const ShadowQuad&) const = default;
};

using Quad = std::variant<ColorQuad, ShadowQuad, PictureQuad>;

// A texture that has to be there now or soon.
struct WantedTexture {
  BitmapRef bitmap;
  std::size_t mostDetailedLevel = 0;  // this and all smaller levels
  bool shown = false;                 // false: taken up ahead of need
  bool operator==(const WantedTexture&) const = default;
};

struct DrawList {
  SizePt viewport;
  std::vector<Quad> quads;
  std::vector<WantedTexture> wanted;  // the shown ones first, each bitmap once
};

}  // namespace lumivane
