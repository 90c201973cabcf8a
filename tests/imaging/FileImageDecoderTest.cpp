#include "imaging/decode/FileImageDecoder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <thread>

#include "tests/imaging/MadePictures.h"
#include "tests/imaging/SampleManifest.h"
#include "tests/imaging/TestPixels.h"
#include "tests/support/LevelPixels.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

using vips::VImage;

class FileImageDecoderTest : public testing::Test {
 protected:
  std::filesystem::path inFolder(const std::string& name) const { return folder_ / name; }

  ImageSourceStatus statusOf(const std::filesystem::path& path) {
    const auto source = decoder_.open(path);
    return source ? source->status() : ImageSourceStatus::UnexpectedEnd;
  }

  BitmapRef decoded(const std::filesystem::path& path, int maxPixelSize = kThumbnailMaxPixelSize) {
    const auto source = decoder_.open(path);
    return source ? source->thumbnail(maxPixelSize) : nullptr;
  }

  // A picture is written, cut to its first half, and given to the decoder.
  BitmapRef decodedHalf(const std::string& name) {
    const std::string whole = fileContent(inFolder(name));
    EXPECT_TRUE(decoded(inFolder(name))) << name;
    writeFile(inFolder("half"), whole.substr(0, whole.size() / 2));
    return decoded(inFolder("half"));
  }

  VImage noise(int width, int height) const {
    return VImage::gaussnoise(width, height, VImage::option()->set("mean", 128)->set("sigma", 40))
        .cast(VIPS_FORMAT_UCHAR);
  }

  TemporaryFolder folder_;
  FileImageDecoder decoder_;
};

// The colour in the middle of a quarter of the picture as seen, as one letter.
char colourAt(const TestPixels& pixels, bool right, bool lower) {
  const float* p = pixels.at(pixels.width * (right ? 3 : 1) / 4, pixels.height * (lower ? 3 : 1) / 4);
  const auto is = [p](int r, int g, int b) {
    return std::abs(p[0] - static_cast<float>(r)) < 40 && std::abs(p[1] - static_cast<float>(g)) < 40 &&
           std::abs(p[2] - static_cast<float>(b)) < 40;
  };
  if (is(255, 0, 0)) return 'R';
  if (is(0, 255, 0)) return 'G';
  if (is(0, 0, 255)) return 'B';
  if (is(255, 255, 255)) return 'W';
  return '?';
}

std::string quartersOf(const Bitmap& bitmap) {
  const TestPixels pixels = asSeen(bitmap);
  return {colourAt(pixels, false, false), colourAt(pixels, true, false), colourAt(pixels, false, true),
          colourAt(pixels, true, true)};
}

// Upper left, upper right, lower left, lower right, as each code shows the four quarters.
constexpr const char* kSeenByCode[] = {"RGBW", "GRWB", "WBGR", "BWRG", "RBGW", "BRWG", "WGBR", "GWRB"};

class OrientationTest : public FileImageDecoderTest,
                        public testing::WithParamInterface<std::tuple<const char*, int>> {};

TEST_P(OrientationTest, exif_turns_the_picture_once) {
  const auto& [extension, code] = GetParam();
  const auto path = inFolder(std::string("picture.") + extension);
  fourQuartersTurned(96, 64, code).write_to_file(path.c_str());
  const auto source = decoder_.open(path);
  ASSERT_TRUE(source);
  const auto properties = source->properties();
  ASSERT_TRUE(properties);
  EXPECT_EQ(properties->orientation, code);
  EXPECT_EQ(properties->pixelWidth, 96);
  EXPECT_EQ(properties->pixelHeight, 64);
  const BitmapRef bitmap = source->thumbnail(kThumbnailMaxPixelSize);
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(bitmap->displaySize(), code >= 5 ? (SizePx{64, 96}) : (SizePx{96, 64}));
  EXPECT_EQ(quartersOf(*bitmap), kSeenByCode[code - 1]);
}

INSTANTIATE_TEST_SUITE_P(EveryCode, OrientationTest,
                         testing::Combine(testing::Values("jpg", "tif", "webp", "png"), testing::Range(1, 9)),
                         [](const auto& param) {
                           return std::string(std::get<0>(param.param)) +
                                  std::to_string(std::get<1>(param.param));
                         });

// In these, Exif's code says how the picture was turned before it was put into its container.
class OwnTurnTest : public FileImageDecoderTest,
                    public testing::WithParamInterface<std::tuple<const char*, int>> {};

