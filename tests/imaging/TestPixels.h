// Pictures as tests look at them: as seen (turned), in floating point, on black.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "compositor/model/Bitmap.h"

namespace lumivane {

struct TestPixels {
  int width = 0;
  int height = 0;
  std::vector<float> rgb;  // 0..255, three a pixel

  [[nodiscard]] const float* at(int x, int y) const {
    return &rgb[static_cast<std::size_t>((y * width + x) * 3)];
  }
};

// Level 0 of a bitmap, turned by its orientation.
[[nodiscard]] TestPixels asSeen(const Bitmap& bitmap);

// Any picture file that libvips reads, on black.
[[nodiscard]] TestPixels readOnBlack(const std::filesystem::path& path);

// The same of a file whose colours are multiplied by their alpha already.
[[nodiscard]] TestPixels readMultipliedOnBlack(const std::filesystem::path& path);

// The mean of the area that each pixel of the smaller picture covers.
[[nodiscard]] TestPixels areaShrunk(const TestPixels& pixels, int width, int height);

// ... so that it fits a square, never enlarged.
[[nodiscard]] TestPixels areaShrunkToFit(const TestPixels& pixels, int side);

// Mean absolute difference per channel; 255 when the sizes differ.
[[nodiscard]] double meanDifference(const TestPixels& a, const TestPixels& b);

}  // namespace lumivane
