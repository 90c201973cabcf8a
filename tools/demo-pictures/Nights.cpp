#include "tools/demo-pictures/DemoPictures.h"
#include "tools/demo-pictures/Noise.h"
#include "tools/demo-pictures/Terrain.h"

namespace lumivane::demo {

void paintNorthernLights(Canvas& canvas) {
  const Camera camera{{0, 0.16F, 0}, 0.68F, 0.95F};
  Sky sky{hex(0x050B1C), hex(0x0A1B33), hex(0x123248), normalized({0.2F, 0.8F, 0.3F}), hex(0x000000)};
  paintSky(canvas, camera, sky);
  const float horizon = camera.horizonRow(canvas);
  paintStars(canvas, static_cast<int>(horizon), 2600, 4);
  paintAurora(canvas, horizon, 900);
  Terrain terrain;
  terrain.height = [](float x, float z, int octaves) {
    const float shore = smoothstep(5, 11, z - 0.25F * x + 0.7F * noise(x * 0.5F, z * 0.5F, 3));
    return shore * (0.1F + 3.0F * ridgedNoise(x * 0.15F + 5, z * 0.15F, octaves, 27)) - 0.03F;
  };
  terrain.colour = [sky](const GroundPoint& point) {
    const float patches = 0.3F * fractalNoise(point.place.x * 4, point.place.z * 4, 5, 31);
    const float snow =
        smoothstep(0.0F, 0.6F, point.place.y + patches) * smoothstep(0.5F, 0.8F, point.normal.y);
    return lit(point, sky, mix(hex(0x1A2026), hex(0xDDE9F2), snow), hex(0x3FAF8C) * 0.5F,
               hex(0x2C5A6C) * 0.75F);
  };
  terrain.haze = {0.03F, 0.6F, 0};
  terrain.nearest = 3;
  terrain.farthest = 40;
  paintTerrain(canvas, camera, sky, terrain);
  paintWater(canvas, {horizon + 0.014F * static_cast<float>(canvas.height()),
                      0.8F,
                      {0.70F, 0.82F, 0.86F},
                      hex(0x03101A),
                      12});
  canvas.vignette(0.2F);
}

void paintMilkyWayOverSea(Canvas& canvas) {
  const Camera camera{{0, 0.35F, 0}, 0.80F, 1};
  Sky sky{hex(0x070D20), hex(0x122344), hex(0x3A4A66), normalized({-0.5F, 0.05F, 1}), hex(0xC98A5C) * 0.35F};
  paintSky(canvas, camera, sky);
  const float horizon = camera.horizonRow(canvas);
  paintMilkyWay(canvas, static_cast<int>(horizon), 500);
  paintStars(canvas, static_cast<int>(horizon), 5200, 8);
  Terrain terrain;  // an island at the right, nearly black
  terrain.height = [](float x, float z, int octaves) {
    const float island = std::exp(-((x - 4.6F) * (x - 4.6F) * 0.16F + (z - 9) * (z - 9) * 0.12F));
    return 2.1F * island * ridgedNoise(x * 0.4F, z * 0.4F, octaves, 3) - 0.12F;
  };
  terrain.colour = [sky](const GroundPoint& point) {
    return lit(point, sky, hex(0x12161F), hex(0x6A5A50), hex(0x4A5C80));
  };
  terrain.haze = {0.035F, 1, 0};
  terrain.nearest = 4;
  terrain.farthest = 16;
  paintTerrain(canvas, camera, sky, terrain);
  paintWater(canvas, {horizon, 1.3F, {0.55F, 0.62F, 0.72F}, hex(0x040A16), 44});
  canvas.vignette(0.2F);
}

namespace {

void paintMoon(Canvas& canvas, float centreX, float centreY, float radius) {
  canvas.addGlow(centreX, centreY, radius * 2.6F, hex(0x6E5A5C) * 0.55F);
  const int top = static_cast<int>(centreY - radius) - 1, bottom = static_cast<int>(centreY + radius) + 2;
  canvas.paintRows(top, bottom, [&](int x, int y, Rgb& colour) {
    const float u = (static_cast<float>(x) - centreX) / radius,
                v = (static_cast<float>(y) - centreY) / radius;
    const float distance = std::sqrt(u * u + v * v);
    const float cover = clamp01((1 - distance) * radius + 0.5F);
    if (cover <= 0) return;
    const float bulge = std::sqrt(std::max(1 - distance * distance, 0.0F));
    const float seas = smoothstep(-0.05F, 0.30F, fractalNoise(u * 1.3F + 4, v * 1.3F, 4, 66));
    const float rough = fractalNoise(u * 9, v * 9, 5, 67);
    const Rgb face = mix(hex(0xFFE9C6), hex(0xB79B85), 0.8F * seas) * (0.92F + 0.16F * rough);
    colour = mix(colour, face * (0.72F + 0.30F * bulge), cover);
  });
}

}  // namespace

void paintMoonrise(Canvas& canvas) {
  const Camera camera{{0, 1.5F, 0}, 0.66F, 1.6F};
  Sky sky{hex(0x101C3C), hex(0x3B4A77), hex(0xA8788C), normalized({0.05F, 0.25F, 1}), hex(0x7A6A70) * 0.35F};
  paintSky(canvas, camera, sky);
  paintStars(canvas, static_cast<int>(camera.horizonRow(canvas) * 0.8F), 700, 15);
  const auto width = static_cast<float>(canvas.width()), height = static_cast<float>(canvas.height());
  paintMoon(canvas, width * 0.56F, height * 0.36F, width * 0.20F);
  paintClouds(canvas, camera, sky, {0.36F, 1.5F, hex(0xC9A9A6), hex(0x4A4468), 210});
  Terrain terrain;
  terrain.height = [](float x, float z, int octaves) {
    return 1.5F * (0.6F + 0.5F * noise(x * 0.1F, z * 0.12F, 2)) *
           ridgedNoise(x * 0.22F, z * 0.2F, octaves, 83);
  };
  terrain.colour = [sky](const GroundPoint& point) {
    return lit(point, sky, hex(0x1C2233), hex(0xB9A08C), hex(0x4C557C));
  };
  terrain.haze = {0.10F, 1.3F, 0.1F};
  terrain.nearest = 2;
  terrain.farthest = 50;
  paintTerrain(canvas, camera, sky, terrain);
  canvas.vignette(0.2F);
}

}  // namespace lumivane::demo