TEST_P(OwnTurnTest, exif_does_not_turn_the_picture_again) {
  const auto& [extension, code] = GetParam();
  const auto path = inFolder(std::string("picture.") + extension);
  fourQuartersTurned(128, 96, code).write_to_file(path.c_str());
  const auto source = decoder_.open(path);
  ASSERT_TRUE(source);
  const auto properties = source->properties();
  ASSERT_TRUE(properties);
  EXPECT_EQ(properties->orientation, 1);
  EXPECT_EQ(properties->pixelWidth, 128);
  const BitmapRef bitmap = source->thumbnail(kThumbnailMaxPixelSize);
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(bitmap->displaySize(), (SizePx{128, 96}));
  EXPECT_EQ(quartersOf(*bitmap), "RGBW");
}

INSTANTIATE_TEST_SUITE_P(Containers, OwnTurnTest,
                         testing::Combine(testing::Values("heic", "avif", "jxl"), testing::Values(3, 6)),
                         [](const auto& param) {
                           return std::string(std::get<0>(param.param)) +
                                  std::to_string(std::get<1>(param.param));
                         });

// The same scene in every code of the container's own: all must look like the first.
class ContainerTurnTest : public FileImageDecoderTest, public testing::WithParamInterface<const char*> {};

TEST_P(ContainerTurnTest, container_turns_the_picture_once) {
  const auto samples = samplesFolder();
  if (!samples) GTEST_SKIP() << "no sample pictures; set LUMIVANE_SAMPLES";
  const auto path = *samples / "photos" / "orientation" / GetParam();
  const int code = path.stem().string().back() - '0';
  const BitmapRef upright = decoded(path.parent_path() / ("orientation1" + path.extension().string()));
  const auto source = decoder_.open(path);
  ASSERT_TRUE(upright && source);
  const auto properties = source->properties();
  ASSERT_TRUE(properties);
  EXPECT_EQ(properties->orientation, code);
  EXPECT_EQ(properties->pixelWidth, code >= 5 ? 160 : 480);
  EXPECT_EQ(properties->pixelHeight, code >= 5 ? 480 : 160);
  const BitmapRef bitmap = source->thumbnail(kThumbnailMaxPixelSize);
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(bitmap->displaySize(), (SizePx{480, 160}));
  // The scene carries the number of its code, so they are not quite alike.
  EXPECT_LT(meanDifference(asSeen(*bitmap), asSeen(*upright)), 8);
}

INSTANTIATE_TEST_SUITE_P(Samples, ContainerTurnTest,
                         testing::Values("orientation2.heic", "orientation3.heic", "orientation4.heic",
                                         "orientation5.heic", "orientation6.heic", "orientation7.heic",
                                         "orientation8.heic", "orientation3.jxl", "orientation5.jxl",
                                         "orientation7.jxl"),
                         [](const auto& param) {
                           std::string name = param.param;
                           name[name.find('.')] = '_';
                           return name;
                         });

class EveryFormatTest : public FileImageDecoderTest, public testing::WithParamInterface<const char*> {};

TEST_P(EveryFormatTest, type_is_told_by_content_not_by_name) {
  const auto path = inFolder(std::string("picture.") + GetParam());
  fourQuarters(128, 96).write_to_file(path.c_str());
  for (const char* other : {"misnamed.txt", "misnamed.jpg", "noextension"}) {
    std::filesystem::copy_file(path, inFolder(other), std::filesystem::copy_options::overwrite_existing);
    const BitmapRef bitmap = decoded(inFolder(other));
    ASSERT_TRUE(bitmap) << other;
    EXPECT_EQ(quartersOf(*bitmap), "RGBW") << other;
    EXPECT_TRUE(bitmap->opaque());
  }
}

TEST_P(EveryFormatTest, every_beginning_of_a_file_is_survived) {
  const auto path = inFolder(std::string("picture.") + GetParam());
  fourQuarters(48, 32).write_to_file(path.c_str());
  const std::string whole = fileContent(path);
  for (std::size_t length = 0; length < whole.size(); length += 1 + whole.size() / 60) {
    writeFile(inFolder("start"), whole.substr(0, length));
    const auto source = decoder_.open(inFolder("start"));
    ASSERT_TRUE(source);
    (void)source->properties();
    (void)source->thumbnail(kThumbnailMaxPixelSize);
    EXPECT_EQ(length == 0, source->status() == ImageSourceStatus::UnexpectedEnd);
  }
}

