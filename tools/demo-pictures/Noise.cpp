#include "tools/demo-pictures/Noise.h"

#include <array>
#include <cmath>

#include "tools/demo-pictures/Colour.h"

namespace lumivane::demo {
namespace {

std::uint32_t hash(std::int32_t x, std::int32_t y, std::uint32_t seed) {
  std::uint32_t h = static_cast<std::uint32_t>(x) * 0x9E3779B1U ^
                    static_cast<std::uint32_t>(y) * 0x85EBCA77U ^ (seed + 1) * 0xC2B2AE3DU;
  h = (h ^ (h >> 15)) * 0x2C1B3C6DU;
  h = (h ^ (h >> 12)) * 0x297A2D39U;
  return h ^ (h >> 15);
}

// Sixteen directions around the circle.
struct Direction {
  float x, y;
};
constexpr float kA = 0.92387953F, kB = 0.38268343F, kC = 0.70710678F;
constexpr std::array<Direction, 16> kDirections = {{{1, 0},
                                                    {kA, kB},
                                                    {kC, kC},
                                                    {kB, kA},
                                                    {0, 1},
                                                    {-kB, kA},
                                                    {-kC, kC},
                                                    {-kA, kB},
                                                    {-1, 0},
                                                    {-kA, -kB},
                                                    {-kC, -kC},
                                                    {-kB, -kA},
                                                    {0, -1},
                                                    {kB, -kA},
                                                    {kC, -kC},
                                                    {kA, -kB}}};

float cornerValue(std::int32_t cellX, std::int32_t cellY, float dx, float dy, std::uint32_t seed) {
  const Direction& direction = kDirections[hash(cellX, cellY, seed) >> 28];
  return direction.x * dx + direction.y * dy;
}

// std::floor is a library call on the plainest x86-64, and this is the innermost loop of all.
std::int32_t roundedDown(float v) {
  const auto towardsZero = static_cast<std::int32_t>(v);
  return towardsZero - (static_cast<float>(towardsZero) > v ? 1 : 0);
}

float fade(float t) {
  return t * t * t * (t * (t * 6 - 15) + 10);
}

}  // namespace

float noise(float x, float y, std::uint32_t seed) {
  const std::int32_t cellX = roundedDown(x), cellY = roundedDown(y);
  const float dx = x - static_cast<float>(cellX), dy = y - static_cast<float>(cellY);
  const float u = fade(dx), v = fade(dy);
  const float low =
      mix(cornerValue(cellX, cellY, dx, dy, seed), cornerValue(cellX + 1, cellY, dx - 1, dy, seed), u);
  const float high = mix(cornerValue(cellX, cellY + 1, dx, dy - 1, seed),
                         cornerValue(cellX + 1, cellY + 1, dx - 1, dy - 1, seed), u);
  return mix(low, high, v) * 1.4F;
}

float fractalNoise(float x, float y, int octaves, std::uint32_t seed) {
  float sum = 0, strength = 0.5F;
  for (int octave = 0; octave < octaves; ++octave, strength *= 0.5F) {
    sum += strength * noise(x, y, seed + static_cast<std::uint32_t>(octave));
    // Turned by 37 degrees each time, so that the grids of the octaves never line up.
    const float turned = 1.6F * x + 1.2F * y;
    y = 1.6F * y - 1.2F * x;
    x = turned;
  }
  return sum;
}

float ridgedNoise(float x, float y, int octaves, std::uint32_t seed) {
  float sum = 0, strength = 0.5F, steepness = 1;
  for (int octave = 0; octave < octaves; ++octave, strength *= 0.5F) {
    const float crest = 1 - std::fabs(noise(x, y, seed + static_cast<std::uint32_t>(octave)));
    sum += strength * steepness * crest * crest;
    steepness = crest;  // valleys stay smooth, crests get rough
    const float turned = 1.6F * x + 1.2F * y;
    y = 1.6F * y - 1.2F * x;
    x = turned;
  }
  return sum;
}

float scatter(int x, int y, std::uint32_t seed) {
  return static_cast<float>(hash(x, y, seed ^ 0x5BD1E995U) >> 8) / 16777216.0F;
}

}  // namespace lumivane::demo
