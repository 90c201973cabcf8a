#include "tests/imaging/TestPixels.h"
#include "tests/support/LevelPixels.h"

#include <vips/vips8>

#include <algorithm>
#include <cmath>

namespace lumivane {

namespace {

// Where the pixel seen at (x, y) is stored.
std::pair<int, int> storedPlace(int x, int y, SizePx stored, int orientation) {
  const int right = stored.width - 1;
  const int bottom = stored.height - 1;
  switch (orientation) {
    case 2:
      return {right - x, y};
    case 3:
      return {right - x, bottom - y};
    case 4:
      return {x, bottom - y};
    case 5:
      return {y, x};
    case 6:
      return {y, bottom - x};
    case 7:
      return {right - y, bottom - x};
    case 8:
      return {right - y, x};
    default:
      return {x, y};
  }
}

struct Weight {
  int index;
  float weight;
};

// The box filter of the tool that made the golden thumbnails: all pixels whose centre lies under the box count alike.
std::vector<std::vector<Weight>> coverage(int from, int to) {
  std::vector<std::vector<Weight>> all(static_cast<std::size_t>(to));
  const double ratio = static_cast<double>(from) / to;
  for (int i = 0; i < to; ++i) {
    const int start = std::max(0, static_cast<int>(std::lround(i * ratio)));
    const int end = std::clamp(static_cast<int>(std::lround((i + 1) * ratio)), start + 1, from);
    for (int k = start; k < end; ++k) {
      all[static_cast<std::size_t>(i)].push_back({k, 1.0F / static_cast<float>(end - start)});
    }
  }
  return all;
}

TestPixels fromVips(const vips::VImage& image) {
  std::size_t bytes = 0;
  auto* memory = static_cast<float*>(image.cast(VIPS_FORMAT_FLOAT).write_to_memory(&bytes));
  TestPixels pixels{image.width(), image.height(),
                    std::vector<float>(memory, memory + bytes / sizeof(float))};
  g_free(memory);
  return pixels;
}

}  // namespace

TestPixels asSeen(const Bitmap& bitmap) {
  const SizePx seen = bitmap.displaySize();
  const std::vector<std::byte> bytes = levelPixels(bitmap, 0);
  TestPixels pixels{seen.width, seen.height, {}};
  pixels.rgb.reserve(static_cast<std::size_t>(seen.width) * static_cast<std::size_t>(seen.height) * 3);
  for (int y = 0; y < seen.height; ++y) {
    for (int x = 0; x < seen.width; ++x) {
      const auto [sx, sy] = storedPlace(x, y, bitmap.storedSize(), bitmap.orientation());
      const std::size_t at =
          (static_cast<std::size_t>(sy) * static_cast<std::size_t>(bitmap.storedSize().width) +
           static_cast<std::size_t>(sx)) *
          4;
      for (std::size_t c = 0; c < 3; ++c) pixels.rgb.push_back(std::to_integer<std::uint8_t>(bytes[at + c]));
    }
  }
  return pixels;
}

TestPixels readOnBlack(const std::filesystem::path& path) {
  vips::VImage image = vips::VImage::new_from_file(path.c_str()).colourspace(VIPS_INTERPRETATION_sRGB);
  return fromVips(image.has_alpha() ? image.flatten() : image);
}

TestPixels readMultipliedOnBlack(const std::filesystem::path& path) {
  return fromVips(vips::VImage::new_from_file(path.c_str())
                      .colourspace(VIPS_INTERPRETATION_sRGB)
                      .extract_band(0, vips::VImage::option()->set("n", 3)));
}

TestPixels areaShrunk(const TestPixels& pixels, int width, int height) {
  const auto columns = coverage(pixels.width, width);
  const auto rows = coverage(pixels.height, height);
  std::vector<float> across(static_cast<std::size_t>(width * pixels.height * 3));
  for (int y = 0; y < pixels.height; ++y) {
    for (int x = 0; x < width; ++x) {
      float* out = &across[static_cast<std::size_t>((y * width + x) * 3)];
      for (const Weight& w : columns[static_cast<std::size_t>(x)]) {
        for (int c = 0; c < 3; ++c) out[c] += w.weight * pixels.at(w.index, y)[c];
      }
    }
  }
  TestPixels result{width, height, std::vector<float>(static_cast<std::size_t>(width * height * 3))};
  for (int y = 0; y < height; ++y) {
    for (const Weight& w : rows[static_cast<std::size_t>(y)]) {
      for (int i = 0; i < width * 3; ++i) {
        result.rgb[static_cast<std::size_t>(y * width * 3 + i)] +=
            w.weight * across[static_cast<std::size_t>(w.index * width * 3 + i)];
      }
    }
  }
  return result;
}

TestPixels areaShrunkToFit(const TestPixels& pixels, int side) {
  const double scale =
      std::min({static_cast<double>(side) / pixels.width, static_cast<double>(side) / pixels.height, 1.0});
  const auto scaled = [scale](int length) {
    return std::max(1, static_cast<int>(std::nearbyint(length * scale)));
  };
  return areaShrunk(pixels, scaled(pixels.width), scaled(pixels.height));
}

double meanDifference(const TestPixels& a, const TestPixels& b) {
  if (a.width != b.width || a.height != b.height || a.rgb.size() != b.rgb.size() || a.rgb.empty()) return 255;
  double sum = 0;
  for (std::size_t i = 0; i < a.rgb.size(); ++i) sum += std::abs(a.rgb[i] - b.rgb[i]);
  return sum / static_cast<double>(a.rgb.size());
}

}  // namespace lumivane