TEST_P(EveryFormatTest, changed_bytes_are_survived) {
  const auto path = inFolder(std::string("picture.") + GetParam());
  fourQuarters(48, 32).write_to_file(path.c_str());
  const std::string whole = fileContent(path);
  for (std::size_t at = 0; at < whole.size(); at += 1 + whole.size() / 120) {
    std::string changed = whole;
    changed[at] = static_cast<char>(~changed[at]);
    writeFile(inFolder("changed"), changed);
    const auto source = decoder_.open(inFolder("changed"));
    ASSERT_TRUE(source);
    (void)source->properties();
    (void)source->thumbnail(kThumbnailMaxPixelSize);
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, EveryFormatTest,
                         testing::Values("jpg", "png", "gif", "tif", "webp", "heic", "avif", "jxl", "jp2"),
                         [](const auto& param) { return std::string(param.param); });

TEST_F(FileImageDecoderTest, what_is_no_regular_file_is_not_opened) {
  EXPECT_FALSE(decoder_.open(inFolder("absent.jpg")));
  EXPECT_FALSE(decoder_.open(folder_.path()));
  ASSERT_EQ(mkfifo(inFolder("pipe.jpg").c_str(), 0600), 0);
  EXPECT_FALSE(decoder_.open(inFolder("pipe.jpg")));  // and does not wait for a writer
  EXPECT_FALSE(decoder_.open("/dev/null"));
}

TEST_F(FileImageDecoderTest, what_is_no_picture_has_a_status) {
  writeFile(inFolder("empty.jpg"), "");
  EXPECT_EQ(statusOf(inFolder("empty.jpg")), ImageSourceStatus::UnexpectedEnd);
  for (const char* text :
       {"hello", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", "%PDF-1.4\n",
        "P3 1 1 255 0 0 0", "BM and more text than that", "\xFF", "%!PS-Adobe-3.0 EPSF-3.0"}) {
    writeFile(inFolder("text.jpg"), text);
    EXPECT_EQ(statusOf(inFolder("text.jpg")), ImageSourceStatus::UnknownType) << text;
    EXPECT_FALSE(decoder_.open(inFolder("text.jpg"))->properties());
    EXPECT_FALSE(decoded(inFolder("text.jpg")));
  }
}

TEST_F(FileImageDecoderTest, truncated_pictures_are_not_shown) {
  VImage picture = noise(200, 150)
                       .bandjoin({noise(200, 150), noise(200, 150)})
                       .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  picture.jpegsave(inFolder("a.jpg").c_str());
  EXPECT_FALSE(decodedHalf("a.jpg"));
  picture.jpegsave(inFolder("p.jpg").c_str(), VImage::option()->set("interlace", true));
  EXPECT_FALSE(decodedHalf("p.jpg"));
  picture.pngsave(inFolder("a.png").c_str());
  EXPECT_FALSE(decodedHalf("a.png"));
  picture.webpsave(inFolder("a.webp").c_str());
  EXPECT_FALSE(decodedHalf("a.webp"));
  picture.tiffsave(inFolder("a.tif").c_str());
  EXPECT_FALSE(decodedHalf("a.tif"));
}

TEST_F(FileImageDecoderTest, harmless_faults_of_a_jpeg_do_not_count) {
  fourQuarters(96, 64).jpegsave(inFolder("a.jpg").c_str());
  const std::string whole = fileContent(inFolder("a.jpg"));
  writeFile(inFolder("extra.jpg"),
            whole.substr(0, whole.size() - 2) + std::string(5, '\0') + whole.substr(whole.size() - 2));
  EXPECT_TRUE(decoded(inFolder("extra.jpg")));
  writeFile(inFolder("noend.jpg"), whole.substr(0, whole.size() - 2));
  EXPECT_TRUE(decoded(inFolder("noend.jpg")));
  writeFile(inFolder("tail.jpg"), whole + "a film or a second picture");
  EXPECT_TRUE(decoded(inFolder("tail.jpg")));
}

TEST_F(FileImageDecoderTest, damaged_scan_data_of_a_jpeg_is_not_shown) {
  noise(200, 150).jpegsave(inFolder("a.jpg").c_str());
  std::string content = fileContent(inFolder("a.jpg"));
  content.replace(content.size() / 2, 2, "\xFF\xD9");
  writeFile(inFolder("a.jpg"), content);
  EXPECT_FALSE(decoded(inFolder("a.jpg")));
}

TEST_F(FileImageDecoderTest, large_pictures_are_shrunk_to_exactly_the_limit) {
  fourQuarters(400, 300).jpegsave(inFolder("a.jpg").c_str());
  fourQuarters(400, 300).pngsave(inFolder("a.png").c_str());
  for (const char* name : {"a.jpg", "a.png"}) {
    for (const int limit : {399, 300, 200, 150, 100, 50, 49, 10, 1}) {
      const BitmapRef bitmap = decoded(inFolder(name), limit);
      ASSERT_TRUE(bitmap);
      EXPECT_EQ(bitmap->storedSize(),
                (SizePx{limit, std::max(1, static_cast<int>(std::lround(limit * 0.75)))}));
      if (limit < 10) continue;
      EXPECT_EQ(quartersOf(*bitmap), "RGBW") << name << " " << limit;
    }
    EXPECT_EQ(decoded(inFolder(name), 400)->storedSize(), (SizePx{400, 300}));
    EXPECT_EQ(decoded(inFolder(name), 8192)->storedSize(), (SizePx{400, 300}));
  }
}

TEST_F(FileImageDecoderTest, alpha_is_premultiplied) {
  const VImage half = VImage::black(8, 8)
                          .new_from_image({200, 100, 0, 128})
                          .cast(VIPS_FORMAT_UCHAR)
                          .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  half.pngsave(inFolder("a.png").c_str());
  const BitmapRef bitmap = decoded(inFolder("a.png"));
  ASSERT_TRUE(bitmap);
  EXPECT_FALSE(bitmap->opaque());
  const auto pixel = levelPixels(*bitmap, 0);
  EXPECT_EQ(std::to_integer<int>(pixel[0]), 100);
  EXPECT_EQ(std::to_integer<int>(pixel[1]), 50);
  EXPECT_EQ(std::to_integer<int>(pixel[2]), 0);
  EXPECT_EQ(std::to_integer<int>(pixel[3]), 128);
}

TEST_F(FileImageDecoderTest, sixteen_bits_and_grey_become_eight_bits_of_rgb) {
  const VImage deep = VImage::black(8, 8)
                          .cast(VIPS_FORMAT_USHORT)
                          .new_from_image({0x8000, 0x4000, 0xFFFF})
                          .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_RGB16));
  deep.pngsave(inFolder("deep.png").c_str());
  const BitmapRef fromDeep = decoded(inFolder("deep.png"));
  ASSERT_TRUE(fromDeep);
  EXPECT_NEAR(std::to_integer<int>(levelPixels(*fromDeep, 0)[0]), 128, 1);
  EXPECT_NEAR(std::to_integer<int>(levelPixels(*fromDeep, 0)[1]), 64, 1);
  EXPECT_EQ(std::to_integer<int>(levelPixels(*fromDeep, 0)[2]), 255);
  for (const char* name : {"grey.png", "grey.jpg", "grey.tif"}) {
    VImage::black(8, 8).new_from_image(90).cast(VIPS_FORMAT_UCHAR).write_to_file(inFolder(name).c_str());
    const BitmapRef grey = decoded(inFolder(name));
    ASSERT_TRUE(grey) << name;
    for (std::size_t c = 0; c < 3; ++c) EXPECT_EQ(std::to_integer<int>(levelPixels(*grey, 0)[c]), 90) << name;
    EXPECT_TRUE(grey->opaque());
  }
}

