// Photographs that stay in planes against what libjpeg itself makes of the same files.
#include <gtest/gtest.h>

// libjpeg's headers expect these two to come first.
#include <cstddef>
#include <cstdio>
// clang-format off
#include <jpeglib.h>
// clang-format on

#include <cmath>
#include <cstdlib>
#include <memory>

#include "imaging/decode/FileImageDecoder.h"
#include "tests/imaging/MadePictures.h"
#include "tests/support/LevelPixels.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

struct Form {
  const char* name;
  int columns;  // sampling factors of the brightness; those of the colour are 1
  int rows;
  bool grey;
  bool progressive;
};

// Waves of all three channels, so that neighbours differ without being noise.
std::uint8_t wave(int x, int y, int channel) {
  return static_cast<std::uint8_t>(127.5 *
                                   (1 + std::sin(0.13 * x * (channel + 1)) * std::cos(0.09 * y + channel)));
}

std::string jpeg(SizePx size, const Form& form) {
  jpeg_compress_struct library = {};
  jpeg_error_mgr errors = {};
  library.err = jpeg_std_error(&errors);
  jpeg_create_compress(&library);
  unsigned char* bytes = nullptr;
  unsigned long count = 0;
  jpeg_mem_dest(&library, &bytes, &count);
  library.image_width = static_cast<JDIMENSION>(size.width);
  library.image_height = static_cast<JDIMENSION>(size.height);
  library.input_components = form.grey ? 1 : 3;
  library.in_color_space = form.grey ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&library);
  jpeg_set_quality(&library, 92, TRUE);
  library.comp_info[0].h_samp_factor = form.columns;
  library.comp_info[0].v_samp_factor = form.rows;
  if (form.progressive) jpeg_simple_progression(&library);
  jpeg_start_compress(&library, TRUE);
  std::vector<JSAMPLE> row(static_cast<std::size_t>(size.width * library.input_components));
  for (int y = 0; y < size.height; ++y) {
    for (int i = 0; i < static_cast<int>(row.size()); ++i)
      row[static_cast<std::size_t>(i)] = wave(i / library.input_components, y, i % library.input_components);
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&library, &pointer, 1);
  }
  jpeg_finish_compress(&library);
  std::string file(reinterpret_cast<const char*>(bytes), count);
  jpeg_destroy_compress(&library);
  std::free(bytes);
  return file;
}

std::vector<std::byte> asLibjpegDecodes(const std::string& file) {
  jpeg_decompress_struct library = {};
  jpeg_error_mgr errors = {};
  library.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&library);
  jpeg_mem_src(&library, reinterpret_cast<const unsigned char*>(file.data()), file.size());
  jpeg_read_header(&library, TRUE);
  library.out_color_space = JCS_EXT_RGBA;
  jpeg_start_decompress(&library);
  const std::size_t rowBytes = std::size_t{library.output_width} * 4;
  std::vector<std::byte> pixels(rowBytes * library.output_height);
  while (library.output_scanline < library.output_height) {
    auto* row = reinterpret_cast<JSAMPROW>(pixels.data() + library.output_scanline * rowBytes);
    jpeg_read_scanlines(&library, &row, 1);
  }
  jpeg_finish_decompress(&library);
  jpeg_destroy_decompress(&library);
  return pixels;
}

class JpegFilesTest : public testing::Test {
 protected:
  BitmapRef decoded(const std::string& content, int maxPixelSize = kThumbnailMaxPixelSize) {
    writeFile(folder_ / "a.jpg", content);
    const auto source = decoder_.open(folder_ / "a.jpg");
    return source ? source->thumbnail(maxPixelSize) : nullptr;
  }
  TemporaryFolder folder_;
  FileImageDecoder decoder_;
};

class JpegPlanesTest : public JpegFilesTest, public testing::WithParamInterface<Form> {};

