#include "tools/demo-pictures/Canvas.h"

#include "tools/demo-pictures/Noise.h"

namespace lumivane::demo {
namespace {

// Highlights approach white instead of being cut off at it.
float rolledOff(float v) {
  return v < 0.8F ? v : 0.8F + 0.2F * (1 - std::exp(-(v - 0.8F) / 0.2F));
}

std::uint8_t asByte(float v, float grain) {
  return static_cast<std::uint8_t>(std::clamp(rolledOff(v) * 255 + grain, 0.0F, 255.0F) + 0.5F);
}

}  // namespace

void Canvas::addGlow(float x, float y, float radius, Rgb light) {
  const int reach = static_cast<int>(std::ceil(radius * 2.5F));
  const int centreX = static_cast<int>(x), centreY = static_cast<int>(y);
  for (int row = std::max(centreY - reach, 0); row <= std::min(centreY + reach, height_ - 1); ++row) {
    for (int column = std::max(centreX - reach, 0); column <= std::min(centreX + reach, width_ - 1);
         ++column) {
      const float dx = static_cast<float>(column) - x, dy = static_cast<float>(row) - y;
      Rgb& pixel = at(column, row);
      pixel = pixel + light * std::exp(-(dx * dx + dy * dy) / (radius * radius));
    }
  }
}

void Canvas::vignette(float strength) {
  paint([&](int x, int y, Rgb& colour) {
    const float dx = 2 * static_cast<float>(x) / static_cast<float>(width_) - 1;
    const float dy = 2 * static_cast<float>(y) / static_cast<float>(height_) - 1;
    const float distance = (dx * dx + dy * dy) / 2;
    colour = colour * (1 - strength * distance * distance);
  });
}

std::vector<std::uint8_t> Canvas::bytes() const {
  std::vector<std::uint8_t> bytes;
  bytes.reserve(pixels_.size() * 3);
  for (int y = 0; y < height_; ++y) {
    for (int x = 0; x < width_; ++x) {
      const Rgb colour = at(x, y);
      const float grain = (scatter(x, y, 1) + scatter(x, y, 2) - 1) * 1.2F;
      bytes.push_back(asByte(colour.r, grain));
      bytes.push_back(asByte(colour.g, grain));
      bytes.push_back(asByte(colour.b, grain));
    }
  }
  return bytes;
}

Canvas Canvas::turnedLeft() const {
  Canvas turned(height_, width_);
  turned.paint([&](int x, int y, Rgb& colour) { colour = at(width_ - 1 - y, x); });
  return turned;
}

}  // namespace lumivane::demo
