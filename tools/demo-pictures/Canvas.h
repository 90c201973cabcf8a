// The picture while it is painted, and the same as bytes.
//
// Threads: one at a time.
// Units:   pixels, origin upper left, y down.
// Errors:  none.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/demo-pictures/Colour.h"

namespace lumivane::demo {

class Canvas {
 public:
  Canvas(int width, int height)
      : width_(width),
        height_(height),
        pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] Rgb& at(int x, int y) { return pixels_[index(x, y)]; }
  [[nodiscard]] const Rgb& at(int x, int y) const { return pixels_[index(x, y)]; }
  // The nearest pixel for a place outside.
  [[nodiscard]] const Rgb& clamped(int x, int y) const {
    return at(std::clamp(x, 0, width_ - 1), std::clamp(y, 0, height_ - 1));
  }

  // Calls paint(x, y, colour) for every pixel of the rows from..to-1.
  template <typename Paint>
  void paintRows(int from, int to, Paint paint) {
    for (int y = std::max(from, 0); y < std::min(to, height_); ++y) {
      for (int x = 0; x < width_; ++x) paint(x, y, at(x, y));
    }
  }
  template <typename Paint>
  void paint(Paint paint) {
    paintRows(0, height_, paint);
  }

  // The same for something soft that takes long to work out: sample(x, y) is asked for every stride-th pixel only, and
  // paint(x, y, colour, sample) is given what lies between. A sample is three numbers of any meaning.
  template <typename Sample, typename Paint>
  void paintSoftly(int stride, int rows, Sample sample, Paint paint);

  // Adds a soft round spot of light.
  void addGlow(float x, float y, float radius, Rgb light);

  // Adds a little darkness towards the corners.
  void vignette(float strength);

  // Three bytes a pixel, finely grained so that wide gradients show no bands.
  [[nodiscard]] std::vector<std::uint8_t> bytes() const;

  // The same picture lying on its left side: turning it clockwise by a quarter puts it upright again.
  [[nodiscard]] Canvas turnedLeft() const;

 private:
  [[nodiscard]] std::size_t index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
  }

  int width_, height_;
  std::vector<Rgb> pixels_;
};

template <typename Sample, typename Paint>
void Canvas::paintSoftly(int stride, int rows, Sample sample, Paint paint) {
  Canvas samples(width_ / stride + 2, rows / stride + 2);
  samples.paint([&](int x, int y, Rgb& result) { result = sample(x * stride, y * stride); });
  const auto part = [stride](int place) {
    return static_cast<float>(place % stride) / static_cast<float>(stride);
  };
  paintRows(0, rows, [&](int x, int y, Rgb& colour) {
    const int column = x / stride, row = y / stride;
    const Rgb upper = mix(samples.at(column, row), samples.at(column + 1, row), part(x));
    const Rgb lower = mix(samples.at(column, row + 1), samples.at(column + 1, row + 1), part(x));
    paint(x, y, colour, mix(upper, lower, part(y)));
  });
}

}  // namespace lumivane::demo
