// The geometry of the moving pictures: which part of a picture fills the screen at the start of a pass and at its end.
//
// Threads: main only (the random source is); no state of its own.
// Units:   PictureRect in picture pixels after orientation, origin lower left, y up; screen and sizes in points.
// Errors:  a picture size that makes no sense is logged and gives a small stand-in rectangle.
#pragma once

#include <cstdint>

#include "platform/Geometry.h"
#include "platform/Log.h"
#include "platform/RandomSource.h"

namespace lumivane {

// A part of a picture, in its own pixels.
struct PictureRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
  bool operator==(const PictureRect&) const = default;
};

struct PanAndZoomRects {
  PictureRect from;
  PictureRect to;
  bool operator==(const PanAndZoomRects&) const = default;
};

// The two ends of the pan-and-zoom. Both have the screen's aspect and lie inside the picture: a landscape picture
// pans between its left and right edge, a tall one between its bottom and top. Draws exactly five random numbers.
[[nodiscard]] PanAndZoomRects calcKenBurnsForImageWidth(float imageWidth, float imageHeight, SizePt screen,
                                                        RandomSource& random, Log& log);

// The largest extent of the whole picture on the screen that any of these rectangles can bring about.
[[nodiscard]] SizePt largestPanAndZoom(float imageWidth, float imageHeight, SizePt screen);

// What the user said about black borders beside a picture.
struct BlackBorderSettings {
  bool allowBlackBorders = true;
  float blackBorderAvoidance = 0;
};

// Whether the picture may be shown whole, with borders, instead of being cropped to fill the screen.
[[nodiscard]] bool allowBlackBordersWidth(std::int32_t width, std::int32_t height, SizePt screen,
                                          const BlackBorderSettings& settings);

// A zoom of the whole picture about the screen's centre, as two sizes of its layer.
struct PlainZoom {
  SizePt fromSize;
  SizePt toSize;
  bool zoomIn = false;       // this picture's direction: keep it for the next one
  bool fillsScreen = false;  // the picture is to be cropped (contents gravity resize-aspect-fill)
  bool operator==(const PlainZoom&) const = default;
};

// The plain zoom of the next picture; `lastZoomIn` is the direction of the one before. Directions alternate, but a
// picture much smaller than the screen is always zoomed in, and never to more than about two thirds of the screen.
[[nodiscard]] PlainZoom nextPlainZoom(std::int32_t width, std::int32_t height, SizePt screen,
                                      const BlackBorderSettings& settings, float initZoomInFactor,
                                      bool lastZoomIn);

}  // namespace lumivane
