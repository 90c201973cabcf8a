// Paints a landscape over the sky: a height for every place of the ground, seen from a camera, column by column.
//
// Threads: one at a time.
// Units:   the ground's own; noise of wavelength 1 makes hills about 1 wide.
// Errors:  none.
#pragma once

#include <functional>

#include "tools/demo-pictures/Sky.h"

namespace lumivane::demo {

struct GroundPoint {
  Vec3 place, normal;
  float distance = 0;  // from the camera
  float sunlight = 1;  // 0 = in the shadow of something, 1 = not
};

struct Haze {
  float density = 0.02F;  // at height 0
  float thinning = 0;     // how fast it gets thinner with height
  float lowest = 0;       // where height 0 of the haze lies
};

struct Terrain {
  // The ground at a place; `octaves` is how many waves of noise can be told apart from where the camera stands.
  std::function<float(float x, float z, int octaves)> height;
  std::function<Rgb(const GroundPoint&)> colour;
  Haze haze;
  float nearest = 1, farthest = 60;
  float step = 0.004F;    // forward by this part of the distance
  float shadowReach = 0;  // how far the search for something in front of the sun goes; 0 = no shadows
};

void paintTerrain(Canvas& canvas, const Camera& camera, const Sky& sky, const Terrain& terrain);

// Light from the sun and from the sky on a rough surface.
[[nodiscard]] Rgb lit(const GroundPoint& point, const Sky& sky, Rgb surface, Rgb sunLight, Rgb skyLight);

}  // namespace lumivane::demo
