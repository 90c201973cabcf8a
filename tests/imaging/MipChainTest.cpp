#include "imaging/decode/MipChain.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace lumivane {
namespace {

std::vector<std::byte> randomBytes(std::size_t count) {
  std::mt19937 random(7);
  std::vector<std::byte> bytes(count);
  for (std::byte& byte : bytes) byte = static_cast<std::byte>(random());
  return bytes;
}

int value(const std::vector<std::byte>& pixels, const BitmapLevel& level, int x, int y, int channel) {
  return std::to_integer<int>(pixels[level.offsetBytes + static_cast<std::size_t>(y) * level.strideBytes +
                                     static_cast<std::size_t>(x * 4 + channel)]);
}

// Every pixel of every level against the definition.
void expectMeans(const std::vector<std::byte>& pixels, const std::vector<BitmapLevel>& levels) {
  for (std::size_t i = 1; i < levels.size(); ++i) {
    const BitmapLevel& from = levels[i - 1];
    const int across = from.size.width > 1 ? 2 : 1;
    const int down = from.size.height > 1 ? 2 : 1;
    for (int y = 0; y < levels[i].size.height; ++y) {
      for (int x = 0; x < levels[i].size.width; ++x) {
        for (int c = 0; c < 4; ++c) {
          int sum = 0;
          for (int k = 0; k < across * down; ++k) {
            sum += value(pixels, from, x * across + k % across, y * down + k / across, c);
          }
          const int count = across * down;
          ASSERT_EQ(value(pixels, levels[i], x, y, c), (2 * sum + count) / (2 * count))
              << "level " << i << " at " << x << ", " << y;
        }
      }
    }
  }
}

TEST(MipChain, every_level_is_the_mean_of_the_one_above) {
  for (const SizePx size : {SizePx{64, 32}, SizePx{33, 17}, SizePx{7, 5}, SizePx{1, 1}, SizePx{1, 9},
                            SizePx{9, 1}, SizePx{2, 2}, SizePx{3, 100}, SizePx{101, 2}}) {
    SCOPED_TRACE(testing::Message() << size.width << " x " << size.height);
    const auto levels = packedLevels(size);
    std::vector<std::byte> pixels = randomBytes(packedLevelsBytes(size));
    buildMipChain(pixels, levels);
    expectMeans(pixels, levels);
  }
}

TEST(MipChain, leaves_the_full_size_alone) {
  const SizePx size{13, 11};
  const auto before = randomBytes(packedLevelsBytes(size));
  auto after = before;
  buildMipChain(after, packedLevels(size));
  const std::size_t full = packedLevels(size)[1].offsetBytes;
  EXPECT_TRUE(std::equal(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(full), after.begin()));
}

TEST(MipChain, fast_form_equals_the_plain_one) {
  for (std::size_t width = 1; width < 40; ++width) {
    const auto upper = randomBytes(width * 8);
    auto lower = upper;
    std::reverse(lower.begin(), lower.end());
    std::vector<std::byte> fast(width * 4), plain(width * 4);
    halveRowPair(upper.data(), lower.data(), fast.data(), width);
    halveRowPairPlainly(upper.data(), lower.data(), plain.data(), width);
    EXPECT_EQ(fast, plain) << width;
  }
}

TEST(MipChain, means_are_rounded_half_up) {
  std::vector<std::byte> pixels(packedLevelsBytes({2, 2}));
  pixels[0] = pixels[4] = std::byte{1};  // red: 1, 1, 0, 0
  pixels[1] = std::byte{1};              // green: 1, 0, 0, 0
  buildMipChain(pixels, packedLevels({2, 2}));
  EXPECT_EQ(pixels[16], std::byte{1});
  EXPECT_EQ(pixels[17], std::byte{0});
}

}  // namespace
}  // namespace lumivane
