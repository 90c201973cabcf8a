#include "compositor/model/PlanarRows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>

#include "tests/support/LevelPixels.h"

namespace lumivane {
namespace {

constexpr SizePx kSize{77, 69};  // odd sides, so that everything at the edges counts

// A picture in planes whose samples are wild, which is the hardest for every rounding.
struct PlanarPicture {
  explicit PlanarPicture(Chroma chroma, SizePx size = kSize) : layout(packedPlanes(size, chroma)) {
    pixels.resize(layout.bytes);
    std::minstd_rand random(7);
    for (std::byte& byte : pixels) byte = static_cast<std::byte>(random() >> 8);
  }
  [[nodiscard]] double sample(const Plane& plane, int x, int y) const {
    const SizePx size = plane.size;
    const auto row = static_cast<std::size_t>(std::clamp(y, 0, size.height - 1));
    const auto column = static_cast<std::size_t>(std::clamp(x, 0, size.width - 1));
    return std::to_integer<int>(pixels[plane.offsetBytes + row * plane.strideBytes + column]);
  }
  // The colour at a pixel of the full size: 3/4 of the nearer sample and 1/4 of the farther one along each halved side.
  [[nodiscard]] double colour(const Plane& plane, int x, int y) const {
    const bool halfWidth = chromaColumns(layout.chroma) == 2;
    const bool halfHeight = chromaRows(layout.chroma) == 2;
    const auto alongRow = [&](int row) {
      if (!halfWidth) return sample(plane, x, row);
      return 0.75 * sample(plane, x / 2, row) + 0.25 * sample(plane, x / 2 + (x % 2 == 0 ? -1 : 1), row);
    };
    if (!halfHeight) return alongRow(y);
    return 0.75 * alongRow(y / 2) + 0.25 * alongRow(y / 2 + (y % 2 == 0 ? -1 : 1));
  }
  // Mean of the samples that lie under a pixel of a mip level.
  [[nodiscard]] double mean(const Plane& plane, int columns, int rows, int x, int y) const {
    double sum = 0;
    for (int j = 0; j < rows; ++j) {
      for (int i = 0; i < columns; ++i) sum += sample(plane, x * columns + i, y * rows + j);
    }
    return sum / (columns * rows);
  }