TEST_F(FileImageDecoderTest, jpeg_in_inks_has_the_right_colours) {
  fourQuarters(96, 64).colourspace(VIPS_INTERPRETATION_CMYK).jpegsave(inFolder("ink.jpg").c_str());
  const BitmapRef bitmap = decoded(inFolder("ink.jpg"));
  ASSERT_TRUE(bitmap);
  const TestPixels pixels = asSeen(*bitmap);
  const float* red = pixels.at(10, 10);
  EXPECT_GT(red[0], 180);
  EXPECT_LT(red[1], 80);
  const float* white = pixels.at(90, 60);
  EXPECT_GT(white[0] + white[1] + white[2], 740);
}

TEST_F(FileImageDecoderTest, profile_that_is_not_srgb_is_converted) {
  // Bright green of a wide gamut is out of reach for sRGB; its red and blue end up at 0 and the grey stays grey.
  const VImage srgb = VImage::black(64, 64)
                          .new_from_image({128, 128, 128})
                          .cast(VIPS_FORMAT_UCHAR)
                          .copy(VImage::option()->set("interpretation", VIPS_INTERPRETATION_sRGB));
  for (const char* name : {"p3.jpg", "p3.png", "p3.tif"}) {
    const VImage p3 =
        srgb.linear({1, 1, 1}, {72, 0, -28})
            .cast(VIPS_FORMAT_UCHAR)
            .icc_transform("p3", VImage::option()->set("input_profile", "srgb")->set("embedded", false));
    p3.write_to_file(inFolder(name).c_str(), VImage::option()->set("Q", 100));
    const BitmapRef bitmap = decoded(inFolder(name));
    ASSERT_TRUE(bitmap) << name;
    const auto pixel = levelPixels(*bitmap, 0);
    EXPECT_NEAR(std::to_integer<int>(pixel[0]), 200, 4) << name;
    EXPECT_NEAR(std::to_integer<int>(pixel[1]), 128, 4) << name;
    EXPECT_NEAR(std::to_integer<int>(pixel[2]), 100, 4) << name;
    EXPECT_EQ(std::to_integer<int>(pixel[3]), 255) << name;
  }
}

