// Every sample picture through the very decoder, against what independent readers say of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>

#include "imaging/ImageInfo.h"
#include "imaging/decode/FileImageDecoder.h"
#include "tests/imaging/SampleManifest.h"
#include "tests/imaging/TestPixels.h"

namespace lumivane {
namespace {

constexpr double kMostDifference = 6;
constexpr double kDegrees = 1e-6;

// Where the readers behind the table and this decoder differ for a good reason.
struct KnownDifference {
  enum What { StoredSize, Multiplied, Everything, Refused };
  const char* file;
  What what;
  const char* reason;
};

constexpr KnownDifference kKnownDifferences[] = {
    {"photos/heic/outdoor.heic", KnownDifference::StoredSize,
     "its clean aperture cuts off a row, which nobody sees"},
    {"photos/heic/rainbow-451x461.heic", KnownDifference::StoredSize,
     "its clean aperture cuts off a row and a column"},
    {"photos/jxl/alpha_premultiplied.jxl", KnownDifference::Multiplied,
     "the golden thumbnail's maker overlooked that the colours are stored multiplied by their alpha"},
    {"photos/raw/canon_eos_6d.dng", KnownDifference::Everything,
     "the table shows the preview; here it is the raw data"},
    {"photos/fuzz/clusterfuzz-testcase-minimized-djxl_fuzzer-5899664422993920", KnownDifference::Refused,
     "29 bytes of which libjxl says that they are cut short; the table's reader shows nothing but black"},
    {"photos/fuzz/1af8e95246f4cfa4e5e58f67d6428ea3.tif", KnownDifference::Refused,
     "damaged TIFF with subsampled colours, which libvips does not read"},
    {"photos/fuzz/m1-76d5d8fd02d58b774f2bae6f7b763e3e.tif", KnownDifference::Refused,
     "damaged TIFF with subsampled colours, which libvips does not read"},
};

class SamplePicturesTest : public testing::TestWithParam<SampleRow> {
 protected:
  const std::string& column(const char* name) const { return GetParam()[name]; }

  bool differsIn(KnownDifference::What what) const {
    return std::any_of(
        std::begin(kKnownDifferences), std::end(kKnownDifferences),
        [this, what](const auto& known) { return known.what == what && GetParam().file() == known.file; });
  }

  void expectInfo(const PropertyDictionary& properties, const ImageInfo& info) const {
    expectText("date_time_original", properties.exifDateTimeOriginal.value_or(""));
    expectText("caption", captionOf(properties));
    expectText("object_name",
               properties.iptc && properties.iptc->objectName ? *properties.iptc->objectName : "");
    const std::string persons = column("persons");
    const std::string keywords = info.keywords.value_or("");
    EXPECT_EQ(keywords, column("keywords").empty() ? persons : column("keywords"));
    expectPlace(info);
  }

  void expectText(const char* name, const std::string& text) const { EXPECT_EQ(text, column(name)) << name; }

  static std::string captionOf(PropertyDictionary properties) {
    if (properties.iptc) properties.iptc->objectName.reset();
    return getImageInfosFrom("", properties, false).caption.value_or("");
  }

  void expectPlace(const ImageInfo& info) const {
    if (column("latitude").empty()) return;
    double latitude = std::strtod(column("latitude").c_str(), nullptr);
    double longitude = std::strtod(column("longitude").c_str(), nullptr);
    // The show takes exactly "S" and "W" for south and west; the readers behind the table take any case.
    if (column("gps_lat_ref") != "S") latitude = std::abs(latitude);
    if (column("gps_lon_ref") != "W") longitude = std::abs(longitude);
    EXPECT_NEAR(info.latitude, latitude, kDegrees);
    EXPECT_NEAR(info.longitude, longitude, kDegrees);
  }

