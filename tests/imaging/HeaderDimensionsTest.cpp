#include "imaging/decode/HeaderDimensions.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "imaging/decode/FileImageDecoder.h"
#include "tests/imaging/MadePictures.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivane {
namespace {

class HeaderDimensionsTest : public testing::Test {
 protected:
  std::optional<SizePx> sizeOf(const std::string& path) { return dimensions_.measure({path}).at(0); }

  TemporaryFolder folder_;
  HeaderDimensions dimensions_;
};

class MeasuredType : public HeaderDimensionsTest, public testing::WithParamInterface<const char*> {};

TEST_P(MeasuredType, is_told_as_stored_and_as_the_decoder_tells_it) {
  const std::string path = folder_ / (std::string("picture.") + GetParam());
  fourQuartersTurned(96, 64, 6).write_to_file(path.c_str());
  const auto properties = FileImageDecoder().open(path)->properties();
  ASSERT_TRUE(properties);
  EXPECT_EQ(sizeOf(path), (SizePx{properties->pixelWidth.value(), properties->pixelHeight.value()}));
  EXPECT_EQ(sizeOf(path), (SizePx{96, 64}));
}
INSTANTIATE_TEST_SUITE_P(Types, MeasuredType, testing::Values("jpg", "png", "tif", "webp"));

TEST_F(HeaderDimensionsTest, pixels_are_not_needed) {
  const std::string whole = folder_ / "whole.png";
  fourQuarters(640, 480).write_to_file(whole.c_str());
  EXPECT_EQ(sizeOf(folder_.write("cut.png", fileContent(whole).substr(0, 400))), (SizePx{640, 480}));
}

TEST_F(HeaderDimensionsTest, what_can_be_read_and_holds_no_picture) {
  EXPECT_EQ(sizeOf(folder_.write("text.jpg", "no picture")), kNoPicture);
  EXPECT_EQ(sizeOf(folder_.write("empty.jpg", "")), kNoPicture);
  EXPECT_EQ(sizeOf(folder_.write("start.jpg", "\xFF\xD8\xFF")), kNoPicture);
}

TEST_F(HeaderDimensionsTest, what_cannot_be_opened_is_not_known) {
  EXPECT_EQ(sizeOf(folder_ / "gone.jpg"), std::nullopt);
  EXPECT_EQ(sizeOf(folder_.path()), std::nullopt);
  const std::string pipe = folder_ / "pipe.jpg";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(sizeOf(pipe), std::nullopt);
}

TEST_F(HeaderDimensionsTest, a_batch_is_answered_in_its_order) {
  const std::string small = folder_ / "small.png";
  const std::string large = folder_ / "large.png";
  fourQuarters(16, 8).write_to_file(small.c_str());
  fourQuarters(64, 32).write_to_file(large.c_str());
  const auto sizes = dimensions_.measure({large, folder_ / "gone", small});
  const std::vector<std::optional<SizePx>> expected = {SizePx{64, 32}, std::nullopt, SizePx{16, 8}};
  EXPECT_EQ(sizes, expected);
  EXPECT_TRUE(dimensions_.measure({}).empty());
}

}  // namespace
}  // namespace lumivane