TEST_F(FileImageDecoderTest, absurd_sizes_are_told_but_not_decoded) {
  // A bitmap's header with 70,000 x 66,000 pixels and nothing behind it.
  std::string bmp("BM\0\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0", 18);
  bmp += std::string("\x70\x11\x01\0", 4) + std::string("\xD0\x01\x01\0", 4) +
         std::string("\x01\0\x18\0", 4) + std::string(24, '\0');
  writeFile(inFolder("huge.bmp"), bmp);
  const auto source = decoder_.open(inFolder("huge.bmp"));
  ASSERT_TRUE(source);
  EXPECT_EQ(source->status(), ImageSourceStatus::Complete);
  const auto properties = source->properties();
  ASSERT_TRUE(properties);
  EXPECT_EQ(properties->pixelWidth, 70000);
  EXPECT_EQ(properties->pixelHeight, 66000);
  EXPECT_FALSE(source->thumbnail(kThumbnailMaxPixelSize));
}

TEST_F(FileImageDecoderTest, sparse_tiff_of_four_gigabytes_is_not_read_whole) {
  fourQuarters(96, 64).tiffsave(inFolder("a.tif").c_str());
  std::filesystem::resize_file(inFolder("a.tif"), std::uintmax_t{4} << 30);
  const BitmapRef bitmap = decoded(inFolder("a.tif"));
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(quartersOf(*bitmap), "RGBW");
}

TEST_F(FileImageDecoderTest, source_can_decode_more_than_once) {
  fourQuarters(96, 64).pngsave(inFolder("a.png").c_str());
  fourQuarters(96, 64).jpegsave(inFolder("a.jpg").c_str());
  for (const char* name : {"a.png", "a.jpg"}) {
    const auto source = decoder_.open(inFolder(name));
    ASSERT_TRUE(source);
    for (const int size : {96, 48, 96}) {
      const BitmapRef bitmap = source->thumbnail(size);
      ASSERT_TRUE(bitmap);
      EXPECT_EQ(bitmap->storedSize().width, size);
      EXPECT_EQ(quartersOf(*bitmap), "RGBW");
    }
  }
}

TEST_F(FileImageDecoderTest, mip_levels_come_with_the_picture) {
  fourQuarters(96, 64).jpegsave(inFolder("a.jpg").c_str());
  const BitmapRef bitmap = decoded(inFolder("a.jpg"));
  ASSERT_TRUE(bitmap);
  ASSERT_EQ(bitmap->levels().size(), 7U);
  EXPECT_EQ(bitmap->levels()[6].size, (SizePx{1, 1}));
  const auto half = levelPixels(*bitmap, 1);
  EXPECT_GT(std::to_integer<int>(half[0]), 240);  // red
  EXPECT_LT(std::to_integer<int>(half[1]), 15);
}

TEST_F(FileImageDecoderTest, many_threads_decode_at_once) {
  const std::vector<std::string> names = {"a.jpg", "b.png", "c.webp", "d.tif", "e.jxl", "f.heic"};
  for (const std::string& name : names) fourQuartersTurned(96, 64, 1).write_to_file(inFolder(name).c_str());
  std::vector<std::jthread> threads;
  for (std::size_t t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (std::size_t i = 0; i < names.size(); ++i) {
        const auto source = decoder_.open(inFolder(names[(i + t) % names.size()]));
        ASSERT_TRUE(source && source->properties());
        const BitmapRef bitmap = source->thumbnail(kThumbnailMaxPixelSize);
        ASSERT_TRUE(bitmap);
        EXPECT_EQ(quartersOf(*bitmap), "RGBW");
      }
    });
  }
}

TEST_F(FileImageDecoderTest, pictures_outlive_their_decoder) {
  fourQuarters(96, 64).jpegsave(inFolder("a.jpg").c_str());
  BitmapRef bitmap;
  {
    FileImageDecoder decoder;
    bitmap = decoder.open(inFolder("a.jpg"))->thumbnail(kThumbnailMaxPixelSize);
  }
  EXPECT_EQ(quartersOf(*bitmap), "RGBW");
}

}  // namespace
}  // namespace lumivane
