#include "imaging/places/PlacesFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <random>

#include "imaging/places/PlacesFormat.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrittenPlaces.h"

namespace lumivane {
namespace {

namespace fmt = places_format;
using testing::EndsWith;
using testing::HasSubstr;

const std::vector<WrittenPlace> kFour = {{48.137, 11.575, "Munich", "DE"},
                                         {48.853, 2.349, "Paris", "FR"},
                                         {-33.868, 151.207, "Sydney", "AU"},
                                         {52.520, 13.405, "Berlin", "DE"}};

class PlacesFileTest : public testing::Test {
 protected:
  Result<PlacesFile> open(const std::string& content) {
    return PlacesFile::open(folder_.write("places.bin", content));
  }
  std::string problem(const std::string& content) {
    const Result<PlacesFile> file = open(content);
    return file ? "no problem" : file.error();
  }

  const TemporaryFolder folder_;
};

// Independent of the tree: looks at every place.
double leastDistanceKm(const std::vector<WrittenPlace>& places, double latitude, double longitude) {
  const GlobePoint from = globePoint(latitude, longitude);
  double least = 1e9;
  for (const WrittenPlace& place : places) {
    const GlobePoint to = globePoint(place.latitude, place.longitude);
    const double cosine = from[0] * to[0] + from[1] * to[1] + from[2] * to[2];
    const double sine = std::hypot(from[1] * to[2] - from[2] * to[1], from[2] * to[0] - from[0] * to[2],
                                   from[0] * to[1] - from[1] * to[0]);
    least = std::min(least, 6371.0088 * std::atan2(sine, cosine));
  }
  return least;
}

TEST_F(PlacesFileTest, TheNearestPlaceIsFound) {
  const Result<PlacesFile> file = open(writtenPlaces(kFour));
  ASSERT_TRUE(file) << file.error();
  EXPECT_EQ(file.value().size(), 4U);
  const NearPlace nearest = file.value().nearestTo(48.2, 11.6);
  EXPECT_EQ(nearest.name, "Munich");
  EXPECT_EQ(nearest.countryCode, "DE");
  EXPECT_NEAR(nearest.distanceKm, 7.25, 0.05);
  EXPECT_EQ(file.value().nearestTo(52, 13).name, "Berlin");
  EXPECT_EQ(file.value().nearestTo(-80, 10).name, "Sydney");
}

TEST_F(PlacesFileTest, OnePlaceIsEnough) {
  const Result<PlacesFile> file = open(writtenPlaces({{0, 0, "Null Island", "ZZ"}}));
  ASSERT_TRUE(file) << file.error();
  EXPECT_EQ(file.value().nearestTo(0, 0).distanceKm, 0);
  EXPECT_NEAR(file.value().nearestTo(0, 180).distanceKm, 20015.1, 0.1);  // the other side of the globe
}

TEST_F(PlacesFileTest, TheSearchFindsWhatLookingAtEveryPlaceFinds) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> anywhere(-1, 1);
  for (const std::size_t count : {2U, 3U, 5U, 64U, 1000U}) {
    std::vector<WrittenPlace> places;
    for (std::size_t i = 0; i < count; ++i) {
      places.push_back({90 * anywhere(random), 180 * anywhere(random), "P" + std::to_string(i), "AA"});
    }
    const Result<PlacesFile> file = open(writtenPlaces(places));
    ASSERT_TRUE(file) << file.error();
    for (int i = 0; i < 300; ++i) {
      const double latitude = 90 * anywhere(random);
      const double longitude = 180 * anywhere(random);
      EXPECT_NEAR(file.value().nearestTo(latitude, longitude).distanceKm,
                  leastDistanceKm(places, latitude, longitude), 1e-4)
          << count << " places, " << latitude << " " << longitude;
    }
  }
}

TEST_F(PlacesFileTest, ManyPlacesInOneSpotAreNoTrouble) {
  std::vector<WrittenPlace> places(500, {10, 20, "Here", "AA"});
  places.push_back({10.1, 20, "There", "AA"});
  const Result<PlacesFile> file = open(writtenPlaces(places));
  ASSERT_TRUE(file) << file.error();
  EXPECT_EQ(file.value().nearestTo(10.09, 20).name, "There");
  EXPECT_EQ(file.value().nearestTo(10.01, 20).name, "Here");
}

TEST_F(PlacesFileTest, TheDateLineAndThePolesAreNoBorders) {
  const Result<PlacesFile> file = open(writtenPlaces({{0, 179.9, "West of it", "AA"},
                                                      {1, -178, "Farther", "AA"},
                                                      {89.9, -90, "Near the pole", "AA"},
                                                      {88, 90, "Not so near", "AA"}}));
  ASSERT_TRUE(file) << file.error();
  for (const double longitude : {179.95, 180.0, -180.0, -179.95}) {
    EXPECT_EQ(file.value().nearestTo(0, longitude).name, "West of it") << longitude;
  }
  EXPECT_NEAR(file.value().nearestTo(0, -179.9).distanceKm, 22.24, 0.01);
  for (const double longitude : {-180.0, -90.0, 0.0, 90.0, 180.0}) {
    EXPECT_EQ(file.value().nearestTo(90, longitude).name, "Near the pole") << longitude;
    EXPECT_NEAR(file.value().nearestTo(90, longitude).distanceKm, 11.12, 0.01);
  }
  EXPECT_EQ(file.value().nearestTo(89.9, 90).name, "Near the pole");  // over the pole is shorter
}

TEST_F(PlacesFileTest, EveryTruncationIsAnError) {
  const std::string whole = writtenPlaces(kFour);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    EXPECT_FALSE(open(whole.substr(0, length))) << length << " of " << whole.size() << " bytes";
  }
  EXPECT_THAT(problem(whole + '\0'), EndsWith("cut off"));
}

