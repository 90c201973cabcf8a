// lumivane place, and what lumivane inspect tells about places.
#include <exiv2/exiv2.hpp>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/tools/LumivaneToolFixture.h"

namespace lumivane {
namespace {

using Json = nlohmann::json;
using testing::EndsWith;
using testing::HasSubstr;

class Place : public LumivaneTool {
 protected:
  // The answer of a command that ends well, without its line end.
  std::string said(const std::vector<std::string>& words) {
    const ProgramAnswer answer = run(words);
    EXPECT_EQ(answer.status, 0) << answer.err;
    EXPECT_EQ(answer.err, "");
    return answer.out.substr(0, answer.out.find_last_not_of('\n') + 1);
  }
  void expectFailure(const std::vector<std::string>& words, int status, const char* problem) {
    const ProgramAnswer answer = run(words);
    EXPECT_EQ(answer.status, status) << words.back();
    EXPECT_EQ(answer.out, "") << words.back();
    EXPECT_THAT(answer.err, HasSubstr(problem));
  }
};

TEST_F(Place, TellsTownAndCountry) {
  EXPECT_EQ(said({"place", "48.137", "11.576"}), "Munich, Germany");
  EXPECT_EQ(said({"place", "+48.137", "+11.576"}), "Munich, Germany");
  EXPECT_EQ(said({"place", "-33.87", "151.21"}), "Sydney, Australia");
  EXPECT_EQ(said({"place", "--", "-22.91", "-43.17"}), "Rio de Janeiro, Brazil");
}

TEST_F(Place, FarFromTownsTellsTheCountryAlone) {
  EXPECT_EQ(said({"place", "64.8", "-18.6"}), "Iceland");
}

TEST_F(Place, TheCountryIsInTheUsersLanguage) {
  environment_["LANG"] = "de_DE.UTF-8";
  EXPECT_EQ(said({"place", "48.137", "11.576"}), "Munich, Deutschland");
  environment_["LC_MESSAGES"] = "fr_FR.UTF-8";
  EXPECT_EQ(said({"place", "48.137", "11.576"}), "Munich, Allemagne");
  environment_["LC_ALL"] = "C.UTF-8";
  EXPECT_EQ(said({"place", "48.137", "11.576"}), "Munich, Germany");
}

TEST_F(Place, TellsInJson) {
  EXPECT_EQ(Json::parse(said({"place", "--json", "48.137", "11.576"})), Json::parse(R"({"latitude": 48.137,
    "longitude": 11.576, "place": "Munich, Germany", "locality": "Munich", "country": "Germany"})"));
  EXPECT_EQ(Json::parse(said({"place", "64.8", "-18.6", "--json"})), Json::parse(R"({"latitude": 64.8,
    "longitude": -18.6, "place": "Iceland", "locality": null, "country": "Iceland"})"));
}

TEST_F(Place, WithoutAnAnswerItFails) {
  expectFailure({"place", "0", "-30"}, 1, "no place within 150 km");
  expectFailure({"place", "90", "0"}, 1, "no place within 150 km");
  expectFailure({"place", "-90", "180"}, 1, "no place within 150 km");
  expectFailure({"place", "--json", "30", "-180"}, 1, "no place within 150 km");
  for (const char* latitude : {"90.001", "-91", "nan", "inf", "1e300"}) {
    expectFailure({"place", latitude, "0"}, 1, "not a position on the globe");
  }
  expectFailure({"place", "0", "180.001"}, 1, "not a position on the globe");
}

TEST_F(Place, WrongUsageIsToldApart) {
  expectFailure({"place"}, 2, "something is missing");
  expectFailure({"place", "48"}, 2, "something is missing");
  expectFailure({"place", "48", "11", "7"}, 2, "not expected: 7");
  for (const char* word :
       {"Munich", "48,1", "48.1N", "", " 48", "0x10", "+-48", "++48", "1e999", "\x1B[31m"}) {
    expectFailure({"place", word, "11"}, 2, "not a number of degrees: ");
  }
  expectFailure({"place", "-inf", "0"}, 2, "unknown option");
  EXPECT_THAT(said({"place", "--help"}), HasSubstr("LATITUDE LONGITUDE"));
}

TEST_F(Place, AFileOfPlacesThatIsNoneFails) {
  environment_["LUMIVANE_PLACES"] = (folder_.path() / "gone.bin").string();
  expectFailure({"place", "48", "11"}, 1, "gone.bin: ");
  std::ofstream(folder_.path() / "text.bin") << "Munich\n";
  environment_["LUMIVANE_PLACES"] = (folder_.path() / "text.bin").string();
  expectFailure({"place", "48", "11"}, 1, "text.bin: not a file of places");
}

// Pictures with a position, a caption and a date.
class InspectPlaces : public Place {
 protected:
  InspectPlaces() { paint(path_); }

