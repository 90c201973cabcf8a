#include "tools/demo-pictures/Terrain.h"

namespace lumivane::demo {
namespace {

// One column of the picture, filled from the bottom up: what is nearer hides what is farther.
class Column {
 public:
  Column(Canvas& canvas, int x) : canvas_(canvas), x_(x), top_(static_cast<float>(canvas.height())) {}

  [[nodiscard]] bool hides(float row) const { return row >= top_; }
  [[nodiscard]] bool full() const { return top_ <= 0; }

  // Paints from the last top up to the row, the colour going over from the last one to this one.
  void fillUpTo(float row, Rgb colour, bool joined) {
    const float from = std::max(row, 0.0F), bottom = top_;
    const Rgb start = joined ? lastColour_ : colour;
    for (int y = static_cast<int>(std::ceil(bottom)) - 1; y >= static_cast<int>(from); --y) {
      const float upper = std::max(static_cast<float>(y), from),
                  lower = std::min(static_cast<float>(y + 1), bottom);
      if (lower <= upper) continue;
      if (y != openRow_) background_ = canvas_.at(x_, y);
      openRow_ = y;
      const float t = clamp01((bottom - (upper + lower) / 2) / (bottom - row));
      // Partly covered pixels keep the rest of what was behind, so that outlines are smooth.
      canvas_.at(x_, y) = canvas_.at(x_, y) + (mix(start, colour, t) + background_ * -1.0F) * (lower - upper);
    }
    top_ = from;
    lastColour_ = colour;
  }

 private:
  Canvas& canvas_;
  int x_;
  float top_;
  int openRow_ = -1;
  Rgb background_, lastColour_;
};

Vec3 normalAt(const Terrain& terrain, Vec3 place, float reach, int octaves) {
  const float right = terrain.height(place.x + reach, place.z, octaves);
  const float behind = terrain.height(place.x, place.z + reach, octaves);
  return normalized({place.y - right, reach, place.y - behind});
}

// How much of the sun gets past the hills between it and the place; soft-edged.
float sunlightAt(const Terrain& terrain, Vec3 place, Vec3 sun) {
  if (terrain.shadowReach <= 0) return 1;
  float light = 1;
  for (float way = terrain.shadowReach * 0.02F; way < terrain.shadowReach && light > 0; way *= 1.8F) {
    const Vec3 point = place + sun * way;
    const float clearance = point.y - terrain.height(point.x, point.z, 4);
    light = std::min(light, 0.5F + 9 * clearance / way);
  }
  return clamp01(light);
}

float hazeBetween(const Haze& haze, Vec3 from, Vec3 to, float distance) {
  // The mean density along the way, from three samples.
  float density = 0;
  for (const float t : {0.15F, 0.5F, 0.85F}) {
    const float height = std::max(mix(from.y, to.y, t) - haze.lowest, -0.3F);
    density += haze.density * std::exp(-height * haze.thinning) / 3;
  }
  return 1 - std::exp(-density * distance);
}

}  // namespace

void paintTerrain(Canvas& canvas, const Camera& camera, const Sky& sky, const Terrain& terrain) {
  const float focal = camera.focalPixels(canvas), horizon = camera.horizonRow(canvas);
  for (int x = 0; x < canvas.width(); ++x) {
    Column column(canvas, x);
    const float right = (static_cast<float>(x) + 0.5F - static_cast<float>(canvas.width()) / 2) / focal;
    const Rgb air = sky.colour(normalized({right, 0.015F, 1}));
    bool joined = false;
    float step = 0;
    for (float depth = terrain.nearest; depth < terrain.farthest && !column.full(); depth += step) {
      step = depth * terrain.step;
      const int octaves = std::clamp(static_cast<int>(std::log2(focal / depth)), 3, 10);
      Vec3 place{camera.place.x + right * depth, 0, camera.place.z + depth};
      place.y = terrain.height(place.x, place.z, octaves);
      const float row = horizon - (place.y - camera.place.y) / depth * focal;
      if (column.hides(row)) {
        joined = false;
        continue;
      }
      GroundPoint point{place, normalAt(terrain, place, depth * 0.0025F, octaves), depth, 1};
      point.sunlight = sunlightAt(terrain, place, sky.sun);
      const float haze = hazeBetween(terrain.haze, camera.place, place, depth);
      column.fillUpTo(row, mix(terrain.colour(point), air, haze), joined);
      joined = true;
    }
  }
}

Rgb lit(const GroundPoint& point, const Sky& sky, Rgb surface, Rgb sunLight, Rgb skyLight) {
  const float facing = std::max(dot(point.normal, sky.sun), 0.0F) * point.sunlight;
  const float open = 0.55F + 0.45F * point.normal.y;
  return surface * (sunLight * facing + skyLight * open);
}

}  // namespace lumivane::demo
