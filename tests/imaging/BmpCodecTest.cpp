#include "imaging/decode/BmpCodec.h"

#include <gtest/gtest.h>

#include "imaging/decode/BmpHeader.h"
#include "imaging/decode/PixelPool.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

std::string number(std::uint32_t value, std::size_t bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i));
  return text;
}

struct Bmp {
  int width = 2;
  int height = 2;
  std::uint32_t bits = 24;
  std::uint32_t compression = 0;
  std::string extra;  // masks or palette, behind the header
  std::string pixels;

  std::string file() const {
    const std::string header = number(40, 4) + number(static_cast<std::uint32_t>(width), 4) +
                               number(static_cast<std::uint32_t>(height), 4) + number(1, 2) +
                               number(bits, 2) + number(compression, 4) + std::string(20, '\0');
    const auto pixelsAt = static_cast<std::uint32_t>(14 + header.size() + extra.size());
    return "BM" + number(0, 4) + number(0, 4) + number(pixelsAt, 4) + header + extra + pixels;
  }
};

class BmpCodecTest : public testing::Test {
 protected:
  BitmapRef decoded(const std::string& content) {
    const auto file = PictureFile::open(folder_.write("a.bmp", content));
    const OpenedCodec opened = openBmpCodec(*file);
    return opened.codec ? opened.codec->decode(pool_, 8192, 1) : nullptr;
  }

  // The pixels row by row as text: "r,g,b,a " each.
  std::string pixelsOf(const std::string& content) {
    const BitmapRef bitmap = decoded(content);
    if (!bitmap) return "none";
    std::string text;
    const auto bytes = bitmap->levelBytes(0);
    const auto count = static_cast<std::size_t>(bitmap->storedSize().width * bitmap->storedSize().height) * 4;
    for (std::size_t i = 0; i < count; ++i) {
      text += std::to_string(std::to_integer<int>(bytes[i])) + (i % 4 == 3 ? " " : ",");
    }
    return text;
  }

  TemporaryFolder folder_;
  PixelPool pool_;
};

const std::string kFourColours = "1,2,3,255 4,5,6,255 7,8,9,255 10,11,12,255 ";
const std::string kTwoGreys = std::string("\x00\x00\x00\x00\x64\x64\x64\x00", 8);

TEST_F(BmpCodecTest, rows_come_from_below_and_are_padded) {
  const Bmp bmp{.extra = {},
                .pixels = std::string("\x09\x08\x07\x0C\x0B\x0A\0\0\x03\x02\x01\x06\x05\x04\0\0", 16)};
  EXPECT_EQ(pixelsOf(bmp.file()), kFourColours);
}

TEST_F(BmpCodecTest, negative_height_means_from_above) {
  const Bmp bmp{.height = -2,
                .extra = {},
                .pixels = std::string("\x03\x02\x01\x06\x05\x04\0\0\x09\x08\x07\x0C\x0B\x0A\0\0", 16)};
  EXPECT_EQ(pixelsOf(bmp.file()), kFourColours);
}

TEST_F(BmpCodecTest, padding_of_the_last_row_may_be_missing) {
  const Bmp bmp{.extra = {},
                .pixels = std::string("\x09\x08\x07\x0C\x0B\x0A\0\0\x03\x02\x01\x06\x05\x04", 14)};
  EXPECT_EQ(pixelsOf(bmp.file()), kFourColours);
}

TEST_F(BmpCodecTest, cut_pixels_are_no_picture) {
  const Bmp bmp{.extra = {}, .pixels = std::string("\x09\x08\x07\x0C\x0B\x0A\0\0\x03\x02", 10)};
  EXPECT_EQ(pixelsOf(bmp.file()), "none");
}

TEST_F(BmpCodecTest, palettes_of_1_4_and_8_bits) {
  const std::string expected = "0,0,0,255 100,100,100,255 ";
  EXPECT_EQ(pixelsOf(Bmp{2, 1, 1, 0, kTwoGreys, std::string("\x40\0\0\0", 4)}.file()), expected);
  EXPECT_EQ(pixelsOf(Bmp{2, 1, 4, 0, kTwoGreys, std::string("\x01\0\0\0", 4)}.file()), expected);
  EXPECT_EQ(pixelsOf(Bmp{2, 1, 8, 0, kTwoGreys, std::string("\x00\x01\0\0", 4)}.file()), expected);
}

