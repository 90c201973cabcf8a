#include "imaging/ImageInfo.h"

#include <gtest/gtest.h>

namespace lumivane {
namespace {

ImageInfo infoOf(const PropertyDictionary& properties) {
  return getImageInfosFrom("/p/name.jpg", properties, false);
}

template <typename Fill>
PropertyDictionary withIptc(Fill fill) {
  PropertyDictionary properties;
  fill(properties.iptc.emplace());
  return properties;
}

TEST(ImageInfo, of_a_picture_that_tells_nothing_is_all_unknown) {
  const ImageInfo info = infoOf({});
  EXPECT_EQ(info.width, 0);
  EXPECT_EQ(info.height, 0);
  EXPECT_EQ(info.orientation, 1);
  EXPECT_EQ(info.latitude, 0);
  EXPECT_EQ(info.longitude, 0);
  EXPECT_FALSE(info.keywords);
  EXPECT_FALSE(info.caption);
  EXPECT_FALSE(info.date);
}

TEST(ImageInfo, takes_the_size_as_stored) {
  PropertyDictionary properties;
  properties.pixelWidth = 4000;
  properties.pixelHeight = 3000;
  properties.orientation = 6;
  const ImageInfo info = getImageSizeFrom(properties);
  EXPECT_EQ(info.width, 4000);
  EXPECT_EQ(info.height, 3000);
  EXPECT_EQ(info.orientation, 6);
}

TEST(ImageInfo, orientation_outside_1_to_8_is_1) {
  PropertyDictionary properties;
  for (const std::int32_t code : {0, 9, -1, 65535}) {
    properties.orientation = code;
    EXPECT_EQ(getImageSizeFrom(properties).orientation, 1) << code;
    EXPECT_EQ(infoOf(properties).orientation, 1) << code;
  }
  for (const std::int32_t code : {1, 2, 3, 4, 5, 6, 7, 8}) {
    properties.orientation = code;
    EXPECT_EQ(getImageSizeFrom(properties).orientation, code);
  }
}

TEST(ImageInfo, size_alone_reads_nothing_else) {
  PropertyDictionary properties = withIptc([](IptcDictionary& d) { d.keywords = {"a"}; });
  properties.gps = GpsDictionary{48.1, 11.5, "N", "E"};
  const ImageInfo info = getImageSizeFrom(properties);
  EXPECT_EQ(info.latitude, 0);
  EXPECT_FALSE(info.keywords);
}

struct PlaceCase {
  GpsDictionary gps;
  double latitude;
  double longitude;
};

TEST(ImageInfo, only_exactly_S_and_W_flip_the_sign) {
  const PlaceCase cases[] = {
      {{48.1, 11.5, "N", "E"}, 48.1, 11.5},   {{48.1, 11.5, "S", "W"}, -48.1, -11.5},
      {{48.1, 11.5, "s", "w"}, 48.1, 11.5},   {{48.1, 11.5, "South", "West"}, 48.1, 11.5},
      {{48.1, 11.5, {}, {}}, 48.1, 11.5},     {{48.1, {}, "S", "W"}, -48.1, 0},
      {{{}, 11.5, "S", "W"}, 0, -11.5},       {{{}, {}, "S", "W"}, 0, 0},
      {{-48.1, -11.5, "S", "W"}, 48.1, 11.5},
  };
  for (const PlaceCase& c : cases) {
    PropertyDictionary properties;
    properties.gps = c.gps;
    EXPECT_DOUBLE_EQ(infoOf(properties).latitude, c.latitude);
    EXPECT_DOUBLE_EQ(infoOf(properties).longitude, c.longitude);
  }
}

TEST(ImageInfo, keywords_are_joined) {
  EXPECT_EQ(infoOf(withIptc([](IptcDictionary& d) {
              d.keywords = {"lake", "boat", "two words"};
            })).keywords,
            "lake, boat, two words");
  EXPECT_EQ(infoOf(withIptc([](IptcDictionary& d) { d.keywords = {"lake"}; })).keywords, "lake");
}

TEST(ImageInfo, persons_stand_in_only_for_absent_keywords) {
  EXPECT_EQ(infoOf(withIptc([](IptcDictionary& d) {
              d.personInImage = {"Ada", "Grace"};
            })).keywords,
            "Ada, Grace");
  EXPECT_EQ(infoOf(withIptc([](IptcDictionary& d) {
              d.keywords = {"lake"};
              d.personInImage = {"Ada"};
            })).keywords,
            "lake");
}

TEST(ImageInfo, caption_is_the_first_that_is_found) {
  PropertyDictionary properties = withIptc([](IptcDictionary& d) {
    d.captionAbstract = "caption";
    d.artworkContentDescription = "artwork";
  });
  properties.tiffImageDescription = "description";
  EXPECT_EQ(infoOf(properties).caption, "caption");
  properties.iptc->captionAbstract.reset();
  EXPECT_EQ(infoOf(properties).caption, "artwork");
  properties.iptc->artworkContentDescription.reset();
  EXPECT_EQ(infoOf(properties).caption, "description");
}

TEST(ImageInfo, description_is_the_caption_without_any_iptc) {
  PropertyDictionary properties;
  properties.tiffImageDescription = "description";
  EXPECT_EQ(infoOf(properties).caption, "description");
}

TEST(ImageInfo, object_name_goes_before_the_caption) {
  EXPECT_EQ(infoOf(withIptc([](IptcDictionary& d) {
              d.captionAbstract = "caption";
              d.objectName = "title";
            })).caption,
            "title: caption");
  EXPECT_EQ(infoOf(withIptc([](IptcDictionary& d) { d.objectName = "title"; })).caption, "title");
  PropertyDictionary properties = withIptc([](IptcDictionary& d) { d.objectName = "title"; });
  properties.tiffImageDescription = "description";
  EXPECT_EQ(infoOf(properties).caption, "title: description");
}

TEST(ImageInfo, object_name_that_repeats_the_file_name_on_the_screen_is_left_out) {
  const PropertyDictionary properties = withIptc([](IptcDictionary& d) {
    d.captionAbstract = "caption";
    d.objectName = "DSC_1";
  });
  EXPECT_EQ(getImageInfosFrom("/p/DSC_1.jpg", properties, true).caption, "caption");
  EXPECT_EQ(getImageInfosFrom("/p/DSC_1.jpg", properties, false).caption, "DSC_1: caption");
  EXPECT_EQ(getImageInfosFrom("/p/DSC_2.jpg", properties, true).caption, "DSC_1: caption");
  const PropertyDictionary nameOnly = withIptc([](IptcDictionary& d) { d.objectName = "DSC_1"; });
  EXPECT_FALSE(getImageInfosFrom("/p/DSC_1.jpg", nameOnly, true).caption);
}

TEST(ImageInfo, base_name_is_the_last_component_without_its_last_extension) {
  const auto leavesOut = [](const char* path, const char* objectName) {
    return !getImageInfosFrom(path, withIptc([&](IptcDictionary& d) { d.objectName = objectName; }), true)
                .caption;
  };
  EXPECT_TRUE(leavesOut("/p.q/a.b.jpg", "a.b"));
  EXPECT_TRUE(leavesOut("/p/noextension", "noextension"));
  EXPECT_TRUE(leavesOut("/p/.hidden", ".hidden"));
  EXPECT_TRUE(leavesOut("bare.jpg", "bare"));
  EXPECT_FALSE(leavesOut("/p/a.jpg", "a.jpg"));
}

TEST(ImageInfo, date_stays_as_stored) {
  PropertyDictionary properties;
  properties.exifDateTimeOriginal = "2021:07:06 16:08:14";
  EXPECT_EQ(infoOf(properties).date, "2021:07:06 16:08:14");
  properties.exifDateTimeOriginal = "    :  :     :  :  ";
  EXPECT_EQ(infoOf(properties).date, "    :  :     :  :  ");
}

}  // namespace
}  // namespace lumivane
