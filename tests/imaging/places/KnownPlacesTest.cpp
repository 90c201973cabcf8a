// The file of places that the program comes with, asked about positions whose answers everybody can look up.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numbers>
#include <sstream>

#include "imaging/InformationText.h"
#include "imaging/places/Gazetteer.h"

namespace lumivane {
namespace {

const std::string kPlaces = LUMIVANE_PLACES_FILE;

struct KnownPlace {
  std::string line;
  double latitude = 0;
  double longitude = 0;
  std::string town;     // "-" = none is near
  std::string country;  // "-" = nothing is near
};

std::vector<KnownPlace> knownPlaces() {
  std::vector<KnownPlace> all;
  std::ifstream table(LUMIVANE_KNOWN_PLACES);
  for (std::string line; std::getline(table, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    std::istringstream fields(line);
    std::array<std::string, 4> field;
    for (std::string& text : field) {
      std::getline(fields, text, '|');
      text = trimmed(text);
    }
    all.push_back({line, std::stod(field[0]), std::stod(field[1]), field[2], field[3]});
  }
  return all;
}

TEST(KnownPlaces, AreNamedAsEverybodyKnowsThem) {
  const Gazetteer gazetteer = Gazetteer::open(kPlaces, "en_US").value();
  const std::vector<KnownPlace> all = knownPlaces();
  ASSERT_GE(all.size(), 200U);
  for (const KnownPlace& known : all) {
    const Result<Placemark> place = gazetteer.placeAt(known.latitude, known.longitude);
    if (known.country == "-") {
      EXPECT_FALSE(place) << known.line;
    } else if (place) {
      EXPECT_EQ(place.value().locality.value_or("-"), known.town) << known.line;
      EXPECT_EQ(place.value().country, known.country) << known.line;
    } else {
      ADD_FAILURE() << known.line << ": " << place.error();
    }
  }
}

TEST(KnownPlaces, TheFileIsLargeInPlacesAndSmallInBytes) {
  EXPECT_GE(PlacesFile::open(kPlaces).value().size(), 100'000U);
  EXPECT_LT(std::filesystem::file_size(kPlaces), 8'000'000U);
}

// Spread evenly over the globe. The time is told, not judged: machines differ.
TEST(KnownPlaces, EveryPositionHasItsAnswer) {
  using SteadyTime = std::chrono::steady_clock;
  using Microseconds = std::chrono::duration<double, std::micro>;
  constexpr int kPositions = 20'000;
  const auto opening = SteadyTime::now();
  const PlacesFile file = PlacesFile::open(kPlaces).value();
  const auto start = SteadyTime::now();
  double farthest = 0;
  for (int i = 0; i < kPositions; ++i) {
    const double latitude = std::asin(1 - (2.0 * i + 1) / kPositions) * 180 / std::numbers::pi;
    const double longitude = std::remainder(i * 137.50776405003785, 360.0);
    const NearPlace nearest = file.nearestTo(latitude, longitude);
    ASSERT_FALSE(nearest.name.empty());
    farthest = std::max(farthest, nearest.distanceKm);
  }
  const auto end = SteadyTime::now();
  std::cout << "opened in " << Microseconds(start - opening).count() << " us; "
            << Microseconds(end - start).count() / kPositions
            << " us a position, the farthest from any place " << farthest << " km\n";
  EXPECT_GT(farthest, 1500);
  EXPECT_LT(farthest, 6000);
}

}  // namespace
}  // namespace lumivane