  PlanarLayout layout;
  std::vector<std::byte> pixels;
};

std::array<double, 3> rgb(double y, double cb, double cr) {
  const auto clamped = [](double value) { return std::clamp(value, 0.0, 255.0); };
  return {clamped(y + 1.402 * (cr - 128)), clamped(y - 0.344136 * (cb - 128) - 0.714136 * (cr - 128)),
          clamped(y + 1.772 * (cb - 128))};
}

// The most that a channel of a level is off, compared with exact arithmetic.
double worstError(const PlanarPicture& picture, std::size_t level) {
  const PlanarLayout& layout = picture.layout;
  const SizePx size = layout.levels[level].size;
  const int side = 1 << level;
  PlanarRows rows(layout, picture.pixels);
  std::vector<std::byte> row(static_cast<std::size_t>(size.width) * 4);
  double worst = 0;
  for (int y = 0; y < size.height; ++y) {
    rows.make(level, y, row.data());
    for (int x = 0; x < size.width; ++x) {
      const auto of = [&](const Plane& plane) {
        if (layout.chroma == Chroma::None) return 128.0;
        if (level == 0) return picture.colour(plane, x, y);
        return picture.mean(plane, side / chromaColumns(layout.chroma), side / chromaRows(layout.chroma), x,
                            y);
      };
      const auto wanted = rgb(picture.mean(layout.luma, side, side, x, y), of(layout.blue), of(layout.red));
      const std::size_t at = static_cast<std::size_t>(x) * 4;
      for (std::size_t c = 0; c < 3; ++c)
        worst = std::max(worst, std::abs(std::to_integer<int>(row[at + c]) - wanted[c]));
      EXPECT_EQ(row[at + 3], std::byte{255});
    }
  }
  return worst;
}

class PlanarRowsTest : public testing::TestWithParam<Chroma> {};

// Samples, means and channels are rounded in turn; the factor of blue is the largest.
TEST_P(PlanarRowsTest, every_level_is_right_but_for_rounding) {
  const PlanarPicture picture(GetParam());
  for (std::size_t level = 0; level <= kFirstStoredLevel; ++level)
    EXPECT_LE(worstError(picture, level), 0.5 + 1.772 * 0.5 + 0.75) << "level " << level;
}

TEST_P(PlanarRowsTest, grey_and_the_extremes_are_exact) {
  for (const int value : {0, 1, 127, 128, 254, 255}) {
    PlanarPicture picture(GetParam());
    std::fill(picture.pixels.begin(), picture.pixels.end(), std::byte{128});
    const Plane& luma = picture.layout.luma;
    std::fill_n(picture.pixels.begin() + static_cast<std::ptrdiff_t>(luma.offsetBytes),
                luma.strideBytes * static_cast<std::size_t>(luma.size.height), static_cast<std::byte>(value));
    PlanarRows rows(picture.layout, picture.pixels);
    std::vector<std::byte> row(static_cast<std::size_t>(kSize.width) * 4);
    for (std::size_t level = 0; level <= kFirstStoredLevel; ++level) {
      rows.make(level, 0, row.data());
      for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(std::to_integer<int>(row[c]), value) << level;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Forms, PlanarRowsTest,
                         testing::Values(Chroma::None, Chroma::Full, Chroma::HalfWidth, Chroma::HalfHeight,
                                         Chroma::Half));

TEST(PlanarLayoutTest, planes_and_levels_lie_one_after_the_other) {
  const PlanarLayout layout = packedPlanes({100, 70}, Chroma::Half);
  EXPECT_EQ(layout.luma.strideBytes, 104U);
  EXPECT_EQ(layout.blue.size, (SizePx{50, 35}));
  EXPECT_EQ(layout.blue.strideBytes, 56U);
  EXPECT_GE(layout.blue.offsetBytes, layout.luma.strideBytes * 70);
  EXPECT_GE(layout.red.offsetBytes, layout.blue.offsetBytes + layout.blue.strideBytes * 35);
  ASSERT_EQ(layout.levels.size(), 7U);
  for (std::size_t level = 0; level < kFirstStoredLevel; ++level)
    EXPECT_EQ(layout.levels[level].strideBytes, 0U);
  EXPECT_EQ(layout.levels[3].size, (SizePx{12, 8}));
  EXPECT_GE(layout.levels[3].offsetBytes, layout.red.offsetBytes + layout.red.strideBytes * 35);
  EXPECT_EQ(layout.levels[6].offsetBytes + 4, layout.bytes);
}

TEST(PlanarLayoutTest, a_photograph_takes_less_than_1_6_bytes_a_pixel) {
  EXPECT_LT(static_cast<double>(packedPlanes({6000, 4000}, Chroma::Half).bytes) / 24e6, 1.6);
}

TEST(BitmapRowsTest, rows_come_from_planes_and_from_memory_alike) {
  const PlanarPicture picture(Chroma::Half);
  PixelBuffer pixels = PixelBuffer::allocate(picture.pixels.size());
  std::copy(picture.pixels.begin(), picture.pixels.end(), pixels.bytes().begin());
  const Bitmap bitmap(std::move(pixels), picture.layout, 6);
  EXPECT_EQ(bitmap.storedSize(), kSize);
  EXPECT_EQ(bitmap.displaySize(), (SizePx{kSize.height, kSize.width}));
  EXPECT_TRUE(bitmap.opaque());
  EXPECT_FALSE(bitmap.isStored(2));
  EXPECT_TRUE(bitmap.isStored(3));
  BitmapRows rows(bitmap);
  PlanarRows made(picture.layout, picture.pixels);
  std::vector<std::byte> row(static_cast<std::size_t>(kSize.width) * 4);
  const RgbaRows three = rows.read(0, 5, 3);
  for (int i = 0; i < 3; ++i) {
    made.make(0, 5 + i, row.data());
    EXPECT_TRUE(
        std::equal(row.begin(), row.end(), three.first + static_cast<std::size_t>(i) * three.strideBytes));
  }
  const RgbaRows stored = rows.read(3, 2, 1);
  const BitmapLevel& level = bitmap.levels()[3];
  EXPECT_EQ(stored.first, bitmap.levelBytes(3).data() + 2 * level.strideBytes);
}

}  // namespace
}  // namespace lumivane
