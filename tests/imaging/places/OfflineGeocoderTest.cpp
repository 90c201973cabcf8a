#include "imaging/places/OfflineGeocoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"
#include "tests/support/VirtualTime.h"
#include "tests/support/WrittenPlaces.h"

namespace lumivane {
namespace {

using testing::ElementsAre;

class OfflineGeocoderTest : public testing::Test {
 protected:
  std::unique_ptr<OfflineGeocoder> geocoder() {
    const std::string path = folder_.write("places.bin", writtenPlaces({{48.137, 11.575, "Munich", "DE"}}));
    return OfflineGeocoder::open(path, "en_US", loop_).value();
  }
  Geocoder::Completion keep() {
    return [this](const Result<std::vector<Placemark>>& answer) { answers_.push_back(answer); };
  }

  const TemporaryFolder folder_;
  VirtualClock clock_;
  VirtualMainLoop loop_{clock_};
  std::vector<Result<std::vector<Placemark>>> answers_;
};

TEST_F(OfflineGeocoderTest, AnswersOnTheMainLoopAfterTheCall) {
  const auto places = geocoder();
  places->reverseGeocodeLocation(48.1, 11.6, keep());
  places->reverseGeocodeLocation(48.9, 11.6, keep());
  EXPECT_TRUE(answers_.empty());
  loop_.runPending();
  ASSERT_EQ(answers_.size(), 2U);
  EXPECT_THAT(answers_[0].value(), ElementsAre(Placemark{"Munich", "Germany"}));
  EXPECT_THAT(answers_[1].value(), ElementsAre(Placemark{std::nullopt, "Germany"}));
}

TEST_F(OfflineGeocoderTest, AnErrorComesOnTheMainLoopToo) {
  geocoder()->reverseGeocodeLocation(0, -30, keep());
  EXPECT_TRUE(answers_.empty());
  loop_.runPending();  // the geocoder is gone by now
  ASSERT_EQ(answers_.size(), 1U);
  EXPECT_EQ(answers_[0].error(), "no place within 150 km");
}

TEST_F(OfflineGeocoderTest, CannotBeMadeWithoutItsFile) {
  EXPECT_FALSE(OfflineGeocoder::open(folder_ / "gone.bin", "en_US", loop_));
  EXPECT_FALSE(OfflineGeocoder::open(folder_.write("empty.bin", ""), "en_US", loop_));
}

}  // namespace
}  // namespace lumivane
