#include "imaging/places/Gazetteer.h"

#include <cmath>

namespace lumivane {
namespace {

constexpr double kMostLatitude = 90;
constexpr double kMostLongitude = 180;

// False for what is not a number, too.
bool isPosition(double latitude, double longitude) {
  return std::abs(latitude) <= kMostLatitude && std::abs(longitude) <= kMostLongitude;
}

}  // namespace

Result<Gazetteer> Gazetteer::open(const std::string& path, std::string_view locale) {
  Result<PlacesFile> file = PlacesFile::open(path);
  if (!file) return Error{file.error()};
  return Gazetteer(std::move(file).value(), locale);
}

Result<Placemark> Gazetteer::placeAt(double latitude, double longitude) const {
  if (!isPosition(latitude, longitude)) return Error{"not a position on the globe"};
  const NearPlace nearest = file_.nearestTo(latitude, longitude);
  if (nearest.distanceKm > kCountryWithinKm) return Error{"no place within 150 km"};
  Placemark place;
  place.country = countries_.nameOf(nearest.countryCode);
  if (nearest.distanceKm <= kTownWithinKm) place.locality = nearest.name;
  return place;
}

std::string placesPath(const std::string& programFolder, const std::string& named) {
  return named.empty() ? programFolder + "/../share/lumivane/places.bin" : named;
}

}  // namespace lumivane
