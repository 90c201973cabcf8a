#include "imaging/decode/MetadataItems.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

class MetadataItemsTest : public testing::Test {
 protected:
  PropertyDictionary items() { return metadataItems(exif_, iptc_, xmp_); }

  void setRationals(const char* key, const char* text) {
    const auto value = Exiv2::Value::create(Exiv2::unsignedRational);
    value->read(text);
    exif_.add(Exiv2::ExifKey(key), value.get());
  }

  void addIptc(const char* key, const std::string& text) {
    Exiv2::StringValue value(text);
    iptc_.add(Exiv2::IptcKey(key), &value);
  }

  Exiv2::ExifData exif_;
  Exiv2::IptcData iptc_;
  Exiv2::XmpData xmp_;
};

TEST_F(MetadataItemsTest, nothing_is_nothing) {
  const PropertyDictionary properties = items();
  EXPECT_FALSE(properties.orientation);
  EXPECT_FALSE(properties.gps);
  EXPECT_FALSE(properties.iptc);
  EXPECT_FALSE(properties.tiffImageDescription);
  EXPECT_FALSE(properties.exifDateTimeOriginal);
}

TEST_F(MetadataItemsTest, orientation_is_handed_on_as_stored) {
  exif_["Exif.Image.Orientation"] = std::uint16_t{9};
  EXPECT_EQ(items().orientation, 9);
  exif_["Exif.Image.Orientation"] = std::uint16_t{6};
  xmp_["Xmp.tiff.Orientation"] = 3;
  EXPECT_EQ(items().orientation, 6);
}

TEST_F(MetadataItemsTest, xmp_orientation_stands_in) {
  xmp_["Xmp.tiff.Orientation"] = 8;
  EXPECT_EQ(items().orientation, 8);
}

TEST_F(MetadataItemsTest, degrees_minutes_and_seconds_add_up) {
  setRationals("Exif.GPSInfo.GPSLatitude", "48/1 30/1 36/1");
  setRationals("Exif.GPSInfo.GPSLongitude", "115/10 0/1 0/1");
  exif_["Exif.GPSInfo.GPSLatitudeRef"] = "S";
  exif_["Exif.GPSInfo.GPSLongitudeRef"] = "w";
  const auto gps = items().gps;
  ASSERT_TRUE(gps);
  EXPECT_DOUBLE_EQ(gps->latitude.value(), 48.51);
  EXPECT_DOUBLE_EQ(gps->longitude.value(), 11.5);
  EXPECT_EQ(gps->latitudeRef, "S");
  EXPECT_EQ(gps->longitudeRef, "w");
}

TEST_F(MetadataItemsTest, missing_parts_of_a_place_count_as_nothing) {
  setRationals("Exif.GPSInfo.GPSLatitude", "48/1 30/1 0/0");
  setRationals("Exif.GPSInfo.GPSLongitude", "11/1");
  const auto gps = items().gps;
  ASSERT_TRUE(gps);
  EXPECT_DOUBLE_EQ(gps->latitude.value(), 48.5);
  EXPECT_DOUBLE_EQ(gps->longitude.value(), 11);
}

TEST_F(MetadataItemsTest, places_off_the_globe_are_absent) {
  setRationals("Exif.GPSInfo.GPSLatitude", "4294967295/1");
  setRationals("Exif.GPSInfo.GPSLongitude", "0/0 0/0 0/0");
  EXPECT_FALSE(items().gps);
}

TEST_F(MetadataItemsTest, place_as_text_is_read) {
  const Exiv2::AsciiValue text("52,0,50");
  exif_.add(Exiv2::ExifKey("Exif.GPSInfo.GPSLatitude"), &text);
  EXPECT_NEAR(items().gps->latitude.value(), 52 + 50.0 / 3600, 1e-9);
}

TEST_F(MetadataItemsTest, keywords_come_in_their_order_and_empty_ones_do_not) {
  addIptc("Iptc.Application2.Keywords", "lake");
  addIptc("Iptc.Application2.Keywords", "");
  addIptc("Iptc.Application2.Keywords", "Z\xFCrich");
  EXPECT_EQ(items().iptc->keywords, (std::vector<std::string>{"lake", "Zürich"}));
}

TEST_F(MetadataItemsTest, captions_and_titles) {
  addIptc("Iptc.Application2.Caption", "caption");
  addIptc("Iptc.Application2.ObjectName", "title");
  exif_["Exif.Image.ImageDescription"] = "description";
  exif_["Exif.Photo.DateTimeOriginal"] = "2021:07:06 16:08:14";
  const PropertyDictionary properties = items();
  EXPECT_EQ(properties.iptc->captionAbstract, "caption");
  EXPECT_EQ(properties.iptc->objectName, "title");
  EXPECT_EQ(properties.tiffImageDescription, "description");
  EXPECT_EQ(properties.exifDateTimeOriginal, "2021:07:06 16:08:14");
}

TEST_F(MetadataItemsTest, persons_and_artwork_come_from_xmp) {
  const auto persons = Exiv2::Value::create(Exiv2::xmpBag);
  persons->read("Ada");
  persons->read("Grace");
  xmp_.add(Exiv2::XmpKey("Xmp.iptcExt.PersonInImage"), persons.get());
  const auto iptc = items().iptc;
  ASSERT_TRUE(iptc);
  EXPECT_EQ(iptc->personInImage, (std::vector<std::string>{"Ada", "Grace"}));
  EXPECT_FALSE(iptc->keywords);
}

}  // namespace
}  // namespace lumivane
