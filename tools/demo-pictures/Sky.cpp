#include "tools/demo-pictures/Sky.h"

#include "tools/demo-pictures/Noise.h"

namespace lumivane::demo {

Vec3 Camera::direction(const Canvas& canvas, int x, int y) const {
  const float focalLength = focalPixels(canvas);
  const float right = (static_cast<float>(x) + 0.5F - static_cast<float>(canvas.width()) / 2) / focalLength;
  const float up = (horizonRow(canvas) - static_cast<float>(y) - 0.5F) / focalLength;
  return normalized({right, up, 1});
}

Rgb Sky::colour(Vec3 direction) const {
  const float height = std::max(direction.y, 0.0F);
  const Rgb low = mix(horizon, middle, smoothstep(0, 0.22F, height));
  const Rgb plain = mix(low, zenith, smoothstep(0.1F, 0.75F, height));
  const float towards = std::max(dot(direction, sun), 0.0F);
  const float square = towards * towards, fourth = square * square, eighth = fourth * fourth;
  const float tight = eighth * eighth * eighth * eighth;  // the 32nd power
  const float tighter = tight * tight * tight * tight;
  float light = 0.28F * fourth + 0.30F * tight + 0.35F * tighter * tighter * tighter * tighter;
  if (sunRadius > 0) {
    const float edge = std::cos(sunRadius);
    light += 1.4F * smoothstep(edge, edge + (1 - edge) * 0.25F, towards);
  }
  return plain + glow * light;
}

void paintSky(Canvas& canvas, const Camera& camera, const Sky& sky) {
  canvas.paint([&](int x, int y, Rgb& colour) { colour = sky.colour(camera.direction(canvas, x, y)); });
}

namespace {

float cloudDensity(Vec3 direction, const Clouds& clouds) {
  // A flat layer overhead, seen in perspective.
  const float scale = 0.55F / ((direction.y + 0.06F) * clouds.size);
  const float x = direction.x * scale, z = direction.z * scale;
  const float warp = fractalNoise(x * 0.7F, z * 0.7F, 3, clouds.seed + 20);
  const float body = fractalNoise(x + warp, z * 1.6F + warp, 6, clouds.seed) + 0.5F;
  const float threshold = 1 - clouds.amount;
  return smoothstep(threshold, threshold + 0.38F, body) * smoothstep(0.0F, 0.07F, direction.y);
}

}  // namespace

void paintClouds(Canvas& canvas, const Camera& camera, const Sky& sky, const Clouds& clouds) {
  const auto sample = [&](int x, int y) {
    const Vec3 direction = camera.direction(canvas, x, y);
    const float here = cloudDensity(direction, clouds);
    if (here <= 0) return Rgb{};
    const float sunward = cloudDensity(normalized(direction + sky.sun * 0.05F), clouds);
    const float light = clamp01(0.55F + 1.2F * (here - sunward) + 0.5F * (1 - here));
    const float towards = std::max(dot(direction, sky.sun), 0.0F);
    const float silver = std::pow(towards, 24.0F) * (1 - here) * 0.8F;  // thin edges before the sun
    return Rgb{here, light, silver};
  };
  canvas.paintSoftly(
      3, static_cast<int>(camera.horizonRow(canvas)), sample, [&](int, int, Rgb& colour, Rgb cloud) {
        colour = mix(colour, mix(clouds.shaded, clouds.lit, cloud.g) + sky.glow * cloud.b, cloud.r * 0.92F);
      });
}

void paintStars(Canvas& canvas, int toRow, int crowd, std::uint32_t seed) {
  const auto width = static_cast<float>(canvas.width()), height = static_cast<float>(canvas.height());
  const int count = static_cast<int>(static_cast<float>(crowd) * width / height);
  for (int star = 0; star < count; ++star) {
    const float x = scatter(star, 0, seed) * width, y = scatter(star, 1, seed) * height;
    if (y > static_cast<float>(toRow)) continue;
    const float magnitude = scatter(star, 2, seed);
    const float rare = magnitude * magnitude * magnitude * magnitude;
    const float brightness = 0.10F + 0.35F * magnitude * magnitude + 0.9F * rare * rare * rare;
    const float warmth = scatter(star, 3, seed);
    const float haze = smoothstep(0, 0.25F, 1 - y / static_cast<float>(toRow));
    const Rgb tint = mix(hex(0xFFE3C4), hex(0xC4D9FF), warmth);
    canvas.addGlow(x, y, height / 2133 * (0.8F + 1.3F * rare * rare), tint * (brightness * haze));
    if (rare > 0.97F) canvas.addGlow(x, y, height / 2133 * 9, tint * (0.10F * haze));
  }
}

void paintMilkyWay(Canvas& canvas, int toRow, std::uint32_t seed) {
  const auto height = static_cast<float>(canvas.height()), width = static_cast<float>(canvas.width());
  const auto sample = [&](int x, int y) {
    const float u = (static_cast<float>(x) - width * 0.56F) / height,
                v = static_cast<float>(y) / height - 0.32F;
    const float along = u * 0.62F - v * 0.78F, across = u * 0.78F + v * 0.62F;
    const float wander = across + 0.05F * fractalNoise(along * 2, 7, 3, seed);
    const float band = std::exp(-wander * wander * 26);
    if (band < 0.01F) return Rgb{};
    const float cloud = fractalNoise(along * 4, across * 7, 6, seed + 3) + 0.5F;
    const float dust =
        smoothstep(0.42F, 0.75F, fractalNoise(along * 3 + 9, across * 9, 6, seed + 11) + 0.52F) *
        std::exp(-wander * wander * 160);
    const float core = std::exp(-along * along * 5) * std::exp(-wander * wander * 70);
    const float light = band * (0.20F + 0.55F * cloud) * (1 - 0.8F * dust);
    const float haze = smoothstep(0, 0.35F, 1 - static_cast<float>(y) / static_cast<float>(toRow));
    return mix(hex(0x7F93C8), hex(0xE9C9A0), core) * (light * haze * (0.42F + 0.5F * core));
  };
  canvas.paintSoftly(2, toRow, sample, [](int, int, Rgb& colour, Rgb light) { colour = colour + light; });
}

void paintAurora(Canvas& canvas, float footRow, std::uint32_t seed) {
  const auto height = static_cast<float>(canvas.height());
  for (int curtain = 0; curtain < 3; ++curtain) {
    const auto number = static_cast<float>(curtain);
    const std::uint32_t own = seed + static_cast<std::uint32_t>(curtain) * 50;
    const float reach = (0.34F - 0.05F * number) * height;  // how far the rays rise
    for (int x = 0; x < canvas.width(); ++x) {
      const float u = static_cast<float>(x) / height;
      const float fold = fractalNoise(u * 1.7F + 5 * number, 0.3F, 4, own);
      const float foot =
          footRow - (0.17F + 0.12F * number) * height + (0.16F + 0.05F * number) * height * fold;
      const float rays = 0.35F + 0.65F * clamp01(0.5F + fractalNoise(u * 26 + fold * 14, number, 4, own + 9));
      const float strength = rays *
                             smoothstep(-0.45F, 0.35F, fractalNoise(u * 0.9F + number * 3, 2, 2, own + 17)) *
                             (1 - 0.22F * number);
      const float length = reach * (0.5F + 0.9F * rays);
      for (int y = 0; y < static_cast<int>(footRow); ++y) {
        const float above = (foot - static_cast<float>(y)) / length;
        const float light = above < 0 ? std::exp(-above * above * 90) : std::exp(-above * 2.1F);
        if (light < 0.004F) continue;
        const Rgb tint = mix(mix(hex(0x3DFFA2), hex(0x2FD3B4), smoothstep(0.05F, 0.5F, above)), hex(0x9A4DDB),
                             smoothstep(0.45F, 1.5F, above));
        Rgb& colour = canvas.at(x, y);
        colour = colour + tint * (light * strength * 0.95F);
      }
    }
  }
}

void paintWater(Canvas& canvas, const Water& water) {
  const auto height = static_cast<float>(canvas.height());
  const int first = static_cast<int>(water.row);
  canvas.paintRows(first, canvas.height(), [&](int x, int y, Rgb& colour) {
    const float below = (static_cast<float>(y) - water.row + 1) / height;
    const float distance = 0.05F / (below + 0.004F);  // of the water seen there
    const float u = (static_cast<float>(x) - static_cast<float>(canvas.width()) / 2) / height * distance * 9;
    const float v = distance * 60;
    const float wave = fractalNoise(u, v, 3, water.seed) + 0.5F * noise(u * 0.2F, v * 0.25F, water.seed + 5);
    const float sway = water.roughness * wave * height * (0.004F + 0.05F * below);
    const float mirrored = 2 * water.row - static_cast<float>(y) + sway * 1.6F;
    const Rgb seen = canvas.clamped(x + static_cast<int>(sway * 0.35F),
                                    std::clamp(static_cast<int>(mirrored), 0, first - 1));
    const float facing = 0.30F * smoothstep(0, 0.55F, below) + 0.05F;  // steeper looks see into the water
    colour = mix(seen * water.tint, water.depth, facing) * (1 + 0.10F * water.roughness * wave);
  });
}

}  // namespace lumivane::demo
