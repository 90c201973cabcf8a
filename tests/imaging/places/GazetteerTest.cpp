#include "imaging/places/Gazetteer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WrittenPlaces.h"

namespace lumivane {
namespace {

using testing::HasSubstr;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
// Along a meridian, on a sphere of the earth's mean radius.
constexpr double kKmOfOneDegree = 6371.0088 * 3.14159265358979323846 / 180;

class GazetteerTest : public testing::Test {
 protected:
  Gazetteer gazetteer(std::vector<WrittenPlace> places, const char* locale = "en_US") {
    return Gazetteer::open(folder_.write("places.bin", writtenPlaces(std::move(places))), locale).value();
  }

  const TemporaryFolder folder_;
};

TEST_F(GazetteerTest, ATownIsToldUpTo30KilometresAndItsCountryUpTo150) {
  const Placemark town{"Null Island", "Germany"};
  const Placemark countryAlone{std::nullopt, "Germany"};
  for (const WrittenPlace& place :
       {WrittenPlace{0, 0, "Null Island", "DE"}, WrittenPlace{0, 180, "Null Island", "DE"},
        WrittenPlace{-60, 77, "Null Island", "DE"}}) {
    const Gazetteer one = gazetteer({place});
    const auto north = [&](double km) {
      return one.placeAt(place.latitude + km / kKmOfOneDegree, place.longitude);
    };
    EXPECT_EQ(north(0).value(), town);
    EXPECT_EQ(north(29.9999).value(), town);
    EXPECT_EQ(north(30.0001).value(), countryAlone);
    EXPECT_EQ(north(149.9999).value(), countryAlone);
    EXPECT_EQ(north(150.0001).error(), "no place within 150 km");
    EXPECT_EQ(north(-29.9999).value(), town);
    EXPECT_EQ(north(-150.0001).error(), "no place within 150 km");
  }
}

TEST_F(GazetteerTest, DistancesAreOverGroundAndNotOfDegrees) {
  const Gazetteer one = gazetteer({{60, 10, "Here", "NO"}});
  const double kmOfOneDegreeEast = kKmOfOneDegree / 2;  // at 60 degrees north
  EXPECT_EQ(one.placeAt(60, 10 + 29.9 / kmOfOneDegreeEast).value().locality, "Here");
  EXPECT_EQ(one.placeAt(60, 10 - 30.1 / kmOfOneDegreeEast).value().locality, std::nullopt);
}

TEST_F(GazetteerTest, TheNearestPlaceNamesTheCountryToo) {
  const Gazetteer two = gazetteer({{0, 0, "Near", "FR"}, {0, 1.2, "Far", "ES"}});
  EXPECT_EQ(two.placeAt(0, 0.55).value(), (Placemark{std::nullopt, "France"}));
  EXPECT_EQ(two.placeAt(0, 0.65).value(), (Placemark{std::nullopt, "Spain"}));
  EXPECT_EQ(two.placeAt(0, 1.1).value(), (Placemark{"Far", "Spain"}));
}

TEST_F(GazetteerTest, WhatIsNoPositionIsAnError) {
  const Gazetteer one = gazetteer({{0, 0, "Null Island", "DE"}});
  for (const double latitude : {kNone, kInfinity, -kInfinity, 90.0001, -90.0001, 1e300}) {
    EXPECT_EQ(one.placeAt(latitude, 0).error(), "not a position on the globe") << latitude;
  }
  for (const double longitude : {kNone, kInfinity, -kInfinity, 180.0001, -180.0001, 360.0, -1e300}) {
    EXPECT_EQ(one.placeAt(0, longitude).error(), "not a position on the globe") << longitude;
  }
}

TEST_F(GazetteerTest, TheOutermostPositionsAreOnTheGlobe) {
  const Gazetteer one =
      gazetteer({{90, 0, "Pole", "NO"}, {-90, 0, "Other Pole", "NO"}, {0, 180, "Line", "FJ"}});
  for (const double longitude : {-180.0, 0.0, 180.0}) {
    EXPECT_EQ(one.placeAt(90, longitude).value().locality, "Pole") << longitude;
    EXPECT_EQ(one.placeAt(-90, longitude).value().locality, "Other Pole") << longitude;
  }
  EXPECT_EQ(one.placeAt(0, 180).value().locality, "Line");
  EXPECT_EQ(one.placeAt(0, -180).value().locality, "Line");
}

TEST_F(GazetteerTest, TheOriginIsAPositionLikeAnyOther) {
  EXPECT_EQ(gazetteer({{0, 0.1, "Null Island", "DE"}}).placeAt(0, 0).value().locality, "Null Island");
}

TEST_F(GazetteerTest, TheCountryIsInTheUsersLanguage) {
  EXPECT_EQ(gazetteer({{0, 0, "Wien", "AT"}}, "de_AT").placeAt(0, 0).value(),
            (Placemark{"Wien", "Österreich"}));
  EXPECT_EQ(gazetteer({{0, 0, "Nowhere", "QX"}}, "de_AT").placeAt(0, 0).value(),
            (Placemark{"Nowhere", "QX"}));
}

TEST_F(GazetteerTest, AFileThatCannotBeReadIsAnErrorWithItsPath) {
  const Result<Gazetteer> none = Gazetteer::open(folder_ / "gone.bin", "en_US");
  ASSERT_FALSE(none);
  EXPECT_THAT(none.error(), HasSubstr("gone.bin: "));
  EXPECT_FALSE(Gazetteer::open(folder_.write("text.bin", "Munich, Germany\n"), "en_US"));
}

TEST(PlacesPath, IsTheUsersOrBesideTheProgram) {
  EXPECT_EQ(placesPath("/usr/bin", ""), "/usr/bin/../share/lumivane/places.bin");
  EXPECT_EQ(placesPath("/usr/bin", "/home/me/places.bin"), "/home/me/places.bin");
}

}  // namespace
}  // namespace lumivane
