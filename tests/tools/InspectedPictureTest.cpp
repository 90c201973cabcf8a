#include "tools/InspectedPicture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "platform/PrintableText.h"

namespace lumivane {
namespace {

using Json = nlohmann::json;
using testing::HasSubstr;

// Pictures that a test describes.
class OnePictureDecoder final : public ImageDecoder {
 public:
  bool opens = true;
  ImageSourceStatus status = ImageSourceStatus::Complete;
  PropertyDictionary properties;

  [[nodiscard]] std::unique_ptr<ImageSource> open(const std::string& /*path*/) override {
    return opens ? std::make_unique<Source>(*this) : nullptr;
  }

 private:
  struct Source final : ImageSource {
    explicit Source(OnePictureDecoder& d) : decoder(d) {}
    [[nodiscard]] ImageSourceStatus status() const override { return decoder.status; }
    [[nodiscard]] std::optional<PropertyDictionary> properties() override { return decoder.properties; }
    [[nodiscard]] BitmapRef thumbnail(int /*maxPixelSize*/) override {
      const SizePx size{8, 6};
      return std::make_shared<Bitmap>(PixelBuffer::allocate(packedLevelsBytes(size)), packedLevels(size), 6,
                                      true);
    }
    OnePictureDecoder& decoder;
  };
};

class InspectedPictureTest : public testing::Test {
 protected:
  InspectedPictureTest() {
    decoder_.properties.pixelWidth = 800;
    decoder_.properties.pixelHeight = 600;
    decoder_.properties.orientation = 6;
  }
  [[nodiscard]] InspectedPicture inspect(std::uint32_t excludeSize = 300) {
    rules_.excludeSize = excludeSize;
    return inspectPicture(decoder_, "/p/a.jpg", rules_, placeAt_);
  }

  OnePictureDecoder decoder_;
  InspectRules rules_;
  Result<Placemark> place_ = Error{"no place within 150 km"};
  int placeRequests_ = 0;
  const PlaceLookup placeAt_ = [this](double, double) {
    ++placeRequests_;
    return place_;
  };
};

TEST_F(InspectedPictureTest, AnAcceptedPictureTellsItsSizes) {
  const Json json = Json::parse(jsonLine(inspect()));
  EXPECT_EQ(json,
            Json::parse(R"({"path": "/p/a.jpg", "accepted": true, "reason": null, "width": 800, "height": 600,
    "orientation": 6, "latitude": null, "longitude": null, "place": null, "keywords": null, "caption": null,
    "date": null, "infoLines": ["/p/a.jpg"], "decodedWidth": 6, "decodedHeight": 8})"));
}

TEST_F(InspectedPictureTest, ARefusedPictureStillTellsWhatItIs) {
  const InspectedPicture picture = inspect(700);
  const Json json = Json::parse(jsonLine(picture));
  EXPECT_TRUE(picture.couldBeOpened);
  EXPECT_EQ(json["accepted"], false);
  EXPECT_EQ(json["reason"], "Image smaller than 700 pixels: /p/a.jpg");
  EXPECT_EQ(json["width"], 800);
  EXPECT_TRUE(json["decodedWidth"].is_null());
}

TEST_F(InspectedPictureTest, WhatIsNoPictureHasNothingToTell) {
  decoder_.status = ImageSourceStatus::UnknownType;
  const InspectedPicture picture = inspect();
  const Json json = Json::parse(jsonLine(picture));
  EXPECT_TRUE(picture.couldBeOpened);
  EXPECT_EQ(json["reason"], "Image source status: -3 !\n");
  EXPECT_TRUE(json["width"].is_null());
  EXPECT_TRUE(json["orientation"].is_null());
}

TEST_F(InspectedPictureTest, AFileThatCannotBeOpenedSaysSo) {
  decoder_.opens = false;
  const InspectedPicture picture = inspect();
  EXPECT_FALSE(picture.couldBeOpened);
  EXPECT_EQ(picture.reason, "Image gone: /p/a.jpg!");
}

TEST_F(InspectedPictureTest, ThePositionHasItsSigns) {
  decoder_.properties.gps = GpsDictionary{48.1, 11.5, "S", "W"};
  const Json json = Json::parse(jsonLine(inspect()));
  EXPECT_EQ(json["latitude"], -48.1);
  EXPECT_EQ(json["longitude"], -11.5);
  EXPECT_THAT(readableBlock(inspect()), HasSubstr("-48.1, -11.5"));
}

TEST_F(InspectedPictureTest, HalfAPositionIsNone) {
  decoder_.properties.gps = GpsDictionary{48.1, std::nullopt, "N", "E"};
  const Json json = Json::parse(jsonLine(inspect()));
  EXPECT_TRUE(json["latitude"].is_null());
  EXPECT_TRUE(json["longitude"].is_null());
}

TEST_F(InspectedPictureTest, ThePlaceStandsForTheCoordinates) {
  decoder_.properties.gps = GpsDictionary{48.1, 11.5, "N", "E"};
  EXPECT_EQ(inspect().place, std::nullopt);
  EXPECT_THAT(inspect().infoLines, testing::ElementsAre("/p/a.jpg", "GPS: +11.50 +48.10"));
  place_ = Placemark{"Munich", "Germany"};
  EXPECT_EQ(inspect().place, "Munich, Germany");
  EXPECT_THAT(inspect().infoLines, testing::ElementsAre("/p/a.jpg", "Munich, Germany"));
  EXPECT_EQ(Json::parse(jsonLine(inspect()))["place"], "Munich, Germany");
  rules_.showImageInfo = false;
  EXPECT_THAT(inspect().infoLines, testing::ElementsAre("/p/a.jpg"));
}

TEST_F(InspectedPictureTest, WithoutAPositionNobodyIsAsked) {
  place_ = Placemark{"Munich", "Germany"};
  EXPECT_EQ(inspect().place, std::nullopt);
  decoder_.properties.gps = GpsDictionary{0, 0, "N", "E"};
  EXPECT_EQ(inspect().place, std::nullopt);
  EXPECT_EQ(placeRequests_, 0);
}

TEST_F(InspectedPictureTest, APictureThatIsNotShownHasNoLines) {
  EXPECT_TRUE(inspect(700).infoLines.empty());
  EXPECT_EQ(Json::parse(jsonLine(inspect(700)))["infoLines"], Json::array());
}

TEST_F(InspectedPictureTest, TheFirstLineIsOfTheAbsolutePath) {
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(inspectPicture(decoder_, "./b/../a.jpg", rules_, placeAt_).infoLines.at(0), here + "/a.jpg");
}

TEST_F(InspectedPictureTest, AnyBytesGiveValidJson) {
  decoder_.properties.exifDateTimeOriginal = "\xFF\"\n";
  const InspectedPicture picture = inspectPicture(decoder_, "/p/\xE9.jpg", rules_, placeAt_);
  const Json json = Json::parse(jsonLine(picture));
  EXPECT_EQ(json["path"], "/p/\\xE9.jpg");
  EXPECT_TRUE(isValidUtf8(json["date"].get<std::string>()));
  EXPECT_EQ(jsonLine(picture).find('\n'), std::string::npos);
}

TEST_F(InspectedPictureTest, ControlCharactersDoNotReachTheTerminal) {
  decoder_.properties.tiffImageDescription = "\x1B[31mred\nline";
  EXPECT_THAT(readableBlock(inspect()), HasSubstr("\\x1B[31mred\\x0Aline"));
}

}  // namespace
}  // namespace lumivane
