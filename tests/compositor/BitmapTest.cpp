#include "compositor/model/Bitmap.h"

#include <gtest/gtest.h>

#include "tests/support/TestBitmaps.h"

namespace lumivane {
namespace {

TEST(PackedLevels, halveDownToOnePixelWithoutGaps) {
  const auto levels = packedLevels({7, 4});
  ASSERT_EQ(levels.size(), 3U);
  EXPECT_EQ(levels[0].size, (SizePx{7, 4}));
  EXPECT_EQ(levels[0].offsetBytes, 0U);
  EXPECT_EQ(levels[0].strideBytes, 28U);
  EXPECT_EQ(levels[1].size, (SizePx{3, 2}));
  EXPECT_EQ(levels[1].offsetBytes, 112U);
  EXPECT_EQ(levels[2].size, (SizePx{1, 1}));
  EXPECT_EQ(levels[2].offsetBytes, 136U);
  EXPECT_EQ(packedLevelsBytes({7, 4}), 140U);
}

TEST(PackedLevels, keepOnePixelOnTheShortSide) {
  const auto levels = packedLevels({8, 1});
  ASSERT_EQ(levels.size(), 4U);
  EXPECT_EQ(levels[1].size, (SizePx{4, 1}));
  EXPECT_EQ(levels[3].size, (SizePx{1, 1}));
}

TEST(PackedLevels, ofOnePixelAreOneLevel) {
  EXPECT_EQ(packedLevels({1, 1}).size(), 1U);
}

TEST(PackedLevels, countLargeBytesInFull) {
  // 60000 x 20000 pixels are more bytes than 32 bits hold.
  EXPECT_GT(packedLevelsBytes({60000, 20000}), std::size_t{4} * 60000 * 20000);
}

TEST(Bitmap, tellsItsSizesAndBytes) {
  const auto bitmap = makeBitmap(
      {4, 2}, [](int x, int y) { return Rgba{static_cast<std::uint8_t>(10 * x + y)}; }, 6);
  EXPECT_EQ(bitmap->storedSize(), (SizePx{4, 2}));
  EXPECT_EQ(bitmap->displaySize(), (SizePx{2, 4}));
  EXPECT_TRUE(bitmap->opaque());
  ASSERT_EQ(bitmap->levels().size(), 3U);
  EXPECT_EQ(bitmap->levelBytes(0).size(), 32U);
  EXPECT_EQ(bitmap->levelBytes(1).size(), 8U);
  EXPECT_EQ(bitmap->levelBytes(0)[4 * 4 + 3 * 4], std::byte{31});  // row 1, column 3
}

TEST(Bitmap, keepsWidthAndHeightForTheFirstFourCodes) {
  for (int code = 1; code <= 4; ++code)
    EXPECT_EQ(makeBitmap({4, 2}, Rgba{}, code)->displaySize(), (SizePx{4, 2}));
  for (int code = 5; code <= 8; ++code)
    EXPECT_EQ(makeBitmap({4, 2}, Rgba{}, code)->displaySize(), (SizePx{2, 4}));
}

TEST(Bitmap, lastRowNeedsNoPadding) {
  PixelBuffer buffer = PixelBuffer::allocate(16 + 8);
  const Bitmap bitmap(std::move(buffer), {{0, {2, 2}, 16}}, 1, true);
  EXPECT_EQ(bitmap.levelBytes(0).size(), 24U);
}

TEST(Bitmap, releasesItsMemoryOnceWithTheLastOwner) {
  std::byte memory[4] = {};
  int released = 0;
  PixelBuffer buffer(memory, sizeof memory, [&](std::byte* data, std::size_t bytes) {
    EXPECT_EQ(data, memory);
    EXPECT_EQ(bytes, sizeof memory);
    ++released;
  });
  BitmapRef one = std::make_shared<const Bitmap>(std::move(buffer), packedLevels({1, 1}), 1, true);
  BitmapRef two = one;
  one.reset();
  EXPECT_EQ(released, 0);
  two.reset();
  EXPECT_EQ(released, 1);
}

TEST(PixelBuffer, isReleasedWhenAnotherTakesItsPlace) {
  std::byte memory[4] = {};
  int released = 0;
  PixelBuffer buffer(memory, sizeof memory, [&](std::byte*, std::size_t) { ++released; });
  buffer = PixelBuffer::allocate(8);
  EXPECT_EQ(released, 1);
  EXPECT_EQ(buffer.bytes().size(), 8U);
  EXPECT_EQ(buffer.bytes()[7], std::byte{0});
}

#ifndef NDEBUG
using BitmapDeathTest = testing::Test;

void makeWith(std::size_t bytes, std::vector<BitmapLevel> levels, int orientation) {
  const Bitmap bitmap(PixelBuffer::allocate(bytes), std::move(levels), orientation, true);
}

TEST(BitmapDeathTest, refusesWhatLiesOutsideTheBuffer) {
  EXPECT_DEATH(makeWith(15, {{0, {2, 2}, 8}}, 1), "isChain");
  EXPECT_DEATH(makeWith(16, {{8, {2, 2}, 8}}, 1), "isChain");
  EXPECT_DEATH(makeWith(16, {{0, {2, 2}, 7}}, 1), "isChain");
  EXPECT_DEATH(makeWith(16, {{0, {2, 2}, SIZE_MAX / 2}}, 1), "isChain");
  EXPECT_DEATH(makeWith(16, {{SIZE_MAX - 4, {2, 2}, 8}}, 1), "isChain");
}

TEST(BitmapDeathTest, refusesLevelsThatDoNotHalve) {
  EXPECT_DEATH(makeWith(100, {{0, {4, 4}, 16}, {64, {3, 2}, 12}}, 1), "isChain");
  EXPECT_DEATH(makeWith(100, {}, 1), "isChain");
  EXPECT_DEATH(makeWith(100, {{0, {0, 4}, 16}}, 1), "isChain");
}

TEST(BitmapDeathTest, refusesUnknownOrientations) {
  EXPECT_DEATH(makeWith(16, {{0, {2, 2}, 8}}, 0), "orientation");
  EXPECT_DEATH(makeWith(16, {{0, {2, 2}, 8}}, 9), "orientation");
}
#endif

}  // namespace
}  // namespace lumivane
