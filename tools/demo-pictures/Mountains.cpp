#include "tools/demo-pictures/DemoPictures.h"
#include "tools/demo-pictures/Noise.h"
#include "tools/demo-pictures/Terrain.h"

namespace lumivane::demo {
namespace {

// Snow stays where it is high and not too steep.
float snowCover(const GroundPoint& point, float snowLine, std::uint32_t seed) {
  const float patches = 0.25F * fractalNoise(point.place.x * 3, point.place.z * 3, 4, seed);
  return smoothstep(snowLine - 0.25F, snowLine + 0.25F, point.place.y + patches) *
         smoothstep(0.45F, 0.72F, point.normal.y);
}

}  // namespace

void paintMistyRidges(Canvas& canvas) {
  const Camera camera{{0, 1.75F, 0}, 0.40F, 1.5F};
  Sky sky{hex(0x3F6FA6),        hex(0xD9B9A8), hex(0xF3CFA8), normalized({0.30F, 0.10F, 1}),
          hex(0xFFA860) * 0.8F, 0.020F};
  paintSky(canvas, camera, sky);
  paintClouds(canvas, camera, sky, {0.34F, 1.6F, hex(0xFFE9D2), hex(0xC99A93), 21});
  Terrain terrain;
  terrain.height = [](float x, float z, int octaves) {
    const float range = 0.55F + 0.45F * noise(x * 0.07F + 3, z * 0.11F, 5);
    return 2.9F * range * ridgedNoise(x * 0.11F, z * 0.20F, std::min(octaves, 7), 41) - 0.45F;
  };
  terrain.colour = [sky](const GroundPoint& point) {
    const float woods = fractalNoise(point.place.x * 6, point.place.z * 6, 4, 3);
    const Rgb surface = mix(hex(0x2A4054), hex(0x44605E), clamp01(0.5F + woods));
    return lit(point, sky, surface, hex(0xFFC48A) * 1.5F, hex(0x7C9CC8));
  };
  terrain.haze = {0.16F, 1.25F, 0.1F};
  terrain.nearest = 2.2F;
  terrain.farthest = 70;
  paintTerrain(canvas, camera, sky, terrain);
  canvas.vignette(0.18F);
}

void paintAlpineLake(Canvas& canvas) {
  const Camera camera{{0, 0.10F, 0}, 0.60F, 1.05F};
  Sky sky{hex(0x2C5C9E), hex(0x7FB2DE), hex(0xD8E4E8), normalized({-0.85F, 0.55F, -0.15F}),
          hex(0xFFFFFF) * 0.3F};
  paintSky(canvas, camera, sky);
  paintClouds(canvas, camera, sky, {0.40F, 1.3F, hex(0xFFFFFF), hex(0xB4C4D6), 77});
  Terrain terrain;
  terrain.height = [](float x, float z, int octaves) {
    const float basin = smoothstep(5.5F, 13, z + 0.35F * std::fabs(x) + 0.8F * noise(x * 0.4F, z * 0.4F, 8));
    const float peak = std::exp(-((x - 1.1F) * (x - 1.1F) * 0.10F + (z - 15) * (z - 15) * 0.05F));
    return basin *
               (0.3F + 3.1F * ridgedNoise(x * 0.22F + 1.7F, z * 0.22F, octaves, 7) * (0.45F + 1.15F * peak)) -
           0.05F;
  };
  terrain.colour = [sky](const GroundPoint& point) {
    const float grain = fractalNoise(point.place.x * 9, point.place.z * 9, 4, 12);
    const Rgb rock = mix(hex(0x5C5A58), hex(0x8A847C), clamp01(0.5F + grain));
    const Rgb woods = mix(hex(0x1D3324), hex(0x2F4A2B), clamp01(0.5F + 1.4F * grain));
    const Rgb ground = mix(
        woods, rock, smoothstep(0.75F, 1.45F, point.place.y + 0.5F * grain + 0.5F * (1 - point.normal.y)));
    const Rgb surface = mix(ground, hex(0xF4F8FF), snowCover(point, 2.0F, 31));
    return lit(point, sky, surface, hex(0xFFF1DC) * 1.15F, hex(0x6F8FBC) * 0.75F);
  };
  terrain.haze = {0.020F, 0.5F, 0};
  terrain.nearest = 3;
  terrain.farthest = 40;
  terrain.step = 0.003F;
  terrain.shadowReach = 4;
  paintTerrain(canvas, camera, sky, terrain);
  paintWater(canvas, {camera.horizonRow(canvas) + 0.012F * static_cast<float>(canvas.height()),
                      0.45F,
                      {0.78F, 0.86F, 0.90F},
                      hex(0x0C3A4A),
                      9});
  canvas.vignette(0.15F);
}

void paintSeaOfClouds(Canvas& canvas) {
  const Camera camera{{0, 2.3F, 0}, 0.42F, 1.25F};
  Sky sky{hex(0x33508F), hex(0xE59A86), hex(0xFFCB8E), normalized({-0.55F, 0.13F, 1}), hex(0xFF9E4F), 0.022F};
  paintSky(canvas, camera, sky);
  paintClouds(canvas, camera, sky, {0.30F, 2.4F, hex(0xFFD7B8), hex(0x9C6F8A), 5});
  const auto cloudTop = [](float x, float z, int octaves) {
    const float billows = 1 - ridgedNoise(x * 0.35F, z * 0.5F, std::min(octaves, 7), 60);
    return 0.75F + 0.55F * billows + 0.3F * noise(x * 0.12F, z * 0.2F, 61);
  };
  const auto rock = [](float x, float z, int octaves) {
    const float where = smoothstep(0.0F, 0.75F, noise(x * 0.12F + 11, z * 0.15F, 3)) * smoothstep(4, 9, z);
    return 3.2F * where * ridgedNoise(x * 0.3F, z * 0.34F, octaves, 17);
  };
  Terrain terrain;
  terrain.height = [=](float x, float z, int octaves) {
    return std::max(cloudTop(x, z, octaves), rock(x, z, octaves));
  };
  terrain.colour = [=](const GroundPoint& point) {
    const float above = rock(point.place.x, point.place.z, 5) - cloudTop(point.place.x, point.place.z, 5);
    const Rgb cloud = lit(point, sky, hex(0xFFF3EA), hex(0xFFB98A) * 1.25F, hex(0x8C8FC0) * 0.80F);
    const Rgb stone = lit(point, sky, hex(0x3B3440), hex(0xFFB27A) * 1.5F, hex(0x5C5F8C));
    return mix(cloud, stone, smoothstep(0, 0.22F, above));  // rock rises out of the cloud gradually
  };
  terrain.haze = {0.028F, 0.2F, 1};
  terrain.nearest = 1.6F;
  terrain.farthest = 70;
  terrain.step = 0.004F;
  terrain.shadowReach = 3;
  paintTerrain(canvas, camera, sky, terrain);
  canvas.vignette(0.12F);
}

}  // namespace lumivane::demo
