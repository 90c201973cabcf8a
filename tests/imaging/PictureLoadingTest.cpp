#include "imaging/PictureLoading.h"

#include <gtest/gtest.h>

namespace lumivane {

static bool operator==(const LoadMessage& a, const LoadMessage& b) {
  return a.kind == b.kind && a.text == b.text && a.with == b.with;
}

static void PrintTo(const LoadMessage& message, std::ostream* out) {
  *out << static_cast<int>(message.kind) << " '" << message.text << "' '" << message.with << "'";
}

namespace {

using Kind = LoadMessage::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

BitmapRef onePixel() {
  return std::make_shared<const Bitmap>(PixelBuffer::allocate(4), packedLevels({1, 1}), 1, true);
}

// One file, described by what its source answers.
struct FakeFile {
  bool there = true;
  ImageSourceStatus status = ImageSourceStatus::Complete;
  std::optional<PropertyDictionary> properties = PropertyDictionary{};
  BitmapRef image = onePixel();
};

class FakeSource final : public ImageSource {
 public:
  FakeSource(const FakeFile& file, std::vector<int>& asked) : file_(file), asked_(asked) {}
  ImageSourceStatus status() const override { return file_.status; }
  std::optional<PropertyDictionary> properties() override { return file_.properties; }
  BitmapRef thumbnail(int maxPixelSize) override {
    asked_.push_back(maxPixelSize);
    return file_.image;
  }

 private:
  const FakeFile& file_;
  std::vector<int>& asked_;
};

class FakeDecoder final : public ImageDecoder {
 public:
  explicit FakeDecoder(FakeFile file) : file_(std::move(file)) {}
  std::unique_ptr<ImageSource> open(const std::string& path) override {
    opened_.push_back(path);
    return file_.there ? std::make_unique<FakeSource>(file_, thumbnailSizes_) : nullptr;
  }

  FakeFile file_;
  std::vector<std::string> opened_;
  std::vector<int> thumbnailSizes_;
};

FakeFile ofSize(int width, int height) {
  FakeFile file;
  file.properties->pixelWidth = width;
  file.properties->pixelHeight = height;
  return file;
}

TEST(PictureLoading, hands_out_the_picture_and_its_properties) {
  FakeFile file = ofSize(800, 600);
  file.properties->exifDateTimeOriginal = "2020:01:02 03:04:05";
  FakeDecoder decoder(file);
  const LoadOutcome outcome = loadPicture(decoder, "/p/a.jpg", {});
  ASSERT_TRUE(outcome.picture);
  EXPECT_EQ(outcome.picture->image, file.image);
  EXPECT_EQ(outcome.picture->properties.exifDateTimeOriginal, "2020:01:02 03:04:05");
  EXPECT_THAT(outcome.messages, IsEmpty());
  EXPECT_THAT(decoder.opened_, ElementsAre("/p/a.jpg"));
  EXPECT_THAT(decoder.thumbnailSizes_, ElementsAre(8192));
}

TEST(PictureLoading, missing_path_is_never_opened) {
  FakeDecoder decoder(ofSize(800, 600));
  const LoadOutcome outcome = loadPicture(decoder, "", {});
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages,
              ElementsAre(LoadMessage{Kind::LogError, "loadImageWithFilename: filename = nil!", ""},
                          LoadMessage{Kind::LogError, "Image gone: !", ""}));
  EXPECT_THAT(decoder.opened_, IsEmpty());
}

TEST(PictureLoading, name_that_no_file_can_have_is_told_on_the_screen) {
  FakeDecoder decoder(ofSize(800, 600));
  const LoadOutcome outcome = loadPicture(decoder, std::string("/p/a\0b.jpg", 10), {});
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages, ElementsAre(LoadMessage{Kind::DisplayError,
                                                        "File name contains weird char: ", "/p/a\\x00b.jpg"},
                                            LoadMessage{Kind::LogError, "Image gone: /p/a\\x00b.jpg!", ""}));
  EXPECT_THAT(decoder.opened_, IsEmpty());
}