  void expectSizes(const PropertyDictionary& properties, const Bitmap& bitmap) const {
    if (!column("width").empty() && !differsIn(KnownDifference::StoredSize)) {
      EXPECT_EQ(std::to_string(properties.pixelWidth.value_or(0)), column("width"));
      EXPECT_EQ(std::to_string(properties.pixelHeight.value_or(0)), column("height"));
    }
    const ImageInfo info = getImageSizeFrom(properties);
    SizePx seen{info.width, info.height};
    if (info.orientation >= 5) std::swap(seen.width, seen.height);
    EXPECT_EQ(std::to_string(seen.width), column("display_width"));
    EXPECT_EQ(std::to_string(seen.height), column("display_height"));
    if (std::max(seen.width, seen.height) <= kThumbnailMaxPixelSize) {
      EXPECT_EQ(bitmap.displaySize(), seen);
    } else {
      EXPECT_EQ(std::max(bitmap.displaySize().width, bitmap.displaySize().height), kThumbnailMaxPixelSize);
    }
  }

  void expectOrientation(const PropertyDictionary& properties) const {
    // These containers turn by boxes of their own, of which Exif's number knows nothing.
    const std::string& format = column("format");
    if (format == "HEIC" || format == "HEIF" || format == "AVIF" || format.starts_with("JXL")) return;
    if (column("orientation").empty()) return;
    EXPECT_EQ(std::to_string(properties.orientation.value_or(0)), column("orientation"));
  }

  void expectPixels(const Bitmap& bitmap) const {
    if (column("golden").empty()) return;
    const TestPixels small = areaShrunkToFit(asSeen(bitmap), 64);
    const std::filesystem::path golden = *samplesFolder() / column("golden");
    double difference = meanDifference(
        small, differsIn(KnownDifference::Multiplied) ? readMultipliedOnBlack(golden) : readOnBlack(golden));
    if (difference > kMostDifference && !column("golden_alt").empty()) {
      difference =
          std::min(difference, meanDifference(small, readOnBlack(*samplesFolder() / column("golden_alt"))));
    }
    RecordProperty("difference", std::to_string(difference));
    EXPECT_LE(difference, kMostDifference);
  }
};

TEST_P(SamplePicturesTest, is_read_as_independent_readers_read_it) {
  FileImageDecoder decoder;
  const auto source = decoder.open(*samplesFolder() / GetParam().file());
  ASSERT_TRUE(source);
  const bool ok = column("decode") == "ok" && !differsIn(KnownDifference::Refused);
  if (ok) {
    ASSERT_EQ(source->status(), ImageSourceStatus::Complete);
  }
  const auto properties = source->properties();
  const BitmapRef bitmap = source->thumbnail(kThumbnailMaxPixelSize);
  if (!ok) return;  // Having come this far is all that is asked of a broken file.
  ASSERT_TRUE(properties);
  expectInfo(*properties, getImageInfosFrom("", *properties, false));
  expectOrientation(*properties);
  ASSERT_TRUE(bitmap);
  if (differsIn(KnownDifference::Everything)) return;
  expectSizes(*properties, *bitmap);
  expectPixels(*bitmap);
}

// A difference that is none any more must not stay in the list.
TEST_P(SamplePicturesTest, is_refused_only_where_that_is_known) {
  if (!differsIn(KnownDifference::Refused)) return;
  FileImageDecoder decoder;
  const auto source = decoder.open(*samplesFolder() / GetParam().file());
  ASSERT_TRUE(source);
  EXPECT_FALSE(source->thumbnail(kThumbnailMaxPixelSize));
}

std::string testName(const testing::TestParamInfo<SampleRow>& info) {
  std::string name = info.param.file().substr(7);
  for (char& c : name) c = std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
  return name;
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SamplePicturesTest);
INSTANTIATE_TEST_SUITE_P(Samples, SamplePicturesTest, testing::ValuesIn(sampleRows("photos/")), testName);

TEST(SampleManifest, is_there_or_its_absence_is_told) {
  if (!samplesFolder()) GTEST_SKIP() << "no sample pictures; set LUMIVANE_SAMPLES";
  EXPECT_GT(sampleRows("photos/").size(), 100U);
}

}  // namespace
}  // namespace lumivane