TEST_F(PlacesFileTest, EveryChangedByteIsAnError) {
  const std::string whole = writtenPlaces(kFour);
  for (std::size_t at = 0; at < whole.size(); ++at) {
    for (const unsigned flip : {0x01U, 0x80U, 0xFFU}) {
      std::string changed = whole;
      changed[at] = static_cast<char>(static_cast<unsigned char>(changed[at]) ^ flip);
      EXPECT_FALSE(open(changed)) << "byte " << at << ", " << flip;
    }
  }
}

TEST_F(PlacesFileTest, EveryFieldOfTheHeaderIsChecked) {
  const std::string whole = writtenPlaces(kFour);
  EXPECT_THAT(problem(withRightChecksum("lvPLACES" + whole.substr(8))), EndsWith("not a file of places"));
  for (const std::uint32_t version : {0U, 2U, 0xFFFFFFFFU}) {
    EXPECT_THAT(problem(withNumberAt(whole, fmt::kVersionAt, version)), EndsWith("another version"));
  }
  for (const std::size_t field : {fmt::kPlaceCountAt, fmt::kCountryCountAt, fmt::kNameBytesAt}) {
    for (const std::uint32_t number : {0U, 1U, 5U, 257U, 4'000'001U, 0x0FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
      EXPECT_FALSE(open(withNumberAt(whole, field, number))) << field << " " << number;
    }
    EXPECT_THAT(problem(withNumberAt(whole, field, 0)), EndsWith("impossible counts"));
    EXPECT_THAT(problem(withNumberAt(whole, field, 0xFFFFFFFFU)), EndsWith("impossible counts"));
  }
  EXPECT_THAT(problem(withNumberAt(whole, fmt::kPlaceCountAt, 3)), EndsWith("cut off"));
  for (const std::uint32_t size : {0U, 31U, 0xFFFFFFFFU}) {
    EXPECT_THAT(problem(withNumberAt(whole, fmt::kFileSizeAt, size)), EndsWith("cut off"));
  }
}

// With a checksum that is right, so that the checks behind it are what refuses the file.
TEST_F(PlacesFileTest, PlacesThatPointOutsideAreAnError) {
  const std::string whole = writtenPlaces(kFour);
  const auto names = static_cast<std::uint32_t>(whole.size() - fmt::kHeaderBytes - 4 * fmt::kPlaceBytes -
                                                3 * fmt::kCountryBytes - fmt::kChecksumBytes);
  for (std::uint32_t place = 0; place < 4; ++place) {
    const std::size_t at = fmt::kHeaderBytes + fmt::kPlaceBytes * place + fmt::kPackedAt;
    for (const std::uint32_t wrong : {names, names - 1, 0x00FFFFFFU, 3U << 24, 0xFF000000U, 0xFFFFFFFFU}) {
      EXPECT_THAT(problem(withNumberAt(whole, at, wrong)), EndsWith("damaged")) << place << " " << wrong;
    }
  }
}

TEST_F(PlacesFileTest, NamesAndCodesMustBeText) {
  EXPECT_THAT(problem(writtenPlaces({{0, 0, "", "AA"}, {1, 1, "B", "AA"}})), EndsWith("damaged"));
  EXPECT_THAT(problem(writtenPlaces({{0, 0, "\xE9t\xE9", "AA"}})), EndsWith("damaged"));
  EXPECT_THAT(problem(writtenPlaces({{0, 0, "B", "aa"}})), EndsWith("damaged"));
  EXPECT_THAT(problem(writtenPlaces({{0, 0, "B", "A\x01"}})), EndsWith("damaged"));
  EXPECT_EQ(problem(writtenPlaces({{0, 0, std::string(255, 'x'), "AA"}})), "no problem");
}

// Whatever stands where points should be: a look-up ends, and names one of the places.
TEST_F(PlacesFileTest, PointsThatMakeNoSenseDoNoHarm) {
  std::mt19937 random(11);
  std::string content = writtenPlaces(std::vector<WrittenPlace>(200, {1, 2, "Somewhere", "AA"}));
  for (std::size_t place = 0; place < 200; ++place) {
    for (std::size_t i = 0; i < fmt::kPackedAt; ++i) {
      content[fmt::kHeaderBytes + fmt::kPlaceBytes * place + i] = static_cast<char>(random());
    }
  }
  const Result<PlacesFile> file = open(withRightChecksum(content));
  ASSERT_TRUE(file) << file.error();
  for (int degrees = -90; degrees <= 90; degrees += 5) {
    const NearPlace nearest = file.value().nearestTo(degrees, 2 * degrees);
    EXPECT_EQ(nearest.name, "Somewhere");
    EXPECT_TRUE(std::isfinite(nearest.distanceKm));
  }
}

TEST_F(PlacesFileTest, RandomBytesAreAnError) {
  std::mt19937 random(3);
  for (int i = 0; i < 300; ++i) {
    std::string content(random() % 600, '\0');
    for (char& c : content) c = static_cast<char>(random());
    if (i % 2 == 0) content = "LVPLACES" + content;
    EXPECT_FALSE(open(content)) << i;
  }
}

TEST_F(PlacesFileTest, WhatIsNoRegularFileIsAnErrorAtOnce) {
  const std::string fifo = folder_ / "fifo";
  ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
  EXPECT_THAT(PlacesFile::open(fifo).error(), EndsWith("not a regular file"));
  EXPECT_THAT(PlacesFile::open(folder_.path()).error(), EndsWith("not a regular file"));
  EXPECT_THAT(PlacesFile::open("/dev/zero").error(), EndsWith("not a regular file"));
  EXPECT_THAT(PlacesFile::open(folder_ / "gone").error(), HasSubstr("gone: "));
  EXPECT_FALSE(PlacesFile::open(""));
  EXPECT_FALSE(PlacesFile::open(folder_ / std::string("a\0b", 3)));
  EXPECT_THAT(problem(""), EndsWith("empty"));
  EXPECT_THAT(PlacesFile::open(folder_ / "line\nend").error(), HasSubstr("line\\x0Aend"));
}

TEST_F(PlacesFileTest, AHugeFileIsRefusedUnread) {
  const std::string path = folder_.write("huge", writtenPlaces(kFour));
  std::filesystem::resize_file(path, std::uintmax_t{1} << 40);
  EXPECT_THAT(PlacesFile::open(path).error(), EndsWith("too large"));
}

TEST_F(PlacesFileTest, AnOpenedFileMayBeMovedAndItsNameMayGo) {
  const std::string path = folder_.write("places.bin", writtenPlaces(kFour));
  Result<PlacesFile> opened = PlacesFile::open(path);
  ASSERT_TRUE(opened) << opened.error();
  const PlacesFile file = std::move(opened).value();
  std::filesystem::remove(path);
  EXPECT_EQ(file.nearestTo(48.8, 2.3).name, "Paris");
}

}  // namespace
}  // namespace lumivane