TEST_F(BmpCodecTest, index_beyond_the_palette_is_black) {
  EXPECT_EQ(pixelsOf(Bmp{2, 1, 8, 0, kTwoGreys, std::string("\x01\xFF\0\0", 4)}.file()),
            "100,100,100,255 0,0,0,255 ");
}

TEST_F(BmpCodecTest, sixteen_bits_are_five_each_unless_masks_say_otherwise) {
  EXPECT_EQ(pixelsOf(Bmp{2, 1, 16, 0, "", number(0x7C1F, 2) + number(0x03E0, 2)}.file()),
            "255,0,255,255 0,255,0,255 ");
  const std::string masks = number(0xF800, 4) + number(0x07E0, 4) + number(0x001F, 4);
  EXPECT_EQ(pixelsOf(Bmp{2, 1, 16, 3, masks, number(0xF800, 2) + number(0x07E0, 2)}.file()),
            "255,0,0,255 0,255,0,255 ");
}

TEST_F(BmpCodecTest, fourth_byte_counts_only_with_an_alpha_mask) {
  EXPECT_EQ(pixelsOf(Bmp{1, 1, 32, 0, "", number(0x00010203, 4)}.file()), "1,2,3,255 ");
  const std::string masks = number(0xFF0000, 4) + number(0xFF00, 4) + number(0xFF, 4) + number(0xFF000000, 4);
  EXPECT_EQ(pixelsOf(Bmp{1, 1, 32, 6, masks, number(0x80FF0000, 4)}.file()), "128,0,0,128 ");
}

TEST_F(BmpCodecTest, run_lengths_of_8_bits) {
  // Upper row by a run, lower row by two literals and their padding: index 1, 0, 1.
  const std::string runs("\x00\x03\x01\x00\x01\x00\x00\x00\x03\x01\x00\x01", 12);
  EXPECT_EQ(pixelsOf(Bmp{3, 2, 8, 1, kTwoGreys, runs}.file()),
            "100,100,100,255 100,100,100,255 100,100,100,255 100,100,100,255 0,0,0,255 100,100,100,255 ");
}

TEST_F(BmpCodecTest, run_lengths_of_4_bits) {
  const std::string runs("\x03\x10\x00\x01", 4);
  EXPECT_EQ(pixelsOf(Bmp{3, 1, 4, 2, kTwoGreys, runs}.file()), "100,100,100,255 0,0,0,255 100,100,100,255 ");
}

TEST_F(BmpCodecTest, runs_beyond_the_edges_are_cut_and_jumps_leave_the_first_colour) {
  const std::string runs("\x09\x01\x00\x00\x00\x02\x01\x00\x05\x01\x00\x01", 12);
  EXPECT_EQ(pixelsOf(Bmp{2, 2, 8, 1, kTwoGreys, runs}.file()),
            "0,0,0,255 100,100,100,255 100,100,100,255 100,100,100,255 ");
}

TEST_F(BmpCodecTest, runs_that_end_too_early_are_no_picture) {
  EXPECT_EQ(pixelsOf(Bmp{2, 2, 8, 1, kTwoGreys, std::string("\x02\x01\x00", 3)}.file()), "none");
}

TEST(BmpHeader, refuses_what_makes_no_sense) {
  const auto accepted = [](const Bmp& bmp) {
    const std::string file = bmp.file();
    return readBmpHeader(std::as_bytes(std::span(file))).has_value();
  };
  EXPECT_TRUE(accepted({.extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.width = 0, .extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.width = -5, .extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.height = 0, .extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.height = std::numeric_limits<int>::min(), .extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.bits = 7, .extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.bits = 24, .compression = 1, .extra = {}, .pixels = {}}));
  EXPECT_FALSE(accepted({.bits = 24, .compression = 4, .extra = {}, .pixels = {}}));  // a JPEG inside
  EXPECT_FALSE(readBmpHeader({}));
}

TEST(BmpChannel, spreads_to_the_whole_range) {
  EXPECT_EQ(BmpChannel{0x001F}.valueIn(0x001F), 255);
  EXPECT_EQ(BmpChannel{0xF800}.valueIn(0x8000), 132);
  EXPECT_EQ(BmpChannel{0xFF000000}.valueIn(0x12345678), 0x12);
  EXPECT_EQ(BmpChannel{0xFFFFFFFF}.valueIn(0xFFFFFFFF), 255);
  EXPECT_EQ(BmpChannel{0}.valueIn(0xFFFFFFFF), 0);
}

}  // namespace
}  // namespace lumivane
