#include <array>

#include "tools/demo-pictures/DemoPictures.h"
#include "tools/demo-pictures/Noise.h"

namespace lumivane::demo {
namespace {

// From one height to another in one column, with smooth ends.
void fillColumn(Canvas& canvas, int x, float from, float to, Rgb colour) {
  if (x < 0 || x >= canvas.width()) return;
  const int first = std::max(static_cast<int>(from), 0),
            last = std::min(static_cast<int>(to), canvas.height() - 1);
  for (int y = first; y <= last; ++y) {
    const auto row = static_cast<float>(y);
    const float cover = std::min(row + 1, to) - std::max(row, from);
    canvas.at(x, y) = mix(canvas.at(x, y), colour, clamp01(cover));
  }
}

// A branch leaves the trunk at a place, sinks outwards, and its twigs hang down from it.
void paintBranch(Canvas& canvas, float x, float y, float length, float side, Rgb colour, std::uint32_t seed) {
  for (float way = 0; way < length; way += 1) {
    const float t = way / length;
    const float top = y + length * (0.18F * t + 0.30F * t * t);
    const float twigs = 0.55F + 0.9F * scatter(static_cast<int>(way * 0.7F), 5, seed);
    fillColumn(canvas, static_cast<int>(x + side * way), top, top + length * 0.30F * twigs * std::sqrt(1 - t),
               colour);
  }
}

void paintConifer(Canvas& canvas, float x, float foot, float height, Rgb colour, std::uint32_t seed) {
  const float reach = height * (0.17F + 0.05F * scatter(1, 2, seed));
  for (int dx = -static_cast<int>(height * 0.008F); dx <= static_cast<int>(height * 0.008F); ++dx) {
    const float slimming = std::fabs(static_cast<float>(dx)) * 50;
    fillColumn(canvas, static_cast<int>(x) + dx, foot - height + slimming, foot, colour);
  }
  constexpr int kBranches = 64;
  for (int branch = 1; branch < kBranches; ++branch) {
    const float down = (static_cast<float>(branch) + scatter(branch, 0, seed)) / kBranches;
    const float length = reach * std::pow(down, 0.85F) * (0.62F + 0.50F * scatter(branch, 1, seed));
    const float side = branch % 2 == 0 ? 1.0F : -1.0F;
    paintBranch(canvas, x, foot - height * (1 - 0.97F * down), length, side, colour,
                seed + static_cast<std::uint32_t>(branch) * 7);
  }
}

}  // namespace

void paintForestInFog(Canvas& canvas) {
  const auto width = static_cast<float>(canvas.width()), height = static_cast<float>(canvas.height());
  const Rgb fog = hex(0xC9D6D6), light = hex(0xF6EBD2), dark = hex(0x0F2326);
  canvas.paint([&](int x, int y, Rgb& colour) {
    const float u = static_cast<float>(x) / width - 0.62F, v = static_cast<float>(y) / height - 0.20F;
    const float sun = std::exp(-(u * u * 3 + v * v * 6));
    const float drift = 0.06F * fractalNoise(u * 2, v * 5, 4, 70);
    colour = mix(mix(fog, hex(0x9FB4B8), clamp01(v)), light, clamp01(sun + drift));
  });
  constexpr int kLayers = 8;
  for (int layer = 0; layer < kLayers; ++layer) {
    const auto number = static_cast<float>(layer);
    const float near = number / (kLayers - 1);
    const auto seed = static_cast<std::uint32_t>(1000 * (layer + 1));
    const int trees = static_cast<int>(mix(70, 9, std::sqrt(near)));
    const Rgb colour = mix(mix(fog, light, 0.25F), dark, 0.10F + 0.86F * near * near);
    for (int tree = 0; tree < trees; ++tree) {
      const float x = width * ((static_cast<float>(tree) + scatter(tree, 0, seed) * 1.6F - 0.3F) /
                               static_cast<float>(trees));
      const float ground =
          height * (0.36F + 0.70F * near) + 0.07F * height * fractalNoise(x / width * 2, number, 3, 71);
      const float size = height * mix(0.13F, 0.62F, near) * (0.6F + 0.5F * scatter(tree, 1, seed));
      paintConifer(canvas, x, ground + 0.06F * height, size, colour, seed + static_cast<std::uint32_t>(tree));
    }
    // Fog lies between this row of trees and the next.
    const float fogTop = height * (0.22F + 0.68F * near);
    const auto fogAt = [&](int x, int y) {
      const float wisps = 0.5F + 0.9F * fractalNoise(static_cast<float>(x) / width * 3,
                                                     static_cast<float>(y) / height * 9, 3, seed);
      const float thick = smoothstep(0, 0.30F * height, static_cast<float>(y) - fogTop) * clamp01(wisps);
      return Rgb{thick * 0.62F * (1 - near), 0, 0};
    };
    canvas.paintSoftly(8, canvas.height(), fogAt, [&](int, int, Rgb& pixel, Rgb thickness) {
      pixel = mix(pixel, mix(fog, light, 0.3F), thickness.r);
    });
  }
  canvas.vignette(0.25F);
}

void paintSilk(Canvas& canvas) {
  const auto height = static_cast<float>(canvas.height());
  const auto fold = [](float u, float v) {
    const float a = fractalNoise(u * 0.9F, v * 0.9F, 2, 11),
                b = fractalNoise(u * 0.9F + 5, v * 0.9F + 3, 2, 12);
    return std::sin(5.5F * (u * 0.55F + v * 0.9F + 1.5F * a) + 3 * noise(u + 2 * b, v + 2 * a, 13));
  };
  const Vec3 lamp = normalized({-0.5F, 0.75F, -0.45F});
  const auto clothAt = [&](int x, int y) {
    const float u = static_cast<float>(x) / height, v = static_cast<float>(y) / height;
    constexpr float kReach = 0.004F;
    const float here = fold(u, v);
    const float slopeX = (here - fold(u + kReach, v)) / kReach,
                slopeY = (here - fold(u, v + kReach)) / kReach;
    const Vec3 normal = normalized({slopeX * 0.09F, 1, slopeY * 0.09F});
    const float light = clamp01(dot(normal, lamp));
    const float gleam = std::pow(clamp01(dot(normalized(lamp + Vec3{0, 1, 0}), normal)), 26.0F);
    const Rgb cloth = mix(hex(0x14296B), hex(0xB0306A), smoothstep(0.1F, 1.4F, u + 0.25F * here));
    const Rgb warm = mix(cloth, hex(0xF08A4B), smoothstep(0.9F, 1.9F, u + 0.4F * v + 0.15F * here));
    return warm * (0.22F + 0.95F * light) + hex(0xFFDCC8) * (0.38F * gleam);
  };
  canvas.paintSoftly(2, canvas.height(), clothAt, [](int, int, Rgb& colour, Rgb cloth) { colour = cloth; });
  canvas.vignette(0.25F);
}

namespace {

// The upper edge of a sheet of paper, one row for each column.
std::vector<float> cutEdge(const Canvas& canvas, float sheet) {
  const auto height = static_cast<float>(canvas.height());
  std::vector<float> edge(static_cast<std::size_t>(canvas.width()));
  for (std::size_t x = 0; x < edge.size(); ++x) {
    const float u = static_cast<float>(x) / height;
    const float wave = fractalNoise(u * (0.7F + 0.12F * sheet) + 3 * sheet, sheet, 3, 140);
    edge[x] = height * (0.14F + 0.105F * sheet) + height * 0.30F * wave;
  }
  return edge;
}

void paintPaperSun(Canvas& canvas) {
  const auto height = static_cast<float>(canvas.height()), width = static_cast<float>(canvas.width());
  canvas.paint([&](int x, int y, Rgb& colour) {
    const float dx = static_cast<float>(x) - width * 0.64F, dy = static_cast<float>(y) - height * 0.30F;
    const float distance = std::sqrt(dx * dx + dy * dy) - height * 0.145F;
    if (distance > 0.2F * height) return;
    colour =
        colour *
        (1 - 0.28F * std::exp(-std::max(distance, 0.0F) / height * 60));  // its shadow on the sheet behind
    colour = mix(colour, hex(0xF2734B), clamp01(0.5F - distance));
  });
}

void layPaper(Canvas& canvas, const std::vector<float>& edge, Rgb paper) {
  const auto height = static_cast<float>(canvas.height());
  canvas.paint([&](int x, int y, Rgb& colour) {
    const float above = edge[static_cast<std::size_t>(x)] - static_cast<float>(y);  // > 0: not on this sheet
    if (above > 0.12F * height) return;
    if (above < -0.02F * height) {
      colour = paper;
      return;
    }
    const Rgb shadowed = colour * (1 - 0.42F * std::exp(-std::max(above, 0.0F) / height * 48));
    const float rim = 0.10F * std::exp(-std::max(-above, 0.0F) / height * 500);  // light on the cut
    colour = mix(shadowed, paper * (1 + rim), clamp01(0.5F - above));
  });
}

}  // namespace

void paintPaperHills(Canvas& canvas) {
  static constexpr std::array kPapers = {hex(0xFDF3DC), hex(0xF9DDB1), hex(0xF4B983), hex(0xE98A6B),
                                         hex(0xC75F66), hex(0x8E4468), hex(0x553263), hex(0x2A2150)};
  canvas.paint([&](int, int, Rgb& colour) { colour = kPapers[0]; });
  for (std::size_t sheet = 1; sheet < kPapers.size(); ++sheet) {
    if (sheet == 2) paintPaperSun(canvas);  // it stands between the first hill and the second
    layPaper(canvas, cutEdge(canvas, static_cast<float>(sheet)), kPapers[sheet]);
  }
  const float grain = 0.03F * 1920 / static_cast<float>(canvas.height());
  canvas.paint([&](int x, int y, Rgb& colour) {
    colour = colour *
             (1 + 0.04F * fractalNoise(static_cast<float>(x) * grain, static_cast<float>(y) * grain, 3, 200));
  });
  canvas.vignette(0.12F);
}

}  // namespace lumivane::demo
