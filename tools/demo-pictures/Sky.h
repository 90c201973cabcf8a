// The sky of a demonstration picture: its colours in every direction, and what can be seen in it.
//
// Threads: pure functions; each painter has the canvas to itself.
// Units:   directions are of length 1 (x right, y up, z into the picture); angles in radians.
// Errors:  none.
#pragma once

#include <cstdint>

#include "tools/demo-pictures/Canvas.h"

namespace lumivane::demo {

struct Camera {
  Vec3 place;            // where it stands; it looks along +z
  float horizon = 0.5F;  // the row of the horizon, as a part of the picture's height
  float focal = 1;       // focal length in picture heights: larger sees less

  [[nodiscard]] float focalPixels(const Canvas& canvas) const {
    return focal * static_cast<float>(canvas.height());
  }
  [[nodiscard]] float horizonRow(const Canvas& canvas) const {
    return horizon * static_cast<float>(canvas.height());
  }
  // Through the middle of a pixel.
  [[nodiscard]] Vec3 direction(const Canvas& canvas, int x, int y) const;
};

struct Sky {
  Rgb zenith, middle, horizon;
  Vec3 sun{0, 0.1F, 1};  // direction to the sun or moon, of length 1
  Rgb glow{0, 0, 0};     // light around it
  float sunRadius = 0;   // 0 = not in view

  [[nodiscard]] Rgb colour(Vec3 direction) const;
};

struct Clouds {
  float amount = 0.5F;  // 0 = none, 1 = overcast
  float size = 1;       // larger means wider clouds
  Rgb lit, shaded;
  std::uint32_t seed = 1;
};

void paintSky(Canvas& canvas, const Camera& camera, const Sky& sky);
void paintClouds(Canvas& canvas, const Camera& camera, const Sky& sky, const Clouds& clouds);

// Stars down to the given row; `crowd` is how many lie in a square as wide as the picture is high.
void paintStars(Canvas& canvas, int toRow, int crowd, std::uint32_t seed);

// The band of the galaxy, rising from lower left to upper right.
void paintMilkyWay(Canvas& canvas, int toRow, std::uint32_t seed);

// Curtains of light above the given row.
void paintAurora(Canvas& canvas, float footRow, std::uint32_t seed);

// Overwrites everything below the row with its mirror image on moving water.
struct Water {
  float row = 0;        // where the water begins
  float roughness = 1;  // of the waves
  Rgb tint{0.8F, 0.85F, 0.9F};
  Rgb depth{0.02F, 0.05F, 0.08F};
  std::uint32_t seed = 1;
};
void paintWater(Canvas& canvas, const Water& water);

}  // namespace lumivane::demo
