#include "imaging/decode/RowShrinker.h"

#include <gtest/gtest.h>

#include <cmath>

#include "imaging/decode/PictureWriter.h"

namespace lumivane {
namespace {

using Pixels = std::vector<std::uint8_t>;
using Painter = std::function<void(int x, int y, std::uint8_t* rgba)>;

Pixels shrunk(SizePx from, SizePx to, const Painter& paint) {
  Pixels result(static_cast<std::size_t>(to.width) * static_cast<std::size_t>(to.height) * 4, 77);
  int rows = 0;
  RowShrinker shrinker(from, to, [&](int y) {
    EXPECT_EQ(y, rows++);
    return result.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(to.width) * 4;
  });
  Pixels row(static_cast<std::size_t>(from.width) * 4);
  for (int y = 0; y < from.height; ++y) {
    for (int x = 0; x < from.width; ++x) paint(x, y, &row[static_cast<std::size_t>(x) * 4]);
    shrinker.add(row.data());
  }
  EXPECT_EQ(rows, to.height);
  return result;
}

TEST(RowShrinker, even_area_keeps_its_colour_to_the_edges) {
  for (const auto& [from, to] : {std::pair{SizePx{100, 80}, SizePx{99, 79}},
                                 {SizePx{100, 80}, SizePx{33, 27}},
                                 {SizePx{1000, 3}, SizePx{7, 1}},
                                 {SizePx{1, 50}, SizePx{1, 20}},
                                 {SizePx{13, 13}, SizePx{1, 1}},
                                 {SizePx{64, 64}, SizePx{32, 32}}}) {
    const Pixels result =
        shrunk(from, to, [](int, int, std::uint8_t* p) { p[0] = 200, p[1] = 3, p[2] = 255, p[3] = 255; });
    for (std::size_t i = 0; i < result.size(); i += 4) {
      ASSERT_EQ(result[i], 200);
      ASSERT_EQ(result[i + 1], 3);
      ASSERT_EQ(result[i + 2], 255);
      ASSERT_EQ(result[i + 3], 255);
    }
  }
}

TEST(RowShrinker, ramp_stays_where_it_was) {
  const SizePx from{300, 200};
  for (const SizePx to : {SizePx{299, 199}, SizePx{200, 133}, SizePx{100, 66}, SizePx{37, 25}}) {
    const Pixels result = shrunk(from, to, [](int x, int y, std::uint8_t* p) {
      p[0] = static_cast<std::uint8_t>(x * 200 / 300 + 20);
      p[1] = static_cast<std::uint8_t>(y + 20);
      p[2] = 0;
      p[3] = 255;
    });
    for (int y = 2; y < to.height - 2; ++y) {
      for (int x = 2; x < to.width - 2; ++x) {
        const std::uint8_t* p = &result[static_cast<std::size_t>((y * to.width + x) * 4)];
        ASSERT_NEAR(p[0], (x + 0.5) * 200 / to.width + 19.5, 2.5);
        ASSERT_NEAR(p[1], (y + 0.5) * 200 / to.height + 19.5, 2.5);
      }
    }
  }
}

TEST(RowShrinker, finest_lines_turn_grey_instead_of_beating) {
  const Pixels result = shrunk({4000, 40}, {1000, 10}, [](int x, int, std::uint8_t* p) {
    p[0] = p[1] = p[2] = x % 2 == 0 ? 0 : 255;
    p[3] = 255;
  });
  for (std::size_t i = 0; i < result.size(); i += 4) ASSERT_NEAR(result[i], 128, 3);
}

TEST(RowShrinker, colours_stay_below_their_alpha) {
  const Pixels result = shrunk({90, 90}, {61, 61}, [](int x, int y, std::uint8_t* p) {
    const std::uint8_t alpha = (x / 7 + y / 5) % 2 == 0 ? 0 : 128;
    p[0] = alpha, p[1] = alpha, p[2] = 0, p[3] = alpha;
  });
  for (std::size_t i = 0; i < result.size(); i += 4) {
    ASSERT_LE(result[i], result[i + 3]);
    ASSERT_LE(result[i + 1], result[i + 3]);
  }
}

TEST(FittingSize, only_the_longer_side_counts) {
  EXPECT_EQ(fittingSize({8192, 100}, 8192), (SizePx{8192, 100}));
  EXPECT_EQ(fittingSize({8193, 100}, 8192), (SizePx{8192, 100}));
  EXPECT_EQ(fittingSize({20000, 14000}, 8192), (SizePx{8192, 5734}));
  EXPECT_EQ(fittingSize({100, 16384}, 8192), (SizePx{50, 8192}));
  EXPECT_EQ(fittingSize({1, 60000}, 8192), (SizePx{1, 8192}));
  EXPECT_EQ(fittingSize({10, 10}, 8192), (SizePx{10, 10}));
}

}  // namespace
}  // namespace lumivane
