#include "tests/support/ViewTest.h"

namespace lumivane {
namespace {

using Placemarks = std::vector<Placemark>;

struct ViewPlacesTest : ViewTest {
  ViewPlacesTest() {
    configure([](DisplaySettings& s) { s.showImageInfo_ = true; });
    listPictures(3);
  }
  void tellAbout(double latitude, double longitude) {
    ImageInfo info;
    info.latitude = latitude;
    info.longitude = longitude;
    info.caption = "At the river";
    info.date = "2024:05:06 07:08:09";
    view->displayFilename("/pictures/a.jpg", info);
  }
};

TEST_F(ViewPlacesTest, theNameOfThePlaceReplacesTheCoordinates) {
  start();
  tellAbout(48.137, 11.576);
  EXPECT_EQ(view->secondLine(), "At the river. GPS: +11.58 +48.14. 2024:05:06 07:08:09");
  ASSERT_EQ(geocoder.requests.size(), 1U);
  EXPECT_EQ(geocoder.requests[0].latitude, 48.137);
  EXPECT_EQ(geocoder.requests[0].longitude, 11.576);
  geocoder.requests[0].completion(Placemarks{{"Munich", "Germany"}, {"Schwabing", "Germany"}});
  EXPECT_EQ(view->secondLine(), "At the river. Munich, Germany. 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, withoutATownTheCountryStandsAlone) {
  start();
  tellAbout(23.4, 25.6);
  geocoder.requests.at(0).completion(Placemarks{{std::nullopt, "Libya"}});
  EXPECT_EQ(view->secondLine(), "At the river. Libya. 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, aMissingCountryIsShownAsAMissingValue) {
  start();
  tellAbout(1, 1);
  geocoder.requests.at(0).completion(Placemarks{{"Somewhere", std::nullopt}});
  EXPECT_EQ(view->secondLine(), "At the river. Somewhere, (null). 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, withoutAPositionNobodyIsAsked) {
  start();
  tellAbout(0, 0);
  EXPECT_TRUE(geocoder.requests.empty());
  EXPECT_EQ(view->secondLine(), "At the river. 2024:05:06 07:08:09");
  tellAbout(0, 0.001);
  EXPECT_EQ(geocoder.requests.size(), 1U);
}

TEST_F(ViewPlacesTest, anErrorLeavesTheCoordinates) {
  start();
  tellAbout(-40, -120);
  geocoder.requests.at(0).completion(Error{"no place within 150 km"});
  EXPECT_TRUE(log.has("Geocoder error: no place within 150 km!", LogLevel::Error));
  EXPECT_EQ(view->secondLine(), "At the river. GPS: -120.00 -40.00. 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, anEmptyAnswerChangesNothing) {
  start();
  tellAbout(10, 20);
  geocoder.requests.at(0).completion(Placemarks{});
  EXPECT_EQ(view->secondLine(), "At the river. GPS: +20.00 +10.00. 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, anAnswerKeepsTheMessageOfTheFirstLine) {
  start();
  tellAbout(10, 20);
  view->displayErrorMessage("trouble", "");
  geocoder.requests.at(0).completion(Placemarks{{"Munich", "Germany"}});
  EXPECT_EQ(view->firstLine(), "trouble");
  EXPECT_EQ(view->secondLine(), "At the river. Munich, Germany. 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, aLateAnswerRenamesThePlaceOfThePictureThatIsShownNow) {
  start();
  tellAbout(10, 20);
  ImageInfo other;
  other.caption = "Another";
  view->displayFilename("/pictures/b.jpg", other);
  geocoder.requests.at(0).completion(Placemarks{{"Munich", "Germany"}});
  EXPECT_EQ(view->secondLine(), "Another. Munich, Germany");
}

TEST_F(ViewPlacesTest, withoutAGeocoderTheCoordinatesStay) {
  withGeocoder = false;
  start();
  EXPECT_TRUE(log.has("Initializing the geocoder failed!", LogLevel::Error));
  tellAbout(48.137, 11.576);
  EXPECT_EQ(view->secondLine(), "At the river. GPS: +11.58 +48.14. 2024:05:06 07:08:09");
}

TEST_F(ViewPlacesTest, dont_answer_a_view_that_is_gone) {
  start();
  tellAbout(10, 20);
  view.reset();
  geocoder.requests.at(0).completion(Placemarks{{"Munich", "Germany"}});
}

}  // namespace
}  // namespace lumivane
