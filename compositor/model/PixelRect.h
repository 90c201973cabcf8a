// Rectangles of the framebuffer, and which pixels lie in them whole.
//
// Threads: any; pure functions.
// Units:   device pixels, origin lower left; edges may fall between pixels.
// Errors:  none; a rectangle without area is empty.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

namespace lumivane {

struct RectPx {
  double left = 0;
  double bottom = 0;
  double right = 0;
  double top = 0;
  friend bool operator==(const RectPx&, const RectPx&) = default;
};

[[nodiscard]] inline bool isEmpty(const RectPx& rect) {
  return !(rect.left < rect.right && rect.bottom < rect.top);
}

[[nodiscard]] inline RectPx grown(const RectPx& rect, double margin) {
  return {rect.left - margin, rect.bottom - margin, rect.right + margin, rect.top + margin};
}

// The smallest rectangle that holds both.
[[nodiscard]] inline RectPx joined(const RectPx& one, const RectPx& other) {
  return {std::min(one.left, other.left), std::min(one.bottom, other.bottom),
          std::max(one.right, other.right), std::max(one.top, other.top)};
}

// What lies in both.
[[nodiscard]] inline RectPx common(const RectPx& one, const RectPx& other) {
  return {std::max(one.left, other.left), std::max(one.bottom, other.bottom),
          std::min(one.right, other.right), std::min(one.top, other.top)};
}

// The pixels that no edge of the rectangle cuts.
[[nodiscard]] inline RectPx wholePixels(const RectPx& rect) {
  return {std::ceil(rect.left), std::ceil(rect.bottom), std::floor(rect.right), std::floor(rect.top)};
}

// The pixels that have something of the rectangle.
[[nodiscard]] inline RectPx touchedPixels(const RectPx& rect) {
  return {std::floor(rect.left), std::floor(rect.bottom), std::ceil(rect.right), std::ceil(rect.top)};
}

// The rectangle without a part of it: what lies below and above over the whole width, then left and right of it. Some
// may be empty.
[[nodiscard]] inline std::array<RectPx, 4> around(const RectPx& rect, const RectPx& part) {
  if (isEmpty(part)) return {rect};
  return {{{rect.left, rect.bottom, rect.right, part.bottom},
           {rect.left, part.top, rect.right, rect.top},
           {rect.left, part.bottom, part.left, part.top},
           {part.right, part.bottom, rect.right, part.top}}};
}

}  // namespace lumivane