TEST_P(JpegPlanesTest, pixels_are_those_of_libjpeg_but_for_rounding) {
  for (const SizePx size : {SizePx{160, 96}, SizePx{77, 69}, SizePx{64, 65}, SizePx{129, 191}}) {
    const std::string file = jpeg(size, GetParam());
    const BitmapRef bitmap = decoded(file);
    ASSERT_TRUE(bitmap) << size.width;
    EXPECT_TRUE(bitmap->planes()) << size.width;
    const std::vector<std::byte> pixels = levelPixels(*bitmap, 0);
    const std::vector<std::byte> wanted = asLibjpegDecodes(file);
    ASSERT_EQ(pixels.size(), wanted.size());
    int worst = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i)
      worst = std::max(worst, std::abs(std::to_integer<int>(pixels[i]) - std::to_integer<int>(wanted[i])));
    EXPECT_LE(worst, 1) << size.width << " x " << size.height;
  }
}

TEST_P(JpegPlanesTest, small_levels_are_the_means_of_the_large_ones) {
  const BitmapRef bitmap = decoded(jpeg({320, 192}, GetParam()));
  ASSERT_TRUE(bitmap);
  for (std::size_t level = 1; level < bitmap->levels().size(); ++level) {
    const std::vector<std::byte> large = levelPixels(*bitmap, level - 1);
    const std::vector<std::byte> small = levelPixels(*bitmap, level);
    const SizePx size = bitmap->levels()[level].size;
    const auto largeWidth = static_cast<std::size_t>(bitmap->levels()[level - 1].size.width);
    if (size.width == 1 || size.height == 1) break;
    double off = 0;
    for (int y = 0; y < size.height; ++y) {
      for (int i = 0; i < size.width * 4; ++i) {
        const std::size_t at =
            (static_cast<std::size_t>(2 * y) * largeWidth + static_cast<std::size_t>(i / 4 * 2)) * 4 +
            static_cast<std::size_t>(i % 4);
        double mean = 0;
        for (const std::size_t next : {at, at + 4, at + largeWidth * 4, at + largeWidth * 4 + 4})
          mean += std::to_integer<int>(large[next]) / 4.0;
        off += std::abs(mean - std::to_integer<int>(small[static_cast<std::size_t>(y * size.width * 4 + i)]));
      }
    }
    // Colour of half the size is taken over as it is: to widen it and to take means of that would blur it.
    EXPECT_LT(off / (size.width * size.height * 4), level == 1 ? 2 : 1) << "level " << level;
  }
}

TEST_P(JpegPlanesTest, a_picture_that_is_shrunk_or_tiny_is_stored_in_rgba) {
  const BitmapRef shrunk = decoded(jpeg({320, 192}, GetParam()), 150);
  ASSERT_TRUE(shrunk);
  EXPECT_FALSE(shrunk->planes());
  const BitmapRef tiny = decoded(jpeg({63, 200}, GetParam()));
  ASSERT_TRUE(tiny);
  EXPECT_FALSE(tiny->planes());
}

TEST_P(JpegPlanesTest, half_a_file_is_refused) {
  const std::string file = jpeg({320, 192}, GetParam());
  EXPECT_FALSE(decoded(file.substr(0, file.size() / 2)));
}

INSTANTIATE_TEST_SUITE_P(
    Forms, JpegPlanesTest,
    testing::Values(Form{"full", 1, 1, false, false}, Form{"half width", 2, 1, false, false},
                    Form{"half height", 1, 2, false, false}, Form{"half", 2, 2, false, false},
                    Form{"progressive", 2, 2, false, true}, Form{"grey", 1, 1, true, false},
                    Form{"grey in large groups", 2, 2, true, false}));

TEST_F(JpegFilesTest, other_samplings_are_stored_in_rgba) {
  const BitmapRef bitmap = decoded(jpeg({160, 96}, {"quarter width", 4, 1, false, false}));
  ASSERT_TRUE(bitmap);
  EXPECT_FALSE(bitmap->planes());
}

}  // namespace
}  // namespace lumivane
