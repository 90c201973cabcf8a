// Colours and directions of the demonstration pictures, with the little arithmetic that painting takes.
//
// Threads: values and pure functions.
// Units:   colour components as the screen shows them (sRGB), 0..1; more is brighter than white and is rolled off.
// Errors:  none.
#pragma once

#include <algorithm>
#include <cmath>

namespace lumivane::demo {

struct Rgb {
  float r = 0, g = 0, b = 0;
};
[[nodiscard]] constexpr Rgb operator+(Rgb a, Rgb b) {
  return {a.r + b.r, a.g + b.g, a.b + b.b};
}
[[nodiscard]] constexpr Rgb operator*(Rgb a, Rgb b) {
  return {a.r * b.r, a.g * b.g, a.b * b.b};
}
[[nodiscard]] constexpr Rgb operator*(Rgb a, float f) {
  return {a.r * f, a.g * f, a.b * f};
}

// A colour as designers write it, 0xRRGGBB.
[[nodiscard]] constexpr Rgb hex(unsigned code) {
  constexpr auto part = [](unsigned byte) { return static_cast<float>(byte & 255U) / 255.0F; };
  return {part(code >> 16), part(code >> 8), part(code)};
}

struct Vec3 {  // x to the right, y up, z into the picture
  float x = 0, y = 0, z = 0;
};
[[nodiscard]] constexpr Vec3 operator+(Vec3 a, Vec3 b) {
  return {a.x + b.x, a.y + b.y, a.z + b.z};
}
[[nodiscard]] constexpr Vec3 operator*(Vec3 a, float f) {
  return {a.x * f, a.y * f, a.z * f};
}
[[nodiscard]] constexpr float dot(Vec3 a, Vec3 b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}
[[nodiscard]] inline Vec3 normalized(Vec3 v) {
  return v * (1.0F / std::sqrt(dot(v, v)));
}

[[nodiscard]] constexpr float clamp01(float v) {
  return std::clamp(v, 0.0F, 1.0F);
}
[[nodiscard]] constexpr float mix(float a, float b, float t) {
  return a + (b - a) * t;
}
[[nodiscard]] constexpr Rgb mix(Rgb a, Rgb b, float t) {
  return a * (1 - t) + b * t;
}
[[nodiscard]] constexpr float smoothstep(float from, float to, float v) {
  const float t = clamp01((v - from) / (to - from));
  return t * t * (3 - 2 * t);
}

}  // namespace lumivane::demo