TEST(PictureLoading, gone_file_is_told_probed_and_logged_in_this_order) {
  FakeFile file;
  file.there = false;
  FakeDecoder decoder(file);
  const LoadOutcome outcome = loadPicture(decoder, "/p/new\nline.jpg", {});
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages,
              ElementsAre(LoadMessage{Kind::DisplayError, "Image gone: ", "/p/new\\x0Aline.jpg"},
                          LoadMessage{Kind::FileAccessError, "", "/p/new\nline.jpg"},
                          LoadMessage{Kind::LogError, "Image gone: /p/new\\x0Aline.jpg!", ""}));
}

TEST(PictureLoading, unusable_source_is_logged_with_its_status) {
  FakeFile file = ofSize(800, 600);
  file.status = ImageSourceStatus::UnknownType;
  FakeDecoder decoder(file);
  const LoadOutcome outcome = loadPicture(decoder, "/p/a.jpg", {});
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages, ElementsAre(LoadMessage{Kind::LogError, "Image source status: -3 !\n", ""}));
}

TEST(PictureLoading, missing_properties_are_logged) {
  FakeFile file;
  file.properties.reset();
  FakeDecoder decoder(file);
  EXPECT_THAT(loadPicture(decoder, "/p/a.jpg", {}).messages,
              ElementsAre(LoadMessage{Kind::LogError, "Could not retrieve properties of file /p/a.jpg", ""}));
}

TEST(PictureLoading, too_large_on_both_sides_is_refused_on_the_screen_with_the_name_shown_now) {
  FakeDecoder decoder(ofSize(70000, 66000));
  const LoadOutcome outcome = loadPicture(decoder, "/p/huge.tif", {.filenameOnScreen = "/p/shown.jpg"});
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages,
              ElementsAre(LoadMessage{Kind::DisplayError, "Size of image ", "/p/shown.jpg > 65536 pixels!"}));
  EXPECT_THAT(decoder.thumbnailSizes_, IsEmpty());
}

TEST(PictureLoading, too_large_on_one_side_only_is_accepted) {
  for (const auto& [width, height] :
       {std::pair{70000, 1000}, {1000, 70000}, {65536, 65536}, {65537, 65536}}) {
    FakeDecoder decoder(ofSize(width, height));
    EXPECT_TRUE(loadPicture(decoder, "/p/a.jpg", {}).picture) << width << " x " << height;
  }
}

TEST(PictureLoading, shorter_side_decides_about_the_lower_limit) {
  const LoadLimits limits{.excludeSize = 500, .filenameOnScreen = {}};
  FakeDecoder small(ofSize(499, 4000));
  const LoadOutcome outcome = loadPicture(small, "/p/a.jpg", limits);
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages,
              ElementsAre(LoadMessage{Kind::LogError, "Image smaller than 500 pixels: /p/a.jpg", ""}));
  FakeDecoder low(ofSize(4000, 499));
  EXPECT_FALSE(loadPicture(low, "/p/a.jpg", limits).picture);
  FakeDecoder enough(ofSize(500, 500));
  EXPECT_TRUE(loadPicture(enough, "/p/a.jpg", limits).picture);
}

TEST(PictureLoading, lower_limit_is_compared_unsigned) {
  FakeDecoder negative(ofSize(-1, -1));
  EXPECT_TRUE(loadPicture(negative, "/p/a.jpg", {.excludeSize = 500, .filenameOnScreen = {}}).picture);
  FakeDecoder usual(ofSize(4000, 3000));
  EXPECT_FALSE(loadPicture(usual, "/p/a.jpg", {.excludeSize = 0xFFFFFFFF, .filenameOnScreen = {}}).picture);
}

TEST(PictureLoading, failed_decode_is_logged) {
  FakeFile file = ofSize(800, 600);
  file.image = nullptr;
  FakeDecoder decoder(file);
  const LoadOutcome outcome = loadPicture(decoder, "/p/a.jpg", {});
  EXPECT_FALSE(outcome.picture);
  EXPECT_THAT(outcome.messages,
              ElementsAre(LoadMessage{Kind::LogError, "Image loading failed: /p/a.jpg", ""}));
}

}  // namespace
}  // namespace lumivane
