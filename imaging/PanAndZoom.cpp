#include "imaging/PanAndZoom.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace lumivane {
namespace {

// The precisions below are part of the motion: the same random numbers give the same rectangles, to the last bit.

constexpr double kTallAspectFactor = 0.5;
constexpr double kPanoramaAspectFactor = 1.5;
constexpr double kBaseFraction = 0.7F;
constexpr double kPanoramaFraction = 0.5;
constexpr double kTallFraction = 0.75;
constexpr double kFractionSpan = 0.25;

// A picture with both sides below this part of the screen's is small; it is shown from that size on.
constexpr double kSmallFraction = 0.43F;
constexpr double kSmallGrowth = 1.5;

constexpr PanAndZoomRects kStandIn{{0, 0, 300, 200}, {0, 0, 300, 200}};

// Uniform in [0, 1].
double uniform(RandomSource& random) {
  return static_cast<double>(random.random()) / 2147483647.0;
}

// A whole offset into a gap, uniform from 0 to the gap.
double pickOffset(double gap, RandomSource& random) {
  constexpr float kTwoToMinus31 = 4.656613e-10F;
  static_assert(kTwoToMinus31 * 2147483648.0F == 1);
  const double span = std::trunc(gap) + (gap >= 0 ? 1 : -1);
  const float product = static_cast<float>(random.random()) * kTwoToMinus31 * static_cast<float>(span);
  const double offset = std::trunc(static_cast<double>(product));
  return offset == span ? 0 : offset;
}

// "%f" as the log has it.
std::string fixed(double value) {
  std::array<char, 400> text{};
  const int length = std::snprintf(text.data(), text.size(), "%f", value);
  return {text.data(), static_cast<std::size_t>(length)};
}

void logBeyondEdge(Log& log, const std::string& edge, const std::string& extent, double offset, double length,
                   double limit) {
  log.error(edge + " + " + extent + " ! ( " + fixed(offset) + " + " + fixed(length) + " > " + fixed(limit) +
            " )");
}

// What all rectangles of one picture share.
struct Geometry {
  float width;
  float height;
  double screenAspect;
};

// A part of a wide or normal picture, at its left edge.
PictureRect leftPart(const Geometry& g, double fraction, RandomSource& random) {
  const double height = g.height;
  PictureRect rect;
  rect.width = static_cast<float>(uniform(random) * kFractionSpan + fraction) * g.width;
  rect.height = rect.width / g.screenAspect;
  if (rect.height > height) {
    rect.height = height;
    rect.width = g.screenAspect * height;
  }
  rect.y = pickOffset(height - rect.height, random);
  if (rect.y < 0) rect.y = 0;
  return rect;
}

// The least part of the width of a wide or normal picture.
double sidewaysFraction(const Geometry& g, double aspect) {
  return aspect > kPanoramaAspectFactor * g.screenAspect ? kPanoramaFraction : kBaseFraction;
}

PanAndZoomRects panSideways(const Geometry& g, double aspect, RandomSource& random, Log& log) {
  const double fraction = sidewaysFraction(g, aspect);
  const PictureRect left = leftPart(g, fraction, random);
  PictureRect right = leftPart(g, fraction, random);
  right.x = static_cast<double>(g.width) - right.width;
  if (right.x + right.width > g.width) {
    logBeyondEdge(log, "rect_right.origin.x", "rect_right.size.width > imgwidth", right.x, right.width,
                  g.width);
  }
  if (right.y + right.height > g.height) {
    logBeyondEdge(log, "rect_right.origin.y", "rect_right.size.height > imgheight", right.y, right.height,
                  g.height);
  }
  if (uniform(random) > 0.5) return {left, right};
  return {right, left};
}

// A part of a tall picture, at its bottom.
PictureRect bottomPart(const Geometry& g, RandomSource& random) {
  PictureRect rect;
  rect.width = (uniform(random) * kFractionSpan + kTallFraction) * static_cast<double>(g.width);
  rect.x = pickOffset(static_cast<double>(g.width) - rect.width, random);
  rect.height = rect.width / g.screenAspect;
  return rect;
}

PanAndZoomRects panUpright(const Geometry& g, RandomSource& random, Log& log) {
  const PictureRect bottom = bottomPart(g, random);
  PictureRect top = bottomPart(g, random);
  top.y = static_cast<double>(g.height) - top.height;
  // A pixel more than the picture is let pass here, unlike in panSideways.
  if (top.x + top.width >= g.width + 1.0F) {
    logBeyondEdge(log, "rect_top.origin.x", "rect_top.size.width > imgwidth", top.x, top.width, g.width);
  }
  if (top.y + top.height >= g.height + 1.0F) {
    logBeyondEdge(log, "rect_top.origin.y", "rect_top.size.height > imgheight", top.y, top.height, g.height);
  }
  if (uniform(random) > 0.5) return {bottom, top};
  return {top, bottom};
}

SizePt scaled(SizePt size, double factor) {
  return {size.width * factor, size.height * factor};
}

}  // namespace

PanAndZoomRects calcKenBurnsForImageWidth(float imageWidth, float imageHeight, SizePt screen,
                                          RandomSource& random, Log& log) {
  const Geometry geometry{imageWidth, imageHeight, screen.width / screen.height};
  const double aspect = imageWidth / imageHeight;  // divided in single precision
  if (aspect >= kTallAspectFactor * geometry.screenAspect) return panSideways(geometry, aspect, random, log);
  if (aspect < kTallAspectFactor * geometry.screenAspect) return panUpright(geometry, random, log);
  log.error("aspect_img vs aspect_screen ?! (can't happen)!");  // not a number
  return kStandIn;
}

SizePt largestPanAndZoom(float imageWidth, float imageHeight, SizePt screen) {
  const Geometry geometry{imageWidth, imageHeight, screen.width / screen.height};
  const double aspect = imageWidth / imageHeight;
  if (!std::isfinite(aspect) || !(aspect > 0)) return screen;
  const bool upright = aspect < kTallAspectFactor * geometry.screenAspect;
  const double fraction = upright ? kTallFraction : sidewaysFraction(geometry, aspect);
  // A part that would be higher than the picture is as high as the picture.
  const double scale = std::max(screen.width / (fraction * imageWidth), screen.height / imageHeight);
  return {scale * imageWidth, scale * imageHeight};
}

bool allowBlackBordersWidth(std::int32_t width, std::int32_t height, SizePt screen,
                            const BlackBorderSettings& settings) {
  if (settings.allowBlackBorders) return true;
  const float aspect = static_cast<float>(width) / static_cast<float>(height);
  const float screenAspect = static_cast<float>(screen.width) / static_cast<float>(screen.height);
  return aspect < screenAspect - settings.blackBorderAvoidance;
}

PlainZoom nextPlainZoom(std::int32_t width, std::int32_t height, SizePt screen,
                        const BlackBorderSettings& settings, float initZoomInFactor, bool lastZoomIn) {
  const SizePt small = scaled(screen, kSmallFraction);
  if (width < small.width && height < small.height && settings.allowBlackBorders) {
    return {small, scaled(small, kSmallGrowth), true, false};
  }
  const double factor = initZoomInFactor;
  const bool borders = allowBlackBordersWidth(width, height, screen, settings);
  const SizePt bigger = scaled(screen, factor);
  const SizePt smaller = borders ? SizePt{screen.width / factor, screen.height / factor} : screen;
  PlainZoom zoom{smaller, bigger, !lastZoomIn, !borders};
  if (!zoom.zoomIn) std::swap(zoom.fromSize, zoom.toSize);
  return zoom;
}

}  // namespace lumivane