  void tag(const char* latitude, const char* north, const char* longitude, const char* east) {
    const auto image = Exiv2::ImageFactory::open(path_.string());
    Exiv2::ExifData exif;
    exif["Exif.Image.ImageDescription"] = "At the river";
    exif["Exif.Photo.DateTimeOriginal"] = "2024:05:06 07:08:09";
    exif["Exif.GPSInfo.GPSLatitude"] = latitude;
    exif["Exif.GPSInfo.GPSLatitudeRef"] = north;
    exif["Exif.GPSInfo.GPSLongitude"] = longitude;
    exif["Exif.GPSInfo.GPSLongitudeRef"] = east;
    image->setExifData(exif);
    image->writeMetadata();
  }
  Json inspected() { return Json::parse(said({"inspect", "--json", path_.string()})); }
  Json lines() { return inspected()["infoLines"]; }

  const std::filesystem::path path_ = pictures_ / "a.jpg";
};

TEST_F(InspectPlaces, ThePlaceAndTheLinesAreTold) {
  EXPECT_EQ(run({"settings", "ShowImageInfo", "true"}).status, 0);
  EXPECT_EQ(run({"settings", "ShowImagePath", "true"}).status, 0);
  tag("48/1 8/1 15/1", "N", "11/1 34/1 36/1", "E");
  EXPECT_EQ(inspected()["place"], "Munich, Germany");
  EXPECT_EQ(lines(), Json({path_.string(), "At the river. Munich, Germany. 2024:05:06 07:08:09"}));
  const std::string block = said({"inspect", path_.string()});
  EXPECT_THAT(block, HasSubstr("\n  place         Munich, Germany\n"));
  EXPECT_THAT(block,
              HasSubstr("\n  on screen     " + path_.string() + "\n                At the river. Munich, "));
}

TEST_F(InspectPlaces, FarOutTheCoordinatesStay) {
  EXPECT_EQ(run({"settings", "ShowImageInfo", "true"}).status, 0);
  tag("0/1 0/1 0/1", "N", "30/1 0/1 0/1", "W");
  EXPECT_TRUE(inspected()["place"].is_null());
  EXPECT_EQ(lines()[1], "At the river. GPS: -30.00 +0.00. 2024:05:06 07:08:09");
}

TEST_F(InspectPlaces, TheOriginIsTakenForNoPosition) {
  EXPECT_EQ(run({"settings", "ShowImageInfo", "true"}).status, 0);
  tag("0/1 0/1 0/1", "N", "0/1 0/1 0/1", "E");
  EXPECT_TRUE(inspected()["place"].is_null());
  EXPECT_EQ(lines()[1], "At the river. 2024:05:06 07:08:09");
}

TEST_F(InspectPlaces, TheDisplaysSettingsDecideWhatStandsOnTheScreen) {
  tag("48/1 8/1 15/1", "N", "11/1 34/1 36/1", "E");
  const auto set = [this](const char* key, const char* value) {
    EXPECT_EQ(run({"settings", key, value}).status, 0);
  };
  set("ShowImageInfo", "false");
  set("ShowImagePath", "false");
  set("DisplayFilename", "true");
  set("ShowFileExtension", "true");
  EXPECT_EQ(lines(), Json({"a.jpg"}));
  set("ShowFileExtension", "false");
  EXPECT_EQ(lines(), Json({"a"}));
  set("DisplayFilename", "false");
  EXPECT_EQ(lines(), Json({""}));
  set("ShowImagePath", "true");
  EXPECT_EQ(lines(), Json({pictures_.string()}));
  set("ShowImageInfo", "true");
  EXPECT_EQ(Json::parse(said({"inspect", "--json", "--min-size", "1", path_.string()}))["infoLines"],
            Json({pictures_.string(), "At the river. Munich, Germany. 2024:05:06 07:08:09"}));
}

TEST_F(InspectPlaces, APictureThatIsNotShownHasNoLines) {
  tag("48/1 8/1 15/1", "N", "11/1 34/1 36/1", "E");
  const Json refused = Json::parse(said({"inspect", "--json", "--min-size", "5000", path_.string()}));
  EXPECT_EQ(refused["infoLines"], Json::array());
  EXPECT_EQ(refused["place"], "Munich, Germany");
}

TEST_F(InspectPlaces, WithoutTheFileOfPlacesTheCoordinatesStay) {
  EXPECT_EQ(run({"settings", "ShowImageInfo", "true"}).status, 0);
  tag("48/1 8/1 15/1", "N", "11/1 34/1 36/1", "E");
  environment_["LUMIVANE_PLACES"] = "/dev/null";
  const ProgramAnswer answer = run({"inspect", "--json", path_.string(), path_.string()});
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.err, "lumivane: places cannot be named: /dev/null: not a regular file\n");  // said once
  const Json json = Json::parse(answer.out.substr(0, answer.out.find('\n')));
  EXPECT_TRUE(json["place"].is_null());
  EXPECT_EQ(json["infoLines"][1], "At the river. GPS: +11.58 +48.14. 2024:05:06 07:08:09");
}

}  // namespace
}  // namespace lumivane
