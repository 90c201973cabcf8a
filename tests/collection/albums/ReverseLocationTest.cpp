#include "collection/albums/ReverseLocation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumivane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Quarter Westminster, city London, state London, country Großbritannien, no street; written by another program.
constexpr std::string_view kArchive =
    "62706c6973743030d40102030405061d205924617263686976657258246f626a656374735424746f7058247665727369"
    "6f6e5f100f4e534b657965644172636869766572a907080d1819191a1b1c55246e756c6cd2090a0b0c5b636f756e7472"
    "79436f64655d706f7374616c4164647265737380088002d50e0f1011121314151617555f63697479585f636f756e7472"
    "79565f7374617465575f7374726565745c5f7375624c6f63616c697479800480068005800080035b576573746d696e73"
    "746572564c6f6e646f6e6e00470072006f00df00620072006900740061006e006e00690065006e5178524742d11e1f54"
    "726f6f74800112000186a008111b242932444e54596573757782889198a0adafb1b3b5b7c3cae7e9eceff4f600000000"
    "000001010000000000000021000000000000000000000000000000fb";

std::string bytesOf(std::string_view hexadecimal) {
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hexadecimal.size(); i += 2) {
    bytes += static_cast<char>(std::stoi(std::string(hexadecimal.substr(i, 2)), nullptr, 16));
  }
  return bytes;
}

// An archive in the other form, with the given address entries and further objects from number 2 on.
std::string archive(const std::string& address, const std::string& objects) {
  return "<?xml version=\"1.0\"?><plist "
         "version=\"1.0\"><dict><key>$top</key><dict><key>root</key><dict><key>CF$UID</key>"
         "<integer>0</integer></dict></dict><key>$objects</key><array><dict><key>postalAddress</key><dict>"
         "<key>CF$UID</key><integer>1</integer></dict></dict><dict>" +
         address + "</dict>" + objects + "</array></dict></plist>";
}

std::string refersTo(const std::string& key, const std::string& number) {
  return "<key>" + key + "</key><dict><key>CF$UID</key><integer>" + number + "</integer></dict>";
}

TEST(ReverseLocation, namesPlacesFromTheSmallestToTheLargestOnce) {
  EXPECT_THAT(placesInReverseLocation(bytesOf(kArchive)),
              ElementsAre("Westminster", "London", "Großbritannien"));
}

TEST(ReverseLocation, leavesOutWhatIsNotKnown) {
  EXPECT_THAT(placesInReverseLocation(archive(refersTo("_city", "2") + refersTo("_state", "3"),
                                              "<string>$null</string><string>Hessen</string>")),
              ElementsAre("Hessen"));
}

TEST(ReverseLocation, referencesThatLeadNowhereNameNothing) {
  EXPECT_THAT(placesInReverseLocation(archive(refersTo("_city", "99"), "")), IsEmpty());
  EXPECT_THAT(placesInReverseLocation(archive(refersTo("_city", "-1"), "")), IsEmpty());
  EXPECT_THAT(placesInReverseLocation(archive(refersTo("_city", "1"), "")), IsEmpty()) << "a dictionary";
  EXPECT_THAT(placesInReverseLocation(archive("<key>_city</key><string>plain</string>", "")), IsEmpty());
}

TEST(ReverseLocation, bytesOfAnyOtherKindNameNothing) {
  EXPECT_THAT(placesInReverseLocation(""), IsEmpty());
  EXPECT_THAT(placesInReverseLocation("bplist00"), IsEmpty());
  EXPECT_THAT(placesInReverseLocation("<plist><array/></plist>"), IsEmpty());
  EXPECT_THAT(placesInReverseLocation(std::string(300 * 1024, ' ')), IsEmpty());
}

TEST(ReverseLocation, everyBeginningOfAnArchiveEndsWell) {
  const std::string whole = bytesOf(kArchive);
  for (std::size_t bytes = 0; bytes < whole.size(); ++bytes) {
    EXPECT_THAT(placesInReverseLocation(std::string_view(whole).substr(0, bytes)), IsEmpty()) << bytes;
  }
}

}  // namespace
}  // namespace lumivane
