// Names the place at a position out of the file of places: the nearest town and its country, further out the country
// alone. Nothing is asked of any network.
//
// Threads: any; constant once it is made.
// Owns:    the opened file.
// Units:   degrees, north and east positive.
// Errors:  open() fails as PlacesFile.h says. placeAt() fails where no place is near, and for what is no position: beyond
//          90 degrees of latitude or 180 of longitude, infinite, not a number.
#pragma once

#include <string>
#include <string_view>

#include "imaging/Geocoder.h"
#include "imaging/places/CountryNames.h"
#include "imaging/places/PlacesFile.h"
#include "platform/Result.h"

namespace lumivane {

inline constexpr double kTownWithinKm = 30;      // further out the town is not told
inline constexpr double kCountryWithinKm = 150;  // further out nothing is told

class Gazetteer {
 public:
  // `locale` as in "de_DE": the language of the countries. Towns are called as the file has them.
  static Result<Gazetteer> open(const std::string& path, std::string_view locale);

  [[nodiscard]] Result<Placemark> placeAt(double latitude, double longitude) const;

 private:
  Gazetteer(PlacesFile file, std::string_view locale) : file_(std::move(file)), countries_(locale) {}

  PlacesFile file_;
  CountryNames countries_;
};

// Where the file of places is: what the user named, else beside the program's folder, both where it is built and where
// it is installed.
[[nodiscard]] std::string placesPath(const std::string& programFolder, const std::string& named);

}  // namespace lumivane
