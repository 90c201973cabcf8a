#include "tools/demo-pictures/DemoPictures.h"
#include "tools/demo-pictures/Noise.h"
#include "tools/demo-pictures/Terrain.h"

namespace lumivane::demo {

namespace {

// The absolute value with its corner rounded off: wind leaves no edge quite sharp.
float rounded(float v) {
  return std::sqrt(v * v + 0.0005F);
}

}  // namespace

void paintDunes(Canvas& canvas) {
  const Camera camera{{18, 2.1F, 4}, 0.22F, 1.5F};
  Sky sky{hex(0x3F74B5), hex(0x9EC3DE), hex(0xF6D9B4), normalized({-0.80F, 0.34F, 0.45F}),
          hex(0xFFC98A) * 0.6F};
  paintSky(canvas, camera, sky);
  Terrain terrain;
  terrain.height = [](float x, float z, int octaves) {
    const float warp = 0.6F * noise(x * 0.22F, z * 0.22F, 4);
    const float crest = 1 - rounded(noise(x * 0.26F + warp, z * 0.17F + 0.5F * warp, 90));
    const float second = 1 - rounded(noise(x * 0.7F + warp, z * 0.5F, 91));
    const float ripples =
        octaves > 8 ? 0.0022F * std::sin(70 * (z + 0.25F * noise(x * 2, z * 2, 6)) + 9 * x) : 0;
    return 1.1F * crest * crest + 0.14F * second * second + ripples;
  };
  terrain.colour = [sky](const GroundPoint& point) {
    const float grain = 0.06F * fractalNoise(point.place.x * 60, point.place.z * 60, 3, 2);
    const Rgb sand =
        mix(hex(0xD08A4E), hex(0xE7AE6C), clamp01(0.5F + fractalNoise(point.place.x, point.place.z, 3, 8)));
    return lit(point, sky, sand * (1 + grain), hex(0xFFD2A0) * 1.55F, hex(0x8C8CB8) * 0.85F);
  };
  terrain.haze = {0.018F, 0.3F, 0};
  terrain.nearest = 1.8F;
  terrain.farthest = 60;
  terrain.step = 0.002F;
  terrain.shadowReach = 6;
  paintTerrain(canvas, camera, sky, terrain);
  canvas.vignette(0.18F);
}

void paintLavender(Canvas& canvas) {
  const Camera camera{{0.25F, 0.95F, 0}, 0.42F, 1.1F};
  Sky sky{hex(0x4A5C9C), hex(0xE7A28C), hex(0xFFD08F), normalized({0.18F, 0.07F, 1}), hex(0xFFA85C), 0.024F};
  paintSky(canvas, camera, sky);
  paintClouds(canvas, camera, sky, {0.46F, 1.5F, hex(0xFFC9A6), hex(0x85668F), 133});
  const auto land = [](float x, float z) {
    return 0.5F * noise(x * 0.08F, z * 0.07F, 71) + 0.02F * z * smoothstep(14, 40, z);
  };
  const auto rowProfile = [](float x, float z) {
    const float across = x * 1.15F + 0.06F * noise(x, z * 0.5F, 14);
    return std::fabs(across - std::floor(across) - 0.5F) * 2;  // 1 in the furrow, 0 on the ridge of the row
  };
  const auto hills = [](float x, float z, int octaves) {
    return smoothstep(24, 40, z) * (0.6F + 2.6F * (fractalNoise(x * 0.06F, z * 0.03F, octaves, 55) + 0.35F));
  };
  Terrain terrain;
  terrain.height = [=](float x, float z, int octaves) {
    const float row = 1 - rowProfile(x, z);
    const float bushes = smoothstep(0.25F, 0.75F, row) *
                         (0.16F + (octaves > 6 ? 0.06F * fractalNoise(x * 9, z * 9, 4, 15) : 0));
    return land(x, z) + (z < 24 ? bushes : 0) + hills(x, z, octaves);
  };
  terrain.colour = [=](const GroundPoint& point) {
    const float row = 1 - rowProfile(point.place.x, point.place.z);
    const float flowers = fractalNoise(point.place.x * 26, point.place.z * 26, 4, 19);
    const Rgb violet = mix(hex(0x5B3B8C), hex(0xA07BD0), clamp01(0.45F + 1.3F * flowers));
    const Rgb earth = mix(hex(0x6E5139), hex(0x8B6B48), clamp01(0.5F + flowers));
    const Rgb field = mix(earth, violet, smoothstep(0.22F, 0.5F, row));
    const Rgb surface = mix(field, hex(0x46507A), smoothstep(23, 27, point.place.z));
    return lit(point, sky, surface, hex(0xFFBE86) * 1.3F, hex(0x9C8DB8) * 0.95F);
  };
  terrain.haze = {0.020F, 0.25F, 0};
  terrain.nearest = 0.7F;
  terrain.farthest = 70;
  paintTerrain(canvas, camera, sky, terrain);
  canvas.vignette(0.2F);
}

void paintSunsetSea(Canvas& canvas) {
  const Camera camera{{0, 1, 0}, 0.56F, 1.1F};
  Sky sky{hex(0x27366E), hex(0xC46A6E), hex(0xFFB066), normalized({-0.16F, 0.055F, 1}),
          hex(0xFF9A45), 0.026F};
  paintSky(canvas, camera, sky);
  paintClouds(canvas, camera, sky, {0.55F, 1.25F, hex(0xFF9E73), hex(0x4E3B66), 300});
  const auto height = static_cast<float>(canvas.height());
  const float horizon = camera.horizonRow(canvas);
  canvas.paintRows(static_cast<int>(horizon), canvas.height(), [&](int x, int y, Rgb& colour) {
    const float below = (static_cast<float>(y) + 0.5F - horizon) / height;
    const float depth = 0.9F / (below + 0.0015F);  // distance of the water seen here
    const float across = (static_cast<float>(x) - static_cast<float>(canvas.width()) / 2) / height * depth;
    const int octaves = std::clamp(static_cast<int>(9 - std::log2(depth)), 2, 5);
    const float swell = noise(across * 0.22F, depth * 0.35F, 30);
    const float slopeX = fractalNoise(across * 0.9F, depth * 1.7F, octaves, 31);
    const float slopeZ = fractalNoise(across * 0.9F + 40, depth * 1.7F, octaves, 32) + 0.5F * swell;
    const Vec3 look = camera.direction(canvas, x, y);
    const Vec3 normal = normalized({slopeX * 0.30F, 1, slopeZ * 0.36F});
    Vec3 mirrored = look + normal * (-2 * dot(look, normal));
    mirrored.y = std::fabs(mirrored.y) + 0.01F;
    mirrored = normalized(mirrored);
    const float facing = clamp01(-dot(look, normal));
    const float fresnel = 0.04F + 0.96F * std::pow(1 - facing, 5.0F);
    const float sparkle = std::pow(std::max(dot(mirrored, sky.sun), 0.0F), 260.0F);
    const Rgb body = mix(hex(0x0E2238), hex(0x1F3E55), clamp01(0.5F + slopeZ));
    colour = mix(body, sky.colour(mirrored) * 0.92F, clamp01(0.25F + fresnel)) + sky.glow * (1.5F * sparkle);
    colour = mix(colour, sky.colour(normalized({look.x, 0.01F, look.z})), std::exp(-below * 90) * 0.65F);
  });
  canvas.vignette(0.22F);
}

}  // namespace lumivane::demo
