// The places of the world, read from a file that stays on disk and is mapped into memory (PlacesFormat.h).
//
// Threads: any; constant once it is opened.
// Owns:    the mapping (MappedFile.h says what that asks of the file).
// Units:   degrees, north and east positive; kilometres over ground on a sphere of the earth's mean radius.
// Errors:  open() reads the whole file once and fails unless every count, offset and its checksum are right. A look-up
//          in a file that was made to deceive gives wrong places, but reads nothing outside of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/places/MappedFile.h"
#include "platform/Result.h"

namespace lumivane {

struct NearPlace {
  std::string_view name;         // in UTF-8; lives as long as the file is open
  std::string_view countryCode;  // two capital letters; the same
  double distanceKm = 0;
};

// A point of the unit sphere: x towards (0, 0), y towards longitude 90 east, z towards the north pole.
using GlobePoint = std::array<double, 3>;
[[nodiscard]] GlobePoint globePoint(double latitude, double longitude);

class PlacesFile {
 public:
  static Result<PlacesFile> open(const std::string& path);

  [[nodiscard]] std::size_t size() const { return count_; }

  // The place with the shortest way over ground.
  // Requires: finite coordinates.
  [[nodiscard]] NearPlace nearestTo(double latitude, double longitude) const;

 private:
  // What a search has found so far.
  struct Candidate {
    double squaredChord;
    std::uint32_t place = 0;
  };
  struct Range {
    std::uint32_t low;
    std::uint32_t high;
    std::uint32_t axis;
  };

  explicit PlacesFile(MappedFile file) : file_(std::move(file)) {}
  [[nodiscard]] std::optional<std::string_view> problem();
  [[nodiscard]] bool placesAreSound() const;
  [[nodiscard]] std::string_view text(std::size_t at, std::size_t length) const;
  [[nodiscard]] std::uint32_t packed(std::uint32_t place) const;
  [[nodiscard]] std::string_view countryCode(std::uint32_t number) const;
  [[nodiscard]] std::string_view name(std::uint32_t offset) const;
  void search(const GlobePoint& point, Range range, Candidate& best) const;

  MappedFile file_;
  std::uint32_t count_ = 0;
  std::uint32_t countryCount_ = 0;
  std::uint32_t nameBytes_ = 0;
  std::size_t countriesAt_ = 0;
  std::size_t namesAt_ = 0;
};

}  // namespace lumivane
